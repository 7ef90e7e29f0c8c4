#include "audio/SampleMemory.h"

#include "platform/process/Memory.h"

#include <new>

namespace tonequill {

namespace {

// Asking the system takes longer than most sounds; the small ones always fit.
constexpr qint64 kSmallBytes = qint64(64) << 20;

// Left for everybody else.
constexpr qint64 kReserveBytes = qint64(256) << 20;

} // namespace

void requireMemory(qint64 bytes)
{
    if (bytes > kSmallBytes && bytes > availableMemoryBytes() - kReserveBytes)
        throw std::bad_alloc();
}

AudioBuffer allocateFrames(AudioFormat format, qint64 frames)
{
    requireMemory(bytesOf(format, frames));
    return AudioBuffer(format, frames);
}

} // namespace tonequill
