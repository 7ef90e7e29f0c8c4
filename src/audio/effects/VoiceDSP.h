#pragma once

#include "audio/effects/VoiceStyle.h"
#include "base/Progress.h"
#include "platform/media/AudioBuffer.h"

namespace tonequill::VoiceDSP {

// Gives the voice its character in place: robot, alien, telephone, megaphone.
// Nothing happens for the other styles or without samples. The recipes are built
// for 48,000 Hz whatever the buffer says, shift no pitch, add no tail, and start
// afresh for every channel. Throws Cancelled; the buffer is good for nothing then.
// Any thread.
void apply(VoiceStyle style, AudioBuffer& buffer, const Progress* progress = nullptr);

} // namespace tonequill::VoiceDSP
