#pragma once

#include "platform/media/AudioFile.h"

namespace tonequill {

// Reads the frames of a range of a file, in the file's own format. A start below
// 0 counts as 0, an end behind the file is cut to it; where nothing is left the
// buffer has no frames. Throws std::bad_alloc, before anything is read, where
// there is no memory for the range both as it is and as it will be delivered;
// and AudioFileError.
AudioBuffer readRange(AudioFile& file, double startSeconds, double endSeconds, AudioFormat delivered);

} // namespace tonequill
