#pragma once

#include "audio/effects/DelayLine.h"

#include <array>
#include <span>
#include <vector>

namespace tonequill {

// A large concert hall for two channels of 48,000 Hz: a feedback delay network.
//
//     in ─ high-pass ─ pre-delay ─ 6 all-passes ─┬─ 16 delay lines ─ damping ─┬─ out
//                                                └──── orthogonal matrix ─────┘
//
// Sound that has entered goes round through lines whose lengths have no common
// factor; a lossless matrix spreads what leaves one line over all of them, and
// each line's filter takes exactly what the wanted decay time asks for its
// length, more at high frequencies. So every mode of the hall dies away at the
// rate of its frequency and none rings on. docs/effects.md has what was measured.
//
//     out = (1 − wet) · in + wet · hall(in)
class HallReverb {
public:
    static constexpr std::size_t kLines = 16;
    static constexpr std::size_t kBlockFrames = 96; // shorter than every delay

    explicit HallReverb(double wet); // 0…1

    // The next samples, in place. REQUIRES: both are of one length.
    void process(std::span<float> left, std::span<float> right);

private:
    using Row = std::array<float, kBlockFrames>;

    // What a channel goes through before it enters the hall.
    struct Entrance {
        explicit Entrance(std::span<const std::size_t> diffuserFrames);
        void run(std::span<float> samples);

        float lowState = 0;
        DelayLine preDelay;
        std::vector<DelayLine> diffusers;
    };

    void processBlock(std::span<float> left, std::span<float> right);
    void damp(std::size_t frames);
    void mixLines(std::size_t frames);

    float m_wet;
    std::array<Entrance, 2> m_entrances;
    std::vector<DelayLine> m_lines;
    std::array<float, kLines> m_gain = {};  // of each line's damping filter
    std::array<float, kLines> m_pole = {};  // of the same
    std::array<float, kLines> m_state = {}; // of the same
    std::array<Row, kLines> m_rows = {};    // the block that is in the network
};

} // namespace tonequill
