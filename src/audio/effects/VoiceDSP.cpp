#include "audio/effects/VoiceDSP.h"

#include "audio/Stretches.h"

#include <array>
#include <cmath>
#include <numbers>

// Where a recipe says 32 bits, the constants are floats and nothing is widened;
// the narrowing of the sine and of the soft clip is part of the sound.

namespace tonequill {

namespace {

constexpr double kSampleRate = 48'000;

// A second-order section in transposed direct form II, normalised so that a0 is 1.
struct Biquad {
    double b0, b1, b2, a1, a2;
    double z1 = 0;
    double z2 = 0;

    double run(double x)
    {
        const double y = b0 * x + z1;
        z1 = z2 + (b1 * x - a1 * y);
        z2 = b2 * x - a2 * y;
        return y;
    }
};

// A band-pass of two high-pass and two low-pass sections, then a soft clip.
struct Loudspeaker {
    Biquad highPass;
    Biquad lowPass;
    double drive;
    double level;
};

// Q 0.7071 throughout.
constexpr Loudspeaker kTelephone = {
    {0.961870107037996, -1.923740214075992, 0.961870107037996, -1.922285823357695, 0.9251946047942893},      // 420 Hz
    {0.02995452102890393, 0.05990904205780786, 0.02995452102890393, -1.454240616106919, 0.5740587002225347}, // 3 kHz
    1.8,
    0.9,
};
constexpr Loudspeaker kMegaphone = {
    {0.9416080759962523, -1.8832161519925046, 0.9416080759962523, -1.8798036856024007, 0.8866286183826083}, // 650 Hz
    {0.0538019399010108, 0.1076038798020216, 0.0538019399010108, -1.2452156906579934, 0.46042345026203657}, // 4.2 kHz
    4.0,
    0.6,
};

// A ring modulator's carrier: the argument in 64 bits, the value in 32.
float carrier(std::size_t n, double hertz)
{
    return static_cast<float>(std::sin(static_cast<double>(n) * 2 * std::numbers::pi * hertz / kSampleRate));
}

// Frame by frame, each with its number.
template <typename Visit>
void forEachSample(std::span<float> samples, const Progress* progress, Visit visit)
{
    forEachStretch(static_cast<qint64>(samples.size()), progress, [&](qint64 first, qint64 count) {
        for (auto n = static_cast<std::size_t>(first); n < static_cast<std::size_t>(first + count); ++n)
            visit(n, samples[n]);
    });
}

void robot(std::span<float> samples, const Progress* progress)
{
    constexpr std::size_t kCombFrames = 384; // 8 ms
    std::array<float, kCombFrames> comb = {};
    forEachSample(samples, progress, [&comb](std::size_t n, float& sample) {
        const float x = sample;
        const float m = carrier(n, 70);
        const float r = x * 0.25F + x * m * 0.75F;
        float& line = comb[n % kCombFrames];
        const float y = r + line * 0.5F;
        line = y;
        sample = y * 0.8F;
    });
}

void alien(std::span<float> samples, const Progress* progress)
{
    forEachSample(samples, progress, [](std::size_t n, float& sample) {
        const float x = sample;
        const float m = carrier(n, 380);
        sample = x * 0.35F + x * m * 0.65F;
    });
}

void loudspeaker(std::span<float> samples, const Loudspeaker& recipe, const Progress* progress)
{
    std::array chain = {recipe.highPass, recipe.lowPass, recipe.highPass, recipe.lowPass};
    forEachSample(samples, progress, [&](std::size_t /*n*/, float& sample) {
        double y = static_cast<double>(sample);
        for (Biquad& section : chain)
            y = section.run(y);
        sample = static_cast<float>(std::tanh(y * recipe.drive) * recipe.level);
    });
}

} // namespace

void VoiceDSP::apply(VoiceStyle style, AudioBuffer& buffer, const Progress* progress)
{
    for (int channel = 0; channel < buffer.channelCount(); ++channel) {
        const std::span<float> samples = buffer.channel(channel);
        switch (style) {
        case VoiceStyle::natural:
        case VoiceStyle::man:
        case VoiceStyle::woman:
        case VoiceStyle::child:
        case VoiceStyle::giant:
            return;
        case VoiceStyle::robot:
            robot(samples, progress);
            break;
        case VoiceStyle::alien:
            alien(samples, progress);
            break;
        case VoiceStyle::telephone:
            loudspeaker(samples, kTelephone, progress);
            break;
        case VoiceStyle::megaphone:
            loudspeaker(samples, kMegaphone, progress);
            break;
        }
    }
}

} // namespace tonequill
