#pragma once

#include "platform/media/ffmpeg/ByteWindow.h"
#include "platform/media/ffmpeg/PacketTable.h"

namespace tonequill {

// What the header of a frame says that tells where the next one begins.
struct FrameHeader {
    int bytes = 0;     // of the whole frame, its header included
    int frames = 0;    // of sound in it
    quint32 fixed = 0; // the bits that are the same in all frames of a file
};

// Reads the header at the start of `bytes`; none if there is no whole one.
using ReadHeader = std::optional<FrameHeader> (*)(std::span<const uint8_t> bytes);

// All frames of a stream that is nothing but frame after frame, found by hopping
// from header to header, from `firstFrame` (a byte offset) on. What stands between
// two frames or behind the last one (tags, filling, damage) is passed over: a frame
// counts there only if another one follows it, or the end of the file.
//
// None where there is no such frame at `firstFrame`, and where the stream becomes
// another one midway. Throws Cancelled.
std::optional<PacketTable> frameTable(ByteWindow& window, qint64 firstFrame, ReadHeader readHeader);

} // namespace tonequill
