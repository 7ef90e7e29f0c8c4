#pragma once

#include "platform/media/ffmpeg/Ffmpeg.h"

#include <QtGlobal>

#include <span>

namespace tonequill {

// One libavcodec sound decoder: packets in, frames out.
class Decoder {
public:
    // Who leaves out the encoder's delay and padding.
    enum class Trimming { byCaller, byDecoder };

    Decoder(const AVCodecParameters& track, AVRational timeBase, Trimming trimming);

    // False if there is no decoder for it, or it does not take the parameters.
    bool isOpen() const { return m_context != nullptr; }

    // Gives it a packet, or the end of the track (null). False if the packet is damaged.
    bool send(const AVPacket* packet);

    // The next frame of what was sent, valid until the next call; null if there is none.
    const AVFrame* receive();

    int profile() const { return m_context->profile; }
    void flush() { avcodec_flush_buffers(m_context.get()); }

private:
    ffmpeg::CodecContext m_context;
    ffmpeg::Frame m_frame;
};

// Copies `frames` frames of `frame` from `first` on into the channels, as
// sanitised floats. Mono is spread to all channels; of other channel counts the
// channels in common are taken.
void toChannels(const AVFrame& frame, qint64 first, qint64 frames, std::span<float* const> channels, qint64 into);

} // namespace tonequill
