#include "audio/effects/VoiceDSP.h"
#include "support/Cancelling.h"
#include "support/Signal.h"

#include <gmock/gmock.h>

#include <numbers>

using namespace tonequill;
using test::Samples;

namespace {

constexpr std::array kRecipes = {VoiceStyle::robot, VoiceStyle::alien, VoiceStyle::telephone, VoiceStyle::megaphone};

Samples processed(VoiceStyle style, const Samples& samples)
{
    AudioBuffer buffer = test::bufferOf({samples});
    VoiceDSP::apply(style, buffer);
    return test::samplesOf(buffer, 0);
}

// A filter straight from its rule, in 64 bits, in another form than the one that
// is tested (direct form I).
Samples filtered(const Samples& in, double hertz, bool isHighPass)
{
    const double w = 2 * std::numbers::pi * hertz / 48'000;
    const double alpha = std::sin(w) / (2 * 0.7071);
    const double a0 = 1 + alpha;
    const double a1 = -2 * std::cos(w) / a0;
    const double a2 = (1 - alpha) / a0;
    const double edge = (isHighPass ? 1 + std::cos(w) : 1 - std::cos(w)) / 2 / a0;
    const double middle = isHighPass ? -2 * edge : 2 * edge;
    double x1 = 0, x2 = 0, y1 = 0, y2 = 0;
    Samples out;
    for (const float sample : in) {
        const double x = static_cast<double>(sample);
        const double y = edge * x + middle * x1 + edge * x2 - a1 * y1 - a2 * y2;
        x2 = x1;
        x1 = x;
        y2 = y1;
        y1 = y;
        out.push_back(static_cast<float>(y));
    }
    return out;
}

} // namespace

TEST(VoiceDSP, LeavesPureShiftsAlone)
{
    const Samples input = test::noise(0.1, 1);
    for (const VoiceStyle style : {VoiceStyle::natural, VoiceStyle::man, VoiceStyle::woman, VoiceStyle::child, VoiceStyle::giant})
        EXPECT_EQ(processed(style, input), input);
}

