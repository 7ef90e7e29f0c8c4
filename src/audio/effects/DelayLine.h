#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

namespace tonequill {

// A ring of samples that gives back what was written `frames` frames ago, a
// block at a time: first read(), then write() as many. A block is never longer
// than the delay, so that everything in it was written by an earlier one.
class DelayLine {
public:
    explicit DelayLine(std::size_t frames) : m_ring(frames) {}

    // REQUIRES: into.size() <= frames.
    void read(std::span<float> into) const
    {
        const std::size_t untilEnd = std::min(into.size(), m_ring.size() - m_position);
        std::copy_n(m_ring.data() + m_position, untilEnd, into.data());
        std::copy_n(m_ring.data(), into.size() - untilEnd, into.data() + untilEnd);
    }

    // REQUIRES: from.size() is that of the last read().
    void write(std::span<const float> from)
    {
        const std::size_t untilEnd = std::min(from.size(), m_ring.size() - m_position);
        std::copy_n(from.data(), untilEnd, m_ring.data() + m_position);
        std::copy_n(from.data() + untilEnd, from.size() - untilEnd, m_ring.data());
        m_position = (m_position + from.size()) % m_ring.size();
    }

private:
    std::vector<float> m_ring;
    std::size_t m_position = 0;
};

// What has died away becomes true silence. Numbers that are too small to be
// normalised would otherwise circulate for ever and slow the processor down.
inline float quietened(float sample)
{
    constexpr float kInaudible = 1e-20F; // -400 dBFS
    return std::abs(sample) < kInaudible ? 0.0F : sample;
}

} // namespace tonequill
