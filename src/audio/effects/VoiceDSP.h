#pragma once

#include "audio/effects/VoiceStyle.h"
#include "platform/media/AudioBuffer.h"

namespace tonequill::VoiceDSP {

// Gives the voice its character in place: robot, alien, telephone, megaphone.
// Nothing happens for the other styles or without samples. The recipes are built
// for 48,000 Hz whatever the buffer says, shift no pitch, add no tail, and start
// afresh for every channel. Any thread.
void apply(VoiceStyle style, AudioBuffer& buffer);

} // namespace tonequill::VoiceDSP
