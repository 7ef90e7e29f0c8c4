#include "platform/media/ffmpeg/Decoder.h"

#include "platform/media/SampleFormats.h"

#include <algorithm>
#include <optional>

namespace tonequill {

namespace {

// How much of a sound a sample can hold: what is louder than full scale goes only
// through floats.
int widthOf(AVSampleFormat format)
{
    switch (av_get_packed_sample_fmt(format)) {
    case AV_SAMPLE_FMT_FLT:
    case AV_SAMPLE_FMT_DBL:
        return 3;
    case AV_SAMPLE_FMT_S32:
        return 2;
    case AV_SAMPLE_FMT_NONE: // told with the first packet
        return 2;
    case AV_SAMPLE_FMT_S16:
        return 1;
    default:
        return 0;
    }
}

// The widest format that the decoder offers. Most offer one; some none, until they
// have seen the sound.
AVSampleFormat widestFormat(const AVCodec& codec)
{
    AVSampleFormat widest = AV_SAMPLE_FMT_NONE;
    for (const AVSampleFormat* format = codec.sample_fmts; format && *format != AV_SAMPLE_FMT_NONE; ++format)
        if (widest == AV_SAMPLE_FMT_NONE || widthOf(*format) > widthOf(widest))
            widest = *format;
    return widest;
}

// Where FFmpeg has more than one decoder, the one with the widest samples, of equal
// ones its first choice. But its own for Opus does not give the frames of a packet
// with that packet after a change of mode.
const AVCodec* decoderFor(AVCodecID id)
{
    if (id == AV_CODEC_ID_OPUS)
        if (const AVCodec* preferred = avcodec_find_decoder_by_name("libopus"))
            return preferred;
    const AVCodec* best = avcodec_find_decoder(id);
    void* position = nullptr;
    while (const AVCodec* codec = best ? av_codec_iterate(&position) : nullptr) {
        const bool isUsual = (codec->capabilities & (AV_CODEC_CAP_EXPERIMENTAL | AV_CODEC_CAP_HARDWARE)) == 0;
        if (codec->id == id && av_codec_is_decoder(codec) != 0 && isUsual &&
            widthOf(widestFormat(*codec)) > widthOf(widestFormat(*best)))
            best = codec;
    }
    return best;
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
    const AVSampleFormat widest = widestFormat(*codec);
    context->request_sample_fmt = widest == AV_SAMPLE_FMT_NONE ? AV_SAMPLE_FMT_FLTP : widest;
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
