#pragma once

#include "platform/Ffmpeg.h"

#include <optional>
#include <span>

namespace tonequill {

// One libavcodec sound decoder: packets in, frames out, as they come.
class Decoder {
public:
    // Null context if there is no decoder for it.
    explicit Decoder(const AVStream& stream);

    bool isOpen() const { return m_context != nullptr; }

    // Decodes one packet (or, for null, what is left at the end). Calls
    // take(const AVFrame&) for each frame it gives. A damaged packet gives none.
    template <typename Take>
    void decode(const AVPacket* packet, Take take)
    {
        if (avcodec_send_packet(m_context.get(), packet) < 0)
            return;
        while (avcodec_receive_frame(m_context.get(), m_frame.get()) >= 0) {
            take(*m_frame);
            av_frame_unref(m_frame.get());
        }
    }

    void flush() { avcodec_flush_buffers(m_context.get()); }

private:
    ffmpeg::CodecContext m_context;
    ffmpeg::Frame m_frame;
};

// Copies `frames` frames of `frame` from `first` on into the channels, as
// sanitised floats. REQUIRES: channels.size() == the frame's channel count.
void toChannels(const AVFrame& frame, qint64 first, qint64 frames, std::span<float* const> channels);

} // namespace tonequill
