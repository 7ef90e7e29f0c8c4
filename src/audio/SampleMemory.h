#pragma once

#include "platform/AudioBuffer.h"

namespace tonequill {

// A buffer of zeros with room for `frames` frames, or std::bad_alloc where the
// machine has not that much memory left: a sound that is too long ends in a
// sentence, not in the system ending the program. REQUIRES: frames >= 0.
AudioBuffer allocateFrames(AudioFormat format, qint64 frames);

} // namespace tonequill
