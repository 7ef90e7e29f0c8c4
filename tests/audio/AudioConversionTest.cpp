#include "audio/AudioConversion.h"

#include "support/Cancelling.h"
#include "support/Signal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace tonequill;
using test::Samples;

namespace {

float peakOf(const AudioBuffer& buffer)
{
    float peak = 0;
    for (int channel = 0; channel < buffer.channelCount(); ++channel)
        peak = std::max(peak, test::peakOf(buffer.channel(channel)));
    return peak;
}

} // namespace

TEST(AudioConversion, HandsTheSameBufferBackForAnEqualFormat)
{
    AudioBuffer buffer = test::bufferOf({test::noise(0.1, 1)});
    const float* const samples = buffer.channel(0).data();
    EXPECT_EQ(convertBuffer(std::move(buffer), {48'000, 1}).channel(0).data(), samples);
}

TEST(AudioConversion, GivesTheLengthThatTheRatesImply)
{
    for (const double rate :
         {8'000.0, 11'025.0, 22'050.0, 32'000.0, 44'100.0, 47'999.0, 88'200.0, 96'000.0, 192'000.0, 768'000.0})
        for (const std::size_t frames : {1U, 7U, 100U, 441U, 44'100U, 65'536U, 65'537U, 200'001U}) {
            const AudioBuffer converted = convertBuffer(test::bufferOf({Samples(frames, 0.5F)}, rate), {48'000, 1});
            EXPECT_NEAR(double(converted.frameLength()), double(frames) * 48'000 / rate, 0.5001) << frames << " at " << rate;
        }
}

TEST(AudioConversion, AddsNoDelayAndLosesNoTail)
{
    for (const double rate : {22'050.0, 44'100.0, 96'000.0}) {
        // Pulses at both ends and in the middle of a low tone's period.
        const auto frames = static_cast<std::size_t>(rate);
        Samples samples(frames);
        for (const double place : {0.01, 0.5, 0.99})
            for (int i = -100; i <= 100; ++i) {
                const auto at = static_cast<std::ptrdiff_t>(std::lround(place * rate)) + i;
                samples[static_cast<std::size_t>(at)] += static_cast<float>(0.5 * std::pow(std::cos(i * 0.0157), 2));
            }
        const AudioBuffer converted = convertBuffer(test::bufferOf({samples}, rate), {48'000, 1});
        const auto out = converted.channel(0);
        for (const double place : {0.01, 0.5, 0.99}) {
            const auto first = static_cast<std::ptrdiff_t>((place - 0.008) * 48'000);
            const auto peak = std::max_element(out.begin() + first, out.begin() + first + 768) - out.begin();
            EXPECT_NEAR(double(peak), std::lround(place * rate) * 48'000 / rate, 1) << rate;
            EXPECT_NEAR(out[static_cast<std::size_t>(peak)], 0.5, 0.001);
        }
    }
}

TEST(AudioConversion, KeepsTonesAndAddsNothing)
{
    const AudioBuffer converted = convertBuffer(test::bufferOf({test::sine(1'000, 2, 0.5F, 44'100)}, 44'100), {48'000, 1});
    const auto middle = converted.channel(0).subspan(24'000, 48'000);
    EXPECT_NEAR(test::amplitudeAt(middle, 1'000), 0.5, 1e-6);
    Samples rest(middle.begin(), middle.end());
    const Samples tone = test::sine(1'000, 1); // in phase: 24,000 frames are 500 periods
    for (std::size_t n = 0; n < rest.size(); ++n)
        rest[n] -= tone[n];
    EXPECT_LT(test::decibels(double(test::peakOf(rest))), -130);
}

TEST(AudioConversion, CopiesMonoToBothSides)
{
    for (const double rate : {48'000.0, 44'100.0}) {
        const AudioBuffer mono = test::bufferOf({test::noise(0.5, 1)}, rate);
        const AudioBuffer both = convertBuffer(mono, {48'000, 2});
        EXPECT_EQ(test::samplesOf(both, 0), test::samplesOf(both, 1));
        EXPECT_EQ(test::samplesOf(both, 0), test::samplesOf(convertBuffer(mono, {48'000, 1}), 0));
    }
}

TEST(AudioConversion, MixesManyChannelsDownWithoutClipping)
{
    for (const int channels : {3, 4, 5, 6, 7, 8, 9, 16, 24, 64}) {
        const std::vector<Samples> full(static_cast<std::size_t>(channels), Samples(1'000, 1));
        const AudioBuffer mix = convertBuffer(test::bufferOf(full), {48'000, 2});
        EXPECT_NEAR(peakOf(mix), 1, 1e-5) << channels;
    }
    // 5.1: the fronts stay on their side, the centre comes from both, each as
    // loud against the other as the standard of broadcasting has it (-3 dB).
    std::vector<Samples> surround(6, Samples(1'000));
    surround[2] = Samples(1'000, 1);
    const float centre = convertBuffer(test::bufferOf(surround), {48'000, 2}).channel(1)[500];
    std::swap(surround[2], surround[0]);
    const AudioBuffer left = convertBuffer(test::bufferOf(surround), {48'000, 2});
    EXPECT_NEAR(test::decibels(double(centre / left.channel(0)[500])), -3.01, 0.01);
    EXPECT_EQ(left.channel(1)[500], 0);
}

TEST(AudioConversion, EndsSoonAfterItIsCancelled)
{
    const AudioBuffer sound = test::bufferOf({test::noise(120, 1, 0.5F, 44'100)}, 44'100);
    const auto convert = [&sound](Progress& progress) { convertBuffer(sound, {48'000, 1}, &progress); };
    EXPECT_LE(test::workAfterCancel(convert), test::kSoon);
}
