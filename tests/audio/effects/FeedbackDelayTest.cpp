#include "audio/effects/FeedbackDelay.h"
#include "support/Signal.h"

#include <gmock/gmock.h>

using namespace tonequill;
using test::Samples;

namespace {

constexpr FeedbackDelay::Parameters kEcho = {.delaySeconds = 0.24, .feedback = 0.38, .cutoffHz = 7'000, .wet = 1};
constexpr std::size_t kTap = 11'520; // 240 ms

FeedbackDelay::Parameters withWet(double wet)
{
    FeedbackDelay::Parameters parameters = kEcho;
    parameters.wet = wet;
    return parameters;
}

Samples impulse(std::size_t frames)
{
    Samples samples(frames);
    samples[0] = 1;
    return samples;
}

// The k-th echo of an impulse, k from 1 on.
std::span<const float> echoOf(const Samples& response, std::size_t k)
{
    return std::span(response).subspan(k * kTap, 480);
}

Samples processed(const FeedbackDelay::Parameters& parameters, Samples samples)
{
    FeedbackDelay delay(parameters);
    delay.process(samples);
    return samples;
}

} // namespace

TEST(FeedbackDelay, RepeatsEvery240Milliseconds)
{
    const Samples response = processed(kEcho, impulse(8 * kTap));
    EXPECT_EQ(test::peakOf(std::span(response).first(kTap)), 0); // all wet, and the first echo is not early
    for (std::size_t k = 1; k < 8; ++k) {
        // Each pass through a one-pole low-pass delays the middle of the echo by a part of a frame.
        const auto echo = echoOf(response, k);
        const auto peak = std::max_element(echo.begin(), echo.end()) - echo.begin();
        EXPECT_LE(peak, 6) << "echo " << k;
        EXPECT_EQ(test::peakOf(std::span(response).subspan(k * kTap + 480, kTap - 480)), 0) << "after echo " << k;
    }
}

TEST(FeedbackDelay, LosesTheSamePartWithEachEcho)
{
    const Samples response = processed(kEcho, impulse(8 * kTap));
    for (std::size_t k = 1; k < 8; ++k) {
        double sum = 0; // what a low-pass of gain 1 leaves of an impulse at 0 Hz
        for (const float sample : echoOf(response, k))
            sum += static_cast<double>(sample);
        EXPECT_NEAR(sum, std::pow(0.38, double(k) - 1), 1e-5) << "echo " << k;
    }
}

TEST(FeedbackDelay, MakesEachEchoDuller)
{
    const Samples response = processed(kEcho, impulse(8 * kTap));
    for (std::size_t k = 1; k < 5; ++k) {
        const auto levelAt = [echo = echoOf(response, k)](double hertz) {
            return test::decibels(test::amplitudeAt(echo, hertz));
        };
        EXPECT_NEAR(levelAt(7'000) - levelAt(0), -3.01 * double(k), 0.02) << "echo " << k;
        EXPECT_NEAR(levelAt(100) - levelAt(0), 0, 0.01);
    }
}

TEST(FeedbackDelay, CrossfadesLinearlyBetweenDryAndWet)
{
    const Samples input = test::noise(1, 4);
    const Samples wet = processed(kEcho, input);
    const Samples half = processed(withWet(0.55), input);
    for (std::size_t n = 0; n < input.size(); ++n)
        ASSERT_NEAR(half[n], 0.45F * input[n] + 0.55F * wet[n], 1e-6);
    EXPECT_EQ(processed(withWet(0), input), input); // to the bit
}

TEST(FeedbackDelay, DoesNotDependOnTheSizeOfTheBlocks)
{
    const Samples input = test::noise(1, 5);
    const Samples whole = processed(withWet(0.3), input);
    Samples pieces = input;
    FeedbackDelay delay(withWet(0.3));
    for (std::size_t first = 0, size = 1; first < pieces.size(); first += size, size = size % 1'000 + 7)
        delay.process(std::span(pieces).subspan(first, std::min(size, pieces.size() - first)));
    for (std::size_t n = 0; n < whole.size(); ++n)
        ASSERT_EQ(pieces[n], whole[n]) << "frame " << n;
}

TEST(FeedbackDelay, EndsInTrueSilence)
{
    Samples samples = test::noise(0.1, 6);
    samples.resize(48'000 * 30); // 0.38 to the power of 120
    const Samples output = processed(withWet(0.5), samples);
    EXPECT_GT(test::peakOf(std::span(output).subspan(48'000 * 2, 48'000)), 0);
    EXPECT_EQ(test::peakOf(std::span(output).last(48'000)), 0);
}
