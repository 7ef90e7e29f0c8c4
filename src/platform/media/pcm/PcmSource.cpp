#include "platform/media/pcm/PcmSource.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace tonequill {

namespace {

// Small enough to stay in the second-level cache between reading and converting.
constexpr qint64 kBlockBytes = 128 * 1024;

std::optional<SampleFormat> sampleFormat(AVCodecID codec)
{
    static constexpr std::array<std::pair<AVCodecID, SampleFormat>, 14> kFormats = {{
        {AV_CODEC_ID_PCM_U8, SampleFormat::u8},
        {AV_CODEC_ID_PCM_S8, SampleFormat::s8},
        {AV_CODEC_ID_PCM_S16LE, SampleFormat::s16le},
        {AV_CODEC_ID_PCM_S16BE, SampleFormat::s16be},
        {AV_CODEC_ID_PCM_S24LE, SampleFormat::s24le},
        {AV_CODEC_ID_PCM_S24BE, SampleFormat::s24be},
        {AV_CODEC_ID_PCM_S32LE, SampleFormat::s32le},
        {AV_CODEC_ID_PCM_S32BE, SampleFormat::s32be},
        {AV_CODEC_ID_PCM_F32LE, SampleFormat::f32le},
        {AV_CODEC_ID_PCM_F32BE, SampleFormat::f32be},
        {AV_CODEC_ID_PCM_F64LE, SampleFormat::f64le},
        {AV_CODEC_ID_PCM_F64BE, SampleFormat::f64be},
        {AV_CODEC_ID_PCM_ALAW, SampleFormat::alaw},
        {AV_CODEC_ID_PCM_MULAW, SampleFormat::mulaw},
    }};
    const auto* const found = std::find_if(kFormats.begin(), kFormats.end(), [codec](auto pair) { return pair.first == codec; });
    if (found == kFormats.end())
        return std::nullopt;
    return found->second;
}

// Containers whose samples lie in one piece from the data offset on.
bool isOnePiece(std::string_view container)
{
    return container == "wav" || container == "w64" || container == "aiff" || container == "caf" || container == "au";
}

} // namespace

std::unique_ptr<PcmSource> PcmSource::make(std::unique_ptr<MediaInput>& input)
{
    const AVStream& stream = *input->firstAudio();
    const AVCodecParameters& parameters = *stream.codecpar;
    const std::optional<SampleFormat> samples = sampleFormat(parameters.codec_id);
    if (!samples || !isOnePiece(input->context()->iformat->name))
        return nullptr;
    const int channels = parameters.ch_layout.nb_channels;
    if (!isReadable(parameters.sample_rate, channels))
        throw AudioFileError(AudioFileError::Kind::unsupported, input->path());
    const int frameBytes = bytesOf(*samples) * channels;
    if (parameters.block_align != frameBytes)
        return nullptr;

    std::unique_ptr<PcmSource> source(new PcmSource);
    source->m_format = {static_cast<double>(parameters.sample_rate), channels};
    source->m_samples = *samples;
    source->m_frameBytes = frameBytes;
    source->m_offset = input->dataOffset();
    // A recorder that was cut off leaves 0 or the largest number in the header:
    // then the sound goes on to the end of the file.
    const qint64 held = std::max<qint64>(0, input->file().size() - source->m_offset) / frameBytes;
    const qint64 told =
        stream.duration == AV_NOPTS_VALUE ? 0 : av_rescale_q(stream.duration, stream.time_base, {1, parameters.sample_rate});
    source->m_length = told > 0 ? std::min(told, held) : held;
    source->m_block.resize(static_cast<std::size_t>(std::max<qint64>(kBlockBytes, frameBytes)));
    source->m_input = std::move(input);
    return source;
}

qint64 PcmSource::read(std::span<float* const> channels, qint64 frames)
{
    const qint64 blockFrames = static_cast<qint64>(m_block.size()) / m_frameBytes;
    const int sampleBytes = m_frameBytes / m_format.channelCount;
    qint64 done = 0;
    while (done < frames) {
        const qint64 wanted = std::min(blockFrames, frames - done);
        const qint64 bytes = m_input->file().read(m_block.data(), wanted * m_frameBytes, m_offset + m_position * m_frameBytes);
        if (bytes < 0 && done == 0)
            throw AudioFileError(AudioFileError::Kind::read, m_input->path());
        const qint64 got = std::max<qint64>(0, bytes) / m_frameBytes;
        for (int channel = 0; channel < m_format.channelCount; ++channel)
            toFloat(m_samples, m_block.data() + channel * sampleBytes, m_format.channelCount,
                    channels[static_cast<std::size_t>(channel)] + done, got);
        m_position += got;
        done += got;
        if (got < wanted)
            break; // the file has become shorter since it was opened
    }
    return done;
}

} // namespace tonequill
