#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include <memory>

namespace tonequill::ffmpeg {

// Owners of what the FFmpeg libraries allocate.
template <auto Free>
struct Deleter {
    template <typename T>
    void operator()(T* object) const
    {
        Free(&object);
    }
};

using FormatContext = std::unique_ptr<AVFormatContext, Deleter<avformat_close_input>>;
using CodecContext = std::unique_ptr<AVCodecContext, Deleter<avcodec_free_context>>;
using CodecParameters = std::unique_ptr<AVCodecParameters, Deleter<avcodec_parameters_free>>;
using Packet = std::unique_ptr<AVPacket, Deleter<av_packet_free>>;
using Frame = std::unique_ptr<AVFrame, Deleter<av_frame_free>>;
using Resampler = std::unique_ptr<SwrContext, Deleter<swr_free>>;

// How the libraries behave in this process. May be called often.
inline void configure()
{
    av_log_set_level(AV_LOG_QUIET); // its messages would go to standard error
    // No single allocation of theirs is larger in sound, but a damaged header may ask for one.
    constexpr std::size_t kMaxBlockBytes = 512UL * 1024 * 1024;
    av_max_alloc(kMaxBlockBytes);
}

// Throws std::bad_alloc where an allocation gave nothing.
template <typename Owner>
Owner allocated(typename Owner::pointer object)
{
    if (!object)
        throw std::bad_alloc();
    return Owner(object);
}

} // namespace tonequill::ffmpeg
