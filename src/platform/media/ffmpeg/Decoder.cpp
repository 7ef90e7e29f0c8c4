#include "platform/media/ffmpeg/Decoder.h"

#include "platform/media/SampleFormats.h"

#include <algorithm>
#include <optional>

namespace tonequill {

namespace {

// Where FFmpeg has more than one decoder, the one whose output depends on
// nothing but the packets: its own for Opus does not give the frames of a packet
// with that packet after a change of mode, and the integer ones of MPEG layers I
// and II carry the remainders of their rounding along.
const AVCodec* decoderFor(AVCodecID codec)
{
    const char* name = nullptr;
    switch (codec) {
    case AV_CODEC_ID_OPUS:
        name = "libopus";
        break;
    case AV_CODEC_ID_MP1:
        name = "mp1float";
        break;
    case AV_CODEC_ID_MP2:
        name = "mp2float";
        break;
    case AV_CODEC_ID_MP3:
        name = "mp3float";
        break;
    default:
        break;
    }
    const AVCodec* preferred = name ? avcodec_find_decoder_by_name(name) : nullptr;
    return preferred ? preferred : avcodec_find_decoder(codec);
}

std::optional<SampleFormat> sampleFormat(AVSampleFormat format)
{
    switch (av_get_packed_sample_fmt(format)) {
    case AV_SAMPLE_FMT_U8:
        return SampleFormat::u8;
    case AV_SAMPLE_FMT_S16:
        return SampleFormat::s16le;
    case AV_SAMPLE_FMT_S32:
        return SampleFormat::s32le;
    case AV_SAMPLE_FMT_FLT:
        return SampleFormat::f32le;
    case AV_SAMPLE_FMT_DBL:
        return SampleFormat::f64le;
    default:
        return std::nullopt;
    }
}

} // namespace

Decoder::Decoder(const AVCodecParameters& track, AVRational timeBase, Trimming trimming)
{
    const AVCodec* codec = decoderFor(track.codec_id);
    if (!codec)
        return;
    auto context = ffmpeg::allocated<ffmpeg::CodecContext>(avcodec_alloc_context3(codec));
    if (avcodec_parameters_to_context(context.get(), &track) < 0)
        return;
    context->pkt_timebase = timeBase;
    context->request_sample_fmt = AV_SAMPLE_FMT_FLTP;
    context->thread_count = 1;
    if (trimming == Trimming::byCaller)
        context->flags2 |= AV_CODEC_FLAG2_SKIP_MANUAL;
    if (avcodec_open2(context.get(), codec, nullptr) < 0)
        return;
    m_frame = ffmpeg::allocated<ffmpeg::Frame>(av_frame_alloc());
    m_context = std::move(context);
}

bool Decoder::send(const AVPacket* packet)
{
    return avcodec_send_packet(m_context.get(), packet) >= 0;
}

const AVFrame* Decoder::receive()
{
    return avcodec_receive_frame(m_context.get(), m_frame.get()) >= 0 ? m_frame.get() : nullptr;
}

void toChannels(const AVFrame& frame, qint64 first, qint64 frames, std::span<float* const> channels, qint64 into)
{
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const std::optional<SampleFormat> samples = sampleFormat(format);
    const auto bytes = static_cast<qint64>(av_get_bytes_per_sample(format));
    const int count = frame.ch_layout.nb_channels;
    const bool isPlanar = av_sample_fmt_is_planar(format) != 0;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        const int channel = count == 1 ? 0 : static_cast<int>(i);
        if (!samples || channel >= count) {
            std::fill_n(channels[i] + into, frames, 0.0F);
            continue;
        }
        const auto* plane = reinterpret_cast<const std::byte*>(frame.extended_data[isPlanar ? channel : 0]);
        if (isPlanar)
            toFloat(*samples, plane + first * bytes, 1, channels[i] + into, frames);
        else
            toFloat(*samples, plane + (first * count + channel) * bytes, count, channels[i] + into, frames);
    }
}

} // namespace tonequill
