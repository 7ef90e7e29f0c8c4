#pragma once

#include "platform/media/ffmpeg/Ffmpeg.h"

#include <memory>

struct AVVorbisParseContext;

namespace tonequill {

// What is known about a codec without decoding: how many frames each packet
// holds, and what a decoder needs to have seen before its output is exact.
struct CodecTraits {
    // After what a decoder that starts in the middle is right.
    enum class Recovery {
        // `preroll` packets earlier: from there on its output is the same, bit by
        // bit, as that of a decoder that started at the beginning.
        exact,
        // Its output only comes close, since noise generators or recursive filters
        // remember everything. So the track is decoded in stretches of `stretch`
        // packets, each by a fresh decoder that starts `preroll` packets earlier:
        // what a frame is then depends on the file alone, not on the way to it.
        inStretches,
        // Nothing is known: always decoded from the beginning.
        fromStart,
    };
    // How the number of frames in a packet is known.
    enum class Frames { constant, plain, vorbis, opus, flac, unknown };

    Recovery recovery = Recovery::fromStart;
    int preroll = 0;
    int stretch = 0;
    Frames frames = Frames::unknown;
};

// REQUIRES: `firstFrame` is the first frame that a decoder of `profile` gave.
CodecTraits codecTraits(AVCodecID codec, int profile, const AVFrame& firstFrame);

// Counts the frames of packets as they follow each other.
class PacketFrames {
public:
    PacketFrames(CodecTraits::Frames rule, const AVCodecParameters& track, int firstFrames);
    ~PacketFrames();
    PacketFrames(PacketFrames&&) noexcept;
    PacketFrames& operator=(PacketFrames&&) noexcept;

    // Frames that a decoder will give for the packet. REQUIRES: rule != unknown.
    int count(const AVPacket& packet);

    // Frames at the beginning that the codec's header wants left out.
    int headerSkip() const { return m_headerSkip; }

private:
    struct VorbisDeleter {
        void operator()(AVVorbisParseContext* context) const;
    };
    CodecTraits::Frames m_rule;
    int m_constant = 0;
    int m_packetUnit = 0; // bytes of one frame of plain samples
    int m_headerSkip = 0;
    bool m_isFirst = true;
    std::unique_ptr<AVVorbisParseContext, VorbisDeleter> m_vorbis;
};

} // namespace tonequill
