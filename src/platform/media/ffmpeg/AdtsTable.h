#pragma once

#include "platform/media/RegularFile.h"
#include "platform/media/ffmpeg/PacketTable.h"

#include <optional>

namespace tonequill {

// All frames of an AAC stream in ADTS (ISO/IEC 13818-7, 6.2), from the one at
// `firstFrame` (a byte offset) on, each of which decodes to `frames` frames. None
// where it is not one stream throughout. Throws Cancelled.
std::optional<PacketTable> adtsTable(const RegularFile& file, qint64 firstFrame, int frames);

} // namespace tonequill
