#pragma once

#include "platform/media/AudioBuffer.h"

namespace tonequill {

// Bytes of the samples of so many frames. REQUIRES: 0 <= frames < 2^50.
inline qint64 bytesOf(AudioFormat format, qint64 frames)
{
    return frames * format.channelCount * static_cast<qint64>(sizeof(float));
}

// Throws std::bad_alloc where the machine has not that much memory left: a sound
// that is too long ends in a sentence, not in the system ending the program.
void requireMemory(qint64 bytes);

// A buffer of zeros with room for `frames` frames. Throws as requireMemory()
// does. REQUIRES: 0 <= frames < 2^50.
AudioBuffer allocateFrames(AudioFormat format, qint64 frames);

} // namespace tonequill
