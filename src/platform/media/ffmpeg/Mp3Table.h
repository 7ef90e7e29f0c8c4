#pragma once

#include "platform/media/RegularFile.h"
#include "platform/media/ffmpeg/PacketTable.h"

#include <optional>

namespace tonequill {

// All frames of an MP3 file, found by hopping from header to header, from the
// first frame of sound at `firstFrame` (a byte offset) on. The encoder's delay
// and padding are left out where the frame before it declares them.
//
// None where the file is not frame after frame to its end (or to the tags that
// commonly stand there): then it takes a demuxer that looks for the next frame.
std::optional<PacketTable> mp3Table(const RegularFile& file, qint64 firstFrame);

} // namespace tonequill
