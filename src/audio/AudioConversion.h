#pragma once

#include "base/Progress.h"
#include "platform/media/AudioBuffer.h"

namespace tonequill {

// Rates and numbers of channels that convertBuffer() takes.
bool isConvertible(AudioFormat format);

// The buffer in another format: resampled without a delay to the length that the
// ratio of the rates implies, rounded; more channels mixed down without
// clipping; one channel on both sides of two. An equal format gives the same
// buffer back. Throws std::bad_alloc and Cancelled. Any thread.
// REQUIRES: the formats are equal, or both are convertible.
AudioBuffer convertBuffer(AudioBuffer buffer, AudioFormat to, const Progress* progress = nullptr);

} // namespace tonequill
