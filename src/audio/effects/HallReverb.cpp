#include "audio/effects/HallReverb.h"

#include <QtGlobal>

#include <cmath>
#include <numbers>

// This file is compiled with -O3: its loops are written to be vectorised (see
// bench/EngineSpace.cpp).

namespace tonequill {

namespace {

constexpr double kSampleRate = 48'000;

// The time in which sound dies away by 60 dB, low and high. In between it is
// 2.3 s at 1 kHz, as in the large halls that are praised for their sound.
constexpr double kLowDecaySeconds = 2.4;
constexpr double kHighDecaySeconds = 1.3;
constexpr double kHighHertz = 6'000;

constexpr std::size_t kPreDelayFrames = 960; // 20 ms: the nearest walls of a large hall

// Primes, 48 to 158 ms, equally far apart by ratio. Their sum is the number of
// modes: three in every 2 Hz, closer than modes that die away so fast can be told
// apart.
constexpr std::array<std::size_t, HallReverb::kLines> kLineFrames = {2309, 2503, 2699, 2927, 3163, 3433, 3719, 4019,
                                                                     4357, 4721, 5107, 5527, 5987, 6481, 7019, 7603};

// All-passes of 2 to 17 ms make a dense wash of a single impulse. They differ
// between the channels, so that the same sound on both sides becomes wide.
constexpr std::array<std::array<std::size_t, 6>, 2> kDiffuserFrames = {
    {{101, 157, 239, 367, 557, 839}, {113, 149, 257, 337, 601, 773}}};
constexpr float kDiffusion = 0.6F;

// Signs with which the lines are heard left and right. They are orthogonal, in
// the even and in the odd lines alone as well, and each stands at the same angle
// to every row of the matrix (they are bent functions of the line's number).
constexpr std::array<std::array<float, HallReverb::kLines>, 2> kOutput = {{
    {1, 1, 1, -1, 1, 1, 1, -1, 1, 1, 1, -1, -1, -1, -1, 1},
    {1, 1, -1, 1, 1, 1, -1, 1, 1, 1, -1, 1, -1, -1, 1, -1},
}};

// The diffused sound itself, before any line has passed it on: the first
// reflections.
constexpr float kEarly = 1.5F;

// Makes noise around 1 kHz as loud through the hall as past it.
constexpr float kWetLevel = 0.143F;

constexpr float kHighPassHertz = 30; // halls have no direct current

// A filter (gain · (1 − pole)) / (1 − pole z⁻¹) that takes 60 dB · delay / decay
// both at 0 Hz and at kHighHertz.
struct Damping {
    double gain;
    double pole;
};

Damping dampingOf(std::size_t frames)
{
    const double seconds = static_cast<double>(frames) / kSampleRate;
    const auto gainFor = [seconds](double decaySeconds) { return std::pow(10.0, -3 * seconds / decaySeconds); };
    const double gain = gainFor(kLowDecaySeconds);
    const double ratio = gainFor(kHighDecaySeconds) / gain;
    // |1 − p|² = ratio² |1 − p e^(−iw)|², a quadratic equation of the pole p.
    const double power = ratio * ratio;
    const double half = (1 - power * std::cos(2 * std::numbers::pi * kHighHertz / kSampleRate)) / (1 - power);
    return {gain, half - std::sqrt(half * half - 1)};
}

} // namespace

HallReverb::Entrance::Entrance(std::span<const std::size_t> diffuserFrames)
    : preDelay(kPreDelayFrames),
      diffusers(diffuserFrames.begin(), diffuserFrames.end())
{}

void HallReverb::Entrance::run(std::span<float> samples)
{
    constexpr float kLowRate = static_cast<float>(2 * std::numbers::pi * kHighPassHertz / kSampleRate);
    for (float& sample : samples) {
        lowState += kLowRate * (sample - lowState);
        sample -= lowState;
    }
    lowState = quietened(lowState);

    Row block;
    const auto delayed = std::span(block).first(samples.size());
    preDelay.read(delayed);
    preDelay.write(samples);
    std::copy(delayed.begin(), delayed.end(), samples.begin());
    for (DelayLine& diffuser : diffusers) {
        diffuser.read(delayed);
        for (std::size_t n = 0; n < samples.size(); ++n) {
            const float fed = quietened(samples[n] - kDiffusion * delayed[n]);
            samples[n] = delayed[n] + kDiffusion * fed;
            delayed[n] = fed;
        }
        diffuser.write(delayed);
    }
}

HallReverb::HallReverb(double wet)
    : m_wet(static_cast<float>(wet)),
      m_entrances{Entrance(kDiffuserFrames[0]), Entrance(kDiffuserFrames[1])},
      m_lines(kLineFrames.begin(), kLineFrames.end())
{
    for (std::size_t line = 0; line < kLines; ++line) {
        const Damping damping = dampingOf(kLineFrames[line]);
        m_gain[line] = static_cast<float>(damping.gain * (1 - damping.pole));
        m_pole[line] = static_cast<float>(damping.pole);
    }
}

void HallReverb::process(std::span<float> left, std::span<float> right)
{
    Q_ASSERT(left.size() == right.size());
    while (!left.empty()) {
        const std::size_t frames = std::min(left.size(), kBlockFrames);
        processBlock(left.first(frames), right.first(frames));
        left = left.subspan(frames);
        right = right.subspan(frames);
    }
}

void HallReverb::processBlock(std::span<float> left, std::span<float> right)
{
    const std::size_t frames = left.size();
    std::array<Row, 2> entering;
    std::array<Row, 2> heard;
    for (std::size_t side = 0; side < 2; ++side) {
        const auto& samples = side == 0 ? left : right;
        std::copy(samples.begin(), samples.end(), entering[side].begin());
        m_entrances[side].run(std::span(entering[side]).first(frames));
    }

    for (std::size_t line = 0; line < kLines; ++line)
        m_lines[line].read(std::span(m_rows[line]).first(frames));
    damp(frames);
    for (std::size_t side = 0; side < 2; ++side) {
        for (std::size_t n = 0; n < frames; ++n)
            heard[side][n] = kEarly * entering[side][n];
        for (std::size_t line = 0; line < kLines; ++line)
            for (std::size_t n = 0; n < frames; ++n)
                heard[side][n] += kOutput[side][line] * m_rows[line][n];
    }

    mixLines(frames);
    for (std::size_t line = 0; line < kLines; ++line) {
        const Row& in = entering[line % 2]; // the left channel enters the even lines
        for (std::size_t n = 0; n < frames; ++n)
            m_rows[line][n] = quietened(m_rows[line][n] + in[n]);
        m_lines[line].write(std::span(m_rows[line]).first(frames));
    }

    for (std::size_t n = 0; n < frames; ++n) {
        left[n] = (1 - m_wet) * left[n] + m_wet * kWetLevel * heard[0][n];
        right[n] = (1 - m_wet) * right[n] + m_wet * kWetLevel * heard[1][n];
    }
}

// Each line's low-pass. The lines are taken together frame by frame, since each
// of the recursions waits for itself.
void HallReverb::damp(std::size_t frames)
{
    auto state = m_state;
    for (std::size_t n = 0; n < frames; ++n)
        for (std::size_t line = 0; line < kLines; ++line) {
            state[line] = m_gain[line] * m_rows[line][n] + m_pole[line] * state[line];
            m_rows[line][n] = state[line];
        }
    for (std::size_t line = 0; line < kLines; ++line)
        m_state[line] = quietened(state[line]);
}

// The Hadamard matrix of order 16 by its fast transform, scaled to keep the energy.
void HallReverb::mixLines(std::size_t frames)
{
    for (std::size_t distance = 1; distance < kLines; distance *= 2)
        for (std::size_t line = 0; line < kLines; ++line) {
            if ((line & distance) != 0)
                continue;
            float* const upper = m_rows[line].data();
            float* const lower = m_rows[line + distance].data();
            for (std::size_t n = 0; n < frames; ++n) {
                const float sum = upper[n] + lower[n];
                lower[n] = upper[n] - lower[n];
                upper[n] = sum;
            }
        }
    for (Row& row : m_rows)
        for (std::size_t n = 0; n < frames; ++n)
            row[n] *= 0.25F; // 1 / √16
}

} // namespace tonequill
