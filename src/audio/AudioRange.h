#pragma once

#include "platform/AudioBuffer.h"

#include <QString>

namespace tonequill {

// Reads the frames of a range of a file, in the file's own format. A start below
// 0 counts as 0, an end behind the file is cut to it; where nothing is left the
// buffer has no frames. Throws std::bad_alloc and AudioFileError. Any thread.
AudioBuffer readRange(const QString& path, double startSeconds, double endSeconds);

} // namespace tonequill
