#pragma once

#include <QtGlobal>

#include <cstdlib>
#include <new>
#include <span>
#include <utility>
#include <vector>

namespace tonequill {

// Memory of zeros as the system gives it. A vector would write the zeros once
// more, which for a long sound takes longer than what is done with it.
template <typename T>
struct ZeroedAllocator {
    using value_type = T;

    ZeroedAllocator() = default;
    template <typename U>
    ZeroedAllocator(const ZeroedAllocator<U>&)
    {}

    T* allocate(std::size_t count)
    {
        auto* const memory = static_cast<T*>(std::calloc(count, sizeof(T))); // it checks the product
        if (!memory)
            throw std::bad_alloc();
        return memory;
    }
    void deallocate(T* memory, std::size_t) { std::free(memory); }

    // A value that is made from nothing is zero already.
    void construct(T*) const {}
    template <typename... Arguments>
    void construct(T* place, Arguments&&... arguments) const
    {
        ::new (static_cast<void*>(place)) T(std::forward<Arguments>(arguments)...);
    }

    bool operator==(const ZeroedAllocator&) const = default;
};

// What samples mean: frames a second, and samples in each frame.
struct AudioFormat {
    double sampleRate = 0;
    int channelCount = 0;

    bool operator==(const AudioFormat&) const = default;
};

// Deinterleaved 32-bit float samples: one span of frames for each channel.
// Holds up to its capacity; frameLength() of them are valid. A plain value.
class AudioBuffer {
public:
    AudioBuffer() = default;
    // Throws std::bad_alloc if the samples do not fit into memory.
    // REQUIRES: format.channelCount >= 1, capacityFrames >= 0.
    AudioBuffer(AudioFormat format, qint64 capacityFrames)
        : m_format(format),
          m_capacity(capacityFrames),
          m_samples(static_cast<std::size_t>(format.channelCount) * static_cast<std::size_t>(capacityFrames))
    {}

    const AudioFormat& format() const { return m_format; }
    double sampleRate() const { return m_format.sampleRate; }
    int channelCount() const { return m_format.channelCount; }
    qint64 capacityFrames() const { return m_capacity; }
    qint64 frameLength() const { return m_length; }
    // REQUIRES: 0 <= frames <= capacityFrames().
    void setFrameLength(qint64 frames) { m_length = frames; }

    // The valid frames of one channel. REQUIRES: 0 <= index < channelCount().
    std::span<float> channel(int index) { return {start(index), static_cast<std::size_t>(m_length)}; }
    std::span<const float> channel(int index) const { return {start(index), static_cast<std::size_t>(m_length)}; }

    // All capacityFrames() of one channel, to be filled.
    std::span<float> channelCapacity(int index) { return {start(index), static_cast<std::size_t>(m_capacity)}; }

private:
    float* start(int index) { return m_samples.data() + static_cast<std::size_t>(index) * static_cast<std::size_t>(m_capacity); }
    const float* start(int index) const
    {
        return m_samples.data() + static_cast<std::size_t>(index) * static_cast<std::size_t>(m_capacity);
    }

    AudioFormat m_format;
    qint64 m_capacity = 0;
    qint64 m_length = 0;
    std::vector<float, ZeroedAllocator<float>> m_samples;
};

} // namespace tonequill
