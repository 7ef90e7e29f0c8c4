#include "platform/Decoder.h"

#include "platform/SampleFormats.h"

#include <optional>

namespace tonequill {

namespace {

const AVCodec* decoderFor(AVCodecID codec)
{
    // FFmpeg's own Opus decoder does not give the frames of a packet with that
    // packet after a change of mode; the reference decoder does.
    if (codec == AV_CODEC_ID_OPUS) {
        if (const AVCodec* reference = avcodec_find_decoder_by_name("libopus"))
            return reference;
    }
    return avcodec_find_decoder(codec);
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

Decoder::Decoder(const AVStream& stream)
{
    const AVCodec* codec = decoderFor(stream.codecpar->codec_id);
    if (!codec)
        return;
    auto context = ffmpeg::allocated<ffmpeg::CodecContext>(avcodec_alloc_context3(codec));
    if (avcodec_parameters_to_context(context.get(), stream.codecpar) < 0)
        return;
    context->pkt_timebase = stream.time_base;
    context->request_sample_fmt = AV_SAMPLE_FMT_FLTP;
    context->thread_count = 1;
    if (avcodec_open2(context.get(), codec, nullptr) < 0)
        return;
    m_frame = ffmpeg::allocated<ffmpeg::Frame>(av_frame_alloc());
    m_context = std::move(context);
}

void toChannels(const AVFrame& frame, qint64 first, qint64 frames, std::span<float* const> channels)
{
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const std::optional<SampleFormat> samples = sampleFormat(format);
    const auto bytes = static_cast<qint64>(av_get_bytes_per_sample(format));
    const auto count = static_cast<int>(channels.size());
    const bool isPlanar = av_sample_fmt_is_planar(format) != 0;
    for (int channel = 0; channel < count; ++channel) {
        float* into = channels[static_cast<std::size_t>(channel)];
        const auto* plane = reinterpret_cast<const std::byte*>(frame.extended_data[isPlanar ? channel : 0]);
        if (!samples)
            std::fill_n(into, frames, 0.0F);
        else if (isPlanar)
            toFloat(*samples, plane + first * bytes, 1, into, frames);
        else
            toFloat(*samples, plane + (first * count + channel) * bytes, count, into, frames);
    }
}

} // namespace tonequill