TEST(VoiceDSP, KeepsSilenceSilent)
{
    const Samples silence(5'000);
    for (const VoiceStyle style : kRecipes)
        EXPECT_EQ(processed(style, silence), silence);
}

TEST(VoiceDSP, TakesASingleFrameAndNone)
{
    for (const VoiceStyle style : kRecipes) {
        EXPECT_EQ(processed(style, {0.5F}).size(), 1U);
        AudioBuffer empty({48'000, 2}, 0);
        VoiceDSP::apply(style, empty);
        AudioBuffer none;
        VoiceDSP::apply(style, none);
    }
}

TEST(VoiceDSP, StartsItsModulatorsAtPhaseZero)
{
    EXPECT_EQ(processed(VoiceStyle::alien, {0.5F})[0], 0.5F * 0.35F);
    EXPECT_EQ(processed(VoiceStyle::robot, {0.5F})[0], 0.5F * 0.25F * 0.8F);
}

TEST(VoiceDSP, MakesARobotOfARingModulatorAndAComb)
{
    const Samples input = test::noise(1, 7);
    const Samples output = processed(VoiceStyle::robot, input);
    std::vector<float> ringed(input.size());
    for (std::size_t n = 0; n < input.size(); ++n) {
        const auto m = static_cast<float>(std::sin(double(n) * 2 * std::numbers::pi * 70 / 48'000));
        ringed[n] = input[n] * 0.25F + input[n] * m * 0.75F;
        if (n >= 384)
            ringed[n] += ringed[n - 384] * 0.5F;
        ASSERT_EQ(output[n], ringed[n] * 0.8F) << "frame " << n;
    }
}

TEST(VoiceDSP, LetsTheCombOfTheRobotRingToTheEnd)
{
    Samples click(384 * 10 + 1);
    click[0] = 1;
    const Samples output = processed(VoiceStyle::robot, click);
    EXPECT_EQ(output.size(), click.size());
    for (std::size_t ring = 0; ring <= 10; ++ring)
        EXPECT_FLOAT_EQ(output[ring * 384], 0.8F * 0.25F * std::pow(0.5F, static_cast<float>(ring)));
    EXPECT_EQ(output[1], 0);
}

TEST(VoiceDSP, MakesAnAlienOfARingModulator)
{
    const Samples input = test::noise(1, 8);
    const Samples output = processed(VoiceStyle::alien, input);
    for (std::size_t n = 0; n < input.size(); ++n) {
        const auto m = static_cast<float>(std::sin(double(n) * 2 * std::numbers::pi * 380 / 48'000));
        ASSERT_EQ(output[n], input[n] * 0.35F + input[n] * m * 0.65F) << "frame " << n;
    }
}

TEST(VoiceDSP, MakesALoudspeakerOfABandPassAndASoftClip)
{
    struct Recipe {
        VoiceStyle style;
        double high, low, drive, level;
    };
    for (const Recipe& recipe :
         {Recipe{VoiceStyle::telephone, 420, 3'000, 1.8, 0.9}, Recipe{VoiceStyle::megaphone, 650, 4'200, 4, 0.6}}) {
        const Samples input = test::noise(0.5, 9);
        Samples band = filtered(filtered(input, recipe.high, true), recipe.low, false);
        band = filtered(filtered(band, recipe.high, true), recipe.low, false);
        const Samples output = processed(recipe.style, input);
        for (std::size_t n = 0; n < input.size(); ++n)
            // The reference is narrowed to 32 bits after each section.
            ASSERT_NEAR(output[n], std::tanh(double(band[n]) * recipe.drive) * recipe.level, 2e-6) << "frame " << n;
    }
}

TEST(VoiceDSP, LimitsTheLevelByItself)
{
    const Samples tone = test::sine(1'000, 1, 1);
    // Once the filters have settled; the onset overshoots a little.
    const auto settledPeak = [&](VoiceStyle style) {
        const Samples output = processed(style, tone);
        return test::peakOf(std::span(output).subspan(4'800));
    };
    const float telephone = settledPeak(VoiceStyle::telephone);
    EXPECT_LT(telephone, std::tanh(1.8) * 0.9);
    EXPECT_GT(telephone, 0.8);
    const float megaphone = settledPeak(VoiceStyle::megaphone);
    EXPECT_LT(megaphone, std::tanh(4.0) * 0.6);
    EXPECT_GT(megaphone, 0.58);
    const Samples hot = test::sine(1'000, 1, 30);
    EXPECT_LE(test::peakOf(processed(VoiceStyle::telephone, hot)), 0.9F);
    EXPECT_LE(test::peakOf(processed(VoiceStyle::megaphone, hot)), 0.6F);
}

TEST(VoiceDSP, LetsAConstantDecay)
{
    const Samples constant(48'000, 0.5F);
    for (const VoiceStyle style : {VoiceStyle::telephone, VoiceStyle::megaphone})
        EXPECT_LT(std::abs(processed(style, constant).back()), 1e-9);
}

TEST(VoiceDSP, TreatsBothChannelsAlike)
{
    const Samples input = test::noise(0.2, 3);
    for (const VoiceStyle style : kRecipes) {
        AudioBuffer buffer = test::stereo(input);
        VoiceDSP::apply(style, buffer);
        EXPECT_EQ(test::samplesOf(buffer, 0), test::samplesOf(buffer, 1));
        EXPECT_EQ(test::samplesOf(buffer, 0), processed(style, input));
    }
}

TEST(VoiceDSP, EndsSoonAfterItIsCancelled)
{
    AudioBuffer sound = test::bufferOf({test::noise(60, 1)});
    for (const VoiceStyle style : kRecipes) {
        const auto speak = [&](Progress& progress) { VoiceDSP::apply(style, sound, &progress); };
        EXPECT_LE(test::workAfterCancel(speak), test::kSoon);
    }
}
