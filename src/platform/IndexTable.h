#pragma once

#include "platform/MediaInput.h"
#include "platform/PacketTable.h"

#include <optional>

namespace tonequill {

// All packets of a sound track in an MPEG-4, QuickTime or CAF file, from the
// index in its header. Priming and padding are left out as they are declared: by
// edit lists, by the "iTunSMPB" comment, or by CAF's packet table.
//
// `frames` is what each packet decodes to, at `sampleRate`. None for another
// container, and where the index is not the whole truth (fragmented files).
// Moves the demuxer.
std::optional<PacketTable> indexTable(MediaInput& input, const AVStream& stream, int frames, int sampleRate);

} // namespace tonequill
