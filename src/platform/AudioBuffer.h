#pragma once

#include <QtGlobal>

#include <span>
#include <vector>

namespace tonequill {

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
    std::vector<float> m_samples;
};

} // namespace tonequill
