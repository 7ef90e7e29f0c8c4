#pragma once

#include "platform/media/ffmpeg/MediaInput.h"
#include "platform/media/ffmpeg/PacketTable.h"

#include <optional>

namespace tonequill {

// What is known from the first packet of a track.
struct PacketFormat {
    int frames = 0;     // that each packet decodes to …
    int sampleRate = 0; // … at this rate
    qint64 skip = 0;    // frames that the container wants left out at the start
};

// All packets of a sound track in an MPEG-4, QuickTime or CAF file, from the
// index in its header. Priming and padding are left out as they are declared: by
// edit lists, by the "iTunSMPB" comment, or by CAF's packet table. None for
// another container, and where the index is not the whole truth (fragments).
std::optional<PacketTable> indexTable(const MediaInput& input, const AVStream& stream, PacketFormat format);

} // namespace tonequill
