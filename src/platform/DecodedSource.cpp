#include "platform/DecodedSource.h"

#include <algorithm>
#include <array>

namespace tonequill {

DecodedSource::DecodedSource(std::unique_ptr<MediaInput> input)
    : m_input(std::move(input)),
      m_packet(ffmpeg::allocated<ffmpeg::Packet>(av_packet_alloc()))
{
    const AVStream& stream = *m_input->firstAudio();
    m_streamIndex = stream.index;
    m_format = {static_cast<double>(stream.codecpar->sample_rate), stream.codecpar->ch_layout.nb_channels};
    if (!isReadable(stream.codecpar->sample_rate, stream.codecpar->ch_layout.nb_channels))
        throw AudioFileError(AudioFileError::Kind::unsupported, m_input->path());
    if (stream.duration != AV_NOPTS_VALUE)
        m_length = av_rescale_q(stream.duration, stream.time_base, {1, stream.codecpar->sample_rate});
    else if (m_input->context()->duration != AV_NOPTS_VALUE)
        m_length = av_rescale(m_input->context()->duration, stream.codecpar->sample_rate, AV_TIME_BASE);
    start();
}

void DecodedSource::start()
{
    const AVStream& stream = *m_input->firstAudio();
    m_input->selectOnly(&stream);
    m_decoder = std::make_unique<Decoder>(stream);
    if (!m_decoder->isOpen())
        throw AudioFileError(AudioFileError::Kind::unsupported, m_input->path());
    m_isAtEnd = false;
    m_position = 0;
    m_ready = AudioBuffer();
    m_readyStart = 0;
}

void DecodedSource::seek(qint64 frame)
{
    if (frame < m_position) {
        m_input = std::make_unique<MediaInput>(m_input->path());
        start();
    }
    m_discard = frame - m_position;
}

bool DecodedSource::decodeMore()
{
    if (m_isAtEnd)
        return false;
    m_ready.setFrameLength(0);
    m_readyStart = 0;
    while (m_ready.frameLength() == 0 && !m_isAtEnd) {
        m_isAtEnd = !m_input->read(m_packet.get());
        if (!m_isAtEnd && m_packet->stream_index != m_streamIndex) {
            av_packet_unref(m_packet.get());
            continue;
        }
        m_decoder->decode(m_isAtEnd ? nullptr : m_packet.get(), [&](const AVFrame& frame) {
            if (frame.ch_layout.nb_channels != m_format.channelCount)
                return;
            const qint64 kept = m_ready.frameLength();
            AudioBuffer grown(m_format, kept + frame.nb_samples);
            std::array<float*, kMaxChannels> channels = {};
            for (int channel = 0; channel < m_format.channelCount; ++channel) {
                std::ranges::copy(std::as_const(m_ready).channel(channel), grown.channelCapacity(channel).data());
                channels[static_cast<std::size_t>(channel)] = grown.channelCapacity(channel).data() + kept;
            }
            toChannels(frame, 0, frame.nb_samples, std::span(channels).first(static_cast<std::size_t>(m_format.channelCount)));
            grown.setFrameLength(kept + frame.nb_samples);
            m_ready = std::move(grown);
        });
        av_packet_unref(m_packet.get());
    }
    return m_ready.frameLength() > 0;
}

qint64 DecodedSource::read(std::span<float* const> channels, qint64 frames)
{
    qint64 done = 0;
    while (done < frames) {
        if (m_readyStart == m_ready.frameLength() && !decodeMore())
            break;
        const qint64 ready = m_ready.frameLength() - m_readyStart;
        const qint64 dropped = std::min(ready, m_discard);
        const qint64 taken = std::min(ready - dropped, frames - done);
        for (std::size_t channel = 0; taken > 0 && channel < channels.size(); ++channel)
            std::copy_n(std::as_const(m_ready).channel(static_cast<int>(channel)).data() + m_readyStart + dropped, taken,
                        channels[channel] + done);
        m_discard -= dropped;
        m_readyStart += dropped + taken;
        m_position += dropped + taken;
        done += taken;
    }
    return done;
}

} // namespace tonequill
