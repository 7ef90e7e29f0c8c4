#pragma once

#include "base/Progress.h"
#include "platform/media/AudioBuffer.h"

namespace tonequill {

// Changes speed and pitch independently of each other.
namespace TimePitch {

// Writes `in` at `rate` times its speed and `semitones` higher over the start of
// `out`, as far as there is room. What was at time t comes at t / rate, without a
// delay at the start; up to 40 ms may ring on behind the end, and the rest of
// `out` is left as it is. At rate 1 and 0 semitones the samples are copied.
// Formants move with the pitch. Throws std::bad_alloc and Cancelled; any thread.
// REQUIRES: both buffers have 48,000 Hz and two channels; 0.25 <= rate <= 4;
// -24 <= semitones <= 24; `out` is all zero.
void apply(const AudioBuffer& in, double rate, double semitones, AudioBuffer& out, Progress* progress = nullptr);

} // namespace TimePitch
} // namespace tonequill
