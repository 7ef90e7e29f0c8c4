#include "platform/media/AudioFileWriter.h"
#include "platform/media/MediaTracks.h"
#include "platform/media/StreamConverter.h"
#include "platform/media/ffmpeg/AacSink.h"
#include "platform/media/ffmpeg/M4aFile.h"
#include "platform/media/ffmpeg/MediaInput.h"
#include "platform/media/ffmpeg/PacketTrim.h"
#include "platform/media/ffmpeg/WhileWanted.h"

#include <algorithm>
#include <optional>
#include <span>

namespace tonequill {

namespace {

constexpr int kAacFrames = 1024;
constexpr qint64 kBlockFrames = 16'384;
constexpr double kUsualRate = 48'000;
constexpr int kBitsPerChannel = 128'000;

void report(Progress* progress, qint64 done, qint64 all)
{
    if (!progress)
        return;
    if (progress->isCancelled())
        throw Cancelled();
    if (all > 0)
        progress->set(std::clamp(static_cast<double>(done) / static_cast<double>(all), 0.0, 1.0));
}

// Whether a decoder configuration (ISO/IEC 14496-3, 1.6.2.1) is that of plain
// AAC-LC: object type 2, a rate from the table, 1024 frames a packet, and no
// spectral band replication behind it.
bool isPlainConfiguration(std::span<const uint8_t> bytes)
{
    if (bytes.size() < 2)
        return false;
    const int start = bytes[0] << 8 | bytes[1];
    const int objectType = start >> 11;
    const int rateIndex = start >> 7 & 15;
    const int lengthAndExtensions = start & 7; // after four bits for the channels
    if (objectType != 2 || rateIndex == 15 || lengthAndExtensions != 0)
        return false;
    constexpr int kSyncWord = 0x2B7; // then object type 5 and whether it is there
    const bool hasExtension = bytes.size() >= 5 && (bytes[2] << 3 | bytes[3] >> 5) == kSyncWord && (bytes[3] & 31) == 5;
    return !hasExtension || (bytes[4] & 0x80) == 0;
}

// Whether the packets can go into MPEG-4 as they are.
bool canBeCopied(const AVCodecParameters& track)
{
    if (track.codec_id != AV_CODEC_ID_AAC ||
        !AacSink::supports({static_cast<double>(track.sample_rate), track.ch_layout.nb_channels}))
        return false;
    if (track.extradata_size > 0)
        return isPlainConfiguration({track.extradata, static_cast<std::size_t>(track.extradata_size)});
    return track.profile == FF_PROFILE_AAC_LOW; // told by every packet's own header
}

// Times are counted anew: a track that starts late or has gaps in a video
// becomes one that starts at 0 and has none.
void copyPackets(MediaInput& input, const AVStream& stream, const QString& destination, Progress* progress)
{
    const AVRational perFrame = {1, stream.codecpar->sample_rate};
    M4aFile output(destination, *stream.codecpar, perFrame);
    const auto packet = ffmpeg::allocated<ffmpeg::Packet>(av_packet_alloc());
    std::optional<qint64> time;
    bool hasSound = false;
    for (; input.read(packet.get()); av_packet_unref(packet.get())) {
        if (packet->stream_index != stream.index)
            continue;
        report(progress, packet->pos, input.file().size());
        const bool isLeftOut = (packet->flags & AV_PKT_FLAG_DISCARD) != 0;
        if (isLeftOut && hasSound)
            continue; // behind the end that an edit list gives
        hasSound = hasSound || !isLeftOut;
        if (!time) {
            const std::optional<PacketTrim> trim = trimOf(*packet);
            time = trim ? -trim->start : 0; // left-out packets at the start included
        }
        packet->pts = packet->dts = *time;
        packet->duration = kAacFrames;
        *time += kAacFrames;
        output.write(packet.get());
    }
    input.file().requireWanted(); // the last packet was no end then
    if (!hasSound)
        throw AudioFileError(AudioFileError::Kind::read, input.path());
    output.finish();
}

void encodeFrames(const QString& source, const QString& destination, Progress* progress)
{
    AudioFile file(source, progress);
    const int channels = std::min(file.channelCount(), 2);
    AudioFormat format = {file.sampleRate(), channels};
    if (!AacSink::supports(format))
        format.sampleRate = kUsualRate;
    StreamConverter converter(file.format(), format);
    AudioFileWriter writer(destination, format, AudioEncoding::m4aAac, kBitsPerChannel * channels);
    AudioBuffer block(file.format(), kBlockFrames);
    while (file.read(block) > 0) {
        report(progress, file.framePosition(), file.length());
        writer.write(converter.convert(block));
    }
    writer.write(converter.finish());
    writer.finish();
}

} // namespace

void extractFirstAudio(const QString& source, const QString& destination, Progress* progress)
{
    const auto input = whileWanted(progress, [&] { return std::make_unique<MediaInput>(source, progress); });
    const AVStream* stream = input->firstAudio();
    if (!stream)
        throw AudioFileError(AudioFileError::Kind::unsupported, source);
    if (canBeCopied(*stream->codecpar)) {
        input->selectOnly(stream);
        copyPackets(*input, *stream, destination, progress);
    } else {
        encodeFrames(source, destination, progress);
    }
    if (progress)
        progress->set(1);
}

} // namespace tonequill
