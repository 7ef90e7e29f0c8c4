#pragma once

#include "audio/effects/DelayLine.h"

#include <span>

namespace tonequill {

// An echo for one channel of 48,000 Hz: a delay whose output goes back to its
// input. The low-pass lies in the loop, so that each echo is duller than the one
// before; the first has been through it once.
//
//     echo[n] = lowPass(line[n − delay])
//     line[n] = in[n] + feedback · echo[n]
//     out[n]  = (1 − wet) · in[n] + wet · echo[n]
class FeedbackDelay {
public:
    struct Parameters {
        double delaySeconds;
        double feedback; // linear, below 1
        double cutoffHz; // -3 dB of the one-pole low-pass
        double wet;      // 0…1
    };

    explicit FeedbackDelay(const Parameters& parameters);

    // The next samples, in place.
    void process(std::span<float> samples);

private:
    void processBlock(std::span<float> samples);

    float m_feedback;
    float m_wet;
    float m_pole; // of the low-pass
    float m_state = 0;
    DelayLine m_line;
};

} // namespace tonequill
