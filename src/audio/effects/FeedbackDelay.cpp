#include "audio/effects/FeedbackDelay.h"

#include <array>
#include <numbers>

// This file is compiled with -O3: its loops are written to be vectorised (see
// bench/EngineSpace.cpp).

namespace tonequill {

namespace {

constexpr double kSampleRate = 48'000;
constexpr std::size_t kBlockFrames = 512;

// The pole of y[n] = (1 − p) x[n] + p y[n − 1] with half the power at `hertz`,
// solved from its frequency response.
float onePole(double hertz)
{
    const double c = 2 - std::cos(2 * std::numbers::pi * hertz / kSampleRate);
    return static_cast<float>(c - std::sqrt(c * c - 1));
}

} // namespace

FeedbackDelay::FeedbackDelay(const Parameters& parameters)
    : m_feedback(static_cast<float>(parameters.feedback)),
      m_wet(static_cast<float>(parameters.wet)),
      m_pole(onePole(parameters.cutoffHz)),
      m_line(static_cast<std::size_t>(std::lround(parameters.delaySeconds * kSampleRate)))
{}

void FeedbackDelay::process(std::span<float> samples)
{
    while (!samples.empty()) {
        const auto block = samples.first(std::min(samples.size(), kBlockFrames));
        processBlock(block);
        samples = samples.subspan(block.size());
    }
}

void FeedbackDelay::processBlock(std::span<float> samples)
{
    std::array<float, kBlockFrames> blocks;
    const auto echo = std::span(blocks).first(samples.size());
    m_line.read(echo);
    float state = m_state;
    for (float& sample : echo) {
        state = (1 - m_pole) * sample + m_pole * state;
        sample = state;
    }
    m_state = quietened(state);

    std::array<float, kBlockFrames> fed;
    for (std::size_t n = 0; n < samples.size(); ++n) {
        fed[n] = quietened(samples[n] + m_feedback * echo[n]);
        samples[n] = (1 - m_wet) * samples[n] + m_wet * echo[n];
    }
    m_line.write(std::span(fed).first(samples.size()));
}

} // namespace tonequill
