#pragma once

#include "platform/media/ffmpeg/ByteWindow.h"
#include "platform/media/ffmpeg/Ffmpeg.h"
#include "platform/media/ffmpeg/PacketTable.h"

namespace tonequill {

// A FLAC frame's header (RFC 9639, section 9.1).
struct FlacHeader {
    int frames = 0;    // of sound
    int bytes = 0;     // of the header, its checksum included
    qint64 number = 0; // of the frame or of its first sample
    bool isSampleNumber = false;
    quint32 fixed = 0;     // the bits that are the same in all frames of a stream
    bool isIntact = false; // its checksum is right
};

// Reads the header at the start of `bytes`; none if there is no whole one.
std::optional<FlacHeader> flacHeader(std::span<const uint8_t> bytes);

// What a stream says of itself (STREAMINFO, section 8.2). All 0 where it is silent.
struct FlacStream {
    int minFrames = 0; // of sound in a frame
    int maxFrames = 0;
    int channels = 0;
    int bits = 0;      // of a sample
    qint64 length = 0; // frames of sound

    static FlacStream of(const AVCodecParameters& track);
};

// The frames of a FLAC file one after the other, found by their checksums. Where a
// frame belongs is told by the lengths of those before it, and behind a gap by its
// number, as far as the bytes that are missing can have held what is missing:
// neither numbers nor lengths in headers are believed.
class FlacFrames {
public:
    // REQUIRES: `file` outlives it; the frames begin at `offset` or later.
    FlacFrames(const RegularFile& file, FlacStream stream, qint64 offset);

    // The next frame; none at the end. Throws Cancelled.
    std::optional<PacketTable::Entry> next();

    // The end of the sound, if the file ends with a whole frame, whose number says
    // the same as the stream. None where it takes a walk over all frames to know.
    std::optional<qint64> toldEnd();

private:
    struct Found {
        qint64 offset = 0;
        FlacHeader header;
    };
    std::optional<FlacHeader> headerAt(qint64 offset);
    std::optional<Found> find(qint64 offset, qint64 end);
    std::optional<qint64> endOf(const Found& frame);
    quint32 sumWith(quint32 before, qint64 offset, qint64 end);
    bool hasWholeFrame(qint64 offset, qint64 end);
    qint64 mostBytes(const FlacHeader& header) const;
    qint64 startOf(const FlacHeader& header) const;
    qint64 placeOf(const Found& frame) const;

    ByteWindow m_window;
    FlacStream m_stream;
    std::optional<quint32> m_fixed; // of the first frame
    std::optional<Found> m_next;
    bool m_isBegun = false;
    qint64 m_from;           // where the search begins
    qint64 m_firstStart = 0; // of the first frame, by its number
    qint64 m_end = 0;        // of the sound up to here
    qint64 m_lastOffset = 0; // of the frame before
};

} // namespace tonequill
