#include "audio/SampleMemory.h"

#include "platform/Memory.h"

#include <new>

namespace tonequill {

namespace {

// Asking the system takes longer than most sounds; the small ones always fit.
constexpr qint64 kSmallBytes = qint64(64) << 20;

// Left for everybody else.
constexpr qint64 kReserveBytes = qint64(256) << 20;

} // namespace

AudioBuffer allocateFrames(AudioFormat format, qint64 frames)
{
    const qint64 frameBytes = format.channelCount * static_cast<qint64>(sizeof(float));
    if (frames > kSmallBytes / frameBytes && frames > (availableMemoryBytes() - kReserveBytes) / frameBytes)
        throw std::bad_alloc();
    return AudioBuffer(format, frames);
}

} // namespace tonequill
