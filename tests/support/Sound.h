#pragma once

#include "platform/media/AudioFile.h"

#include <cstdint>

namespace tonequill::test {

// Everything that a file gives when it is read from start to end.
inline AudioBuffer readAll(AudioFile& file)
{
    constexpr qint64 kOdd = 5'003; // blocks that fit no packet
    AudioBuffer all(file.format(), file.length());
    AudioBuffer block(file.format(), kOdd);
    qint64 done = 0;
    while (file.read(block) > 0) {
        for (int channel = 0; channel < file.channelCount(); ++channel)
            std::copy_n(block.channel(channel).data(), block.frameLength(), all.channelCapacity(channel).data() + done);
        done += block.frameLength();
    }
    all.setFrameLength(done);
    return all;
}

inline AudioBuffer readAll(const QString& path)
{
    AudioFile file(path);
    return readAll(file);
}

// Small random numbers that are the same on every machine.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : m_state(seed * 2 + 1) {}

    // 0 … below-1. REQUIRES: below > 0.
    qint64 roll(qint64 below)
    {
        m_state = m_state * 6364136223846793005ULL + 1442695040888963407ULL; // Knuth's MMIX constants
        return static_cast<qint64>((m_state >> 33) % static_cast<std::uint64_t>(below));
    }

private:
    std::uint64_t m_state;
};

} // namespace tonequill::test
