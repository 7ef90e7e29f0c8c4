#pragma once

#include "platform/media/RegularFile.h"
#include "platform/media/ffmpeg/PacketTable.h"

#include <optional>

namespace tonequill {

// All frames of an MP3 file (or one of layer I or II) from the first frame of sound at `firstFrame` (a byte
// offset) on. The encoder's delay and padding are left out where the frame before
// it declares them. None where it is not one stream throughout, and for what has no
// bit rate ("free format"). Throws Cancelled.
std::optional<PacketTable> mp3Table(const RegularFile& file, qint64 firstFrame);

} // namespace tonequill
