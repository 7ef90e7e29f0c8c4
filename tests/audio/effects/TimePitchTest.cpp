#include "audio/effects/TimePitch.h"
#include "support/Cancelling.h"
#include "support/Clicks.h"
#include "support/Signal.h"

#include <gmock/gmock.h>

#include <numbers>
#include <thread>

using namespace tonequill;
using test::Samples;

namespace {

// With half a second of room behind the end.
AudioBuffer changed(const AudioBuffer& in, double rate, double semitones)
{
    const auto frames = static_cast<qint64>(static_cast<double>(in.frameLength()) / rate) + 24'000;
    AudioBuffer out({48'000, 2}, frames);
    out.setFrameLength(frames);
    TimePitch::apply(in, rate, semitones, out);
    return out;
}

double cents(double hertz, double expected)
{
    return 1'200 * std::log2(hertz / expected);
}

} // namespace

TEST(TimePitch, CopiesAtRateOneAndNoPitch)
{
    const AudioBuffer in = test::bufferOf({test::noise(0.5, 1), test::noise(0.5, 2)});
    AudioBuffer out = changed(in, 1, 0);
    EXPECT_EQ(test::peakOf(out.channel(0).subspan(24'000)), 0);
    out.setFrameLength(in.frameLength());
    EXPECT_TRUE(test::haveEqualSamples(out, in));
}

TEST(TimePitch, IsTransparentNextToIt)
{
    // The engine itself, not the copy: a thousandth of a semitone.
    const Samples music = [] {
        Samples sum = test::noise(2, 1, 0.1F);
        for (const double hertz : {110.0, 440.0, 1'234.0}) {
            const Samples tone = test::sine(hertz, 2, 0.2F);
            for (std::size_t n = 0; n < sum.size(); ++n)
                sum[n] += tone[n];
        }
        return sum;
    }();
    const AudioBuffer out = changed(test::stereo(music), 1, 1e-9);
    EXPECT_GT(test::correlation(out.channel(0).first(music.size()), music), 0.999);
}

TEST(TimePitch, HitsThePitch)
{
    for (const double semitones : {7.0, -12.0, -9.0, -4.0, 3.0, 4.0, 8.0, 12.0, 24.0, -24.0})
        for (const double rate : {1.0, 0.5, 2.0}) {
            const AudioBuffer out = changed(test::stereo(test::sine(440, 2)), rate, semitones);
            const auto middle =
                out.channel(0).subspan(static_cast<std::size_t>(24'000 / rate), static_cast<std::size_t>(48'000 / rate));
            EXPECT_NEAR(cents(test::frequencyOf(middle), 440 * std::exp2(semitones / 12)), 0, 3) << semitones << " at " << rate;
        }
}

TEST(TimePitch, KeepsThePitchAtEverySpeed)
{
    for (const double rate : {0.25, 0.5, 0.75, 1.5, 2.0, 4.0}) {
        const AudioBuffer out = changed(test::stereo(test::sine(440, 3)), rate, 0);
        const auto middle =
            out.channel(0).subspan(static_cast<std::size_t>(48'000 / rate), static_cast<std::size_t>(48'000 / rate));
        EXPECT_NEAR(cents(test::frequencyOf(middle), 440), 0, 3) << rate;
        EXPECT_NEAR(test::peakOf(middle), 0.5, 0.05) << rate;
    }
}

TEST(TimePitch, KeepsClicksInTheirPlace)
{
    for (const double rate : {0.25, 0.3, 0.35, 0.5, 0.75, 0.9, 1.25, 1.5, 2.0, 3.0, 4.0}) {
        const test::Clicks clicks(static_cast<std::size_t>(14'400 * std::max(1.0, rate)));
        const AudioBuffer out = changed(test::stereo(clicks.samples), rate, 0);
        for (const std::size_t place : clicks.places) {
            const double expected = static_cast<double>(place) / rate;
            EXPECT_NEAR(test::clickNear(out.channel(0), expected), expected, 240) << "at rate " << rate; // 5 ms
        }
    }
}

TEST(TimePitch, KeepsClicksInTheirPlaceAtEveryPitch)
{
    for (const double semitones : {-12.0, -9.0, -4.0, 3.0, 4.0, 7.0, 8.0, 12.0}) {
        const test::Clicks clicks(14'400);
        const AudioBuffer out = changed(test::stereo(clicks.samples), 1, semitones);
        for (const std::size_t place : clicks.places) {
            const auto expected = static_cast<double>(place);
            EXPECT_NEAR(test::clickNear(out.channel(0), expected), expected, 240) << "at pitch " << semitones; // 5 ms
        }
    }
}

TEST(TimePitch, StartsAndEndsWithItsSource)
{
    for (const double rate : {0.25, 0.5, 1.0, 2.0, 4.0})
        for (const double semitones : {0.0, 5.0, -5.0}) {
            if (rate == 1 && semitones == 0)
                continue;
            const AudioBuffer out = changed(test::stereo(test::sine(440, 1)), rate, semitones);
            const auto samples = out.channel(0);
            const double end = 48'000 / rate;
            // A tone that is there from the first frame on is there, too: a
            // period of it after 30 ms, and nothing 40 ms behind its end.
            EXPECT_GT(test::peakOf(samples.subspan(1'440, 480)), 0.25F) << rate << " " << semitones;
            EXPECT_GT(test::peakOf(samples.subspan(static_cast<std::size_t>(end) - 1'920, 480)), 0.25F)
                << rate << " " << semitones;
            EXPECT_EQ(test::peakOf(samples.subspan(static_cast<std::size_t>(end) + 1'920)), 0) << rate << " " << semitones;
        }
}

TEST(TimePitch, EndsToTheFrameAtEverySpeedAboveOne)
{
    for (const double rate : {1.1, 1.37, 2.0, 3.999}) {
        const AudioBuffer out = changed(test::stereo(test::noise(1, 1)), rate, 0);
        const auto end = static_cast<std::size_t>(std::lround(48'000 / rate));
        EXPECT_GT(test::peakOf(out.channel(0).subspan(end - 480, 480)), 0.01F) << rate;
        EXPECT_EQ(test::peakOf(out.channel(0).subspan(end)), 0) << rate;
    }
}

TEST(TimePitch, TakesTheShortestSounds)
{
    for (const std::size_t frames : {1U, 2U, 10U, 100U, 500U, 1'000U, 5'000U})
        for (const double rate : {0.25, 1.5, 4.0}) {
            const AudioBuffer out = changed(test::stereo(Samples(frames, 0.5F)), rate, 3);
            for (const float sample : out.channel(0))
                ASSERT_TRUE(std::isfinite(sample));
            if (frames >= 500) {
                EXPECT_GT(test::peakOf(out.channel(0)), 0.01F) << frames << " at " << rate;
            }
        }
    changed(test::stereo({}), 2, 0);
}

TEST(TimePitch, StopsWhereThereIsNoMoreRoom)
{
    const AudioBuffer in = test::stereo(test::noise(1, 1));
    AudioBuffer all = changed(in, 0.5, 2);
    AudioBuffer out({48'000, 2}, 10'000);
    out.setFrameLength(10'000);
    TimePitch::apply(in, 0.5, 2, out);
    all.setFrameLength(10'000);
    EXPECT_EQ(test::samplesOf(out, 0), test::samplesOf(all, 0));
}

TEST(TimePitch, KeepsTheMiddleInTheMiddle)
{
    const AudioBuffer out = changed(test::stereo(test::noise(1, 1)), 1.3, -5);
    EXPECT_EQ(test::samplesOf(out, 0), test::samplesOf(out, 1));
    // The same sound that is not quite the same on both sides takes the other road.
    Samples other = test::noise(1, 1);
    other[0] += 1e-7F;
    const AudioBuffer apart = changed(test::bufferOf({test::noise(1, 1), other}), 1.3, -5);
    EXPECT_GT(test::correlation(apart.channel(0), apart.channel(1)), 0.999999);
    EXPECT_GT(test::correlation(apart.channel(0), out.channel(0)), 0.9999);
}

TEST(TimePitch, KeepsTheWidthOfAStereoSound)
{
    // A voice-like tone in the middle and a little noise of its own on each side.
    // Treated one by one, the sides would drift apart by 7 dB.
    const auto sideOverMiddle = [](std::span<const float> left, std::span<const float> right) {
        double side = 0;
        double middle = 0;
        for (std::size_t n = 9'600; n + 9'600 < left.size(); ++n) {
            side += std::pow(double(left[n]) - double(right[n]), 2);
            middle += std::pow(double(left[n]) + double(right[n]), 2);
        }
        return 10 * std::log10(side / middle);
    };
    Samples left = test::noise(3, 1, 0.03F);
    Samples right = test::noise(3, 2, 0.03F);
    double phase = 0;
    for (std::size_t n = 0; n < left.size(); ++n) {
        phase += 2 * std::numbers::pi * (110 + 20 * std::sin(2 * std::numbers::pi * 5 * double(n) / 48'000)) / 48'000;
        for (int partial = 1; partial < 30; ++partial) {
            const auto sample = static_cast<float>(0.15 * std::sin(phase * partial) / partial);
            left[n] += sample;
            right[n] += sample;
        }
    }
    const double before = sideOverMiddle(left, right);
    for (const auto& [rate, semitones] : {std::pair{1.5, 0.0}, std::pair{0.5, 0.0}, std::pair{1.0, -4.0}}) {
        const AudioBuffer out = changed(test::bufferOf({left, right}), rate, semitones);
        const auto frames = static_cast<std::size_t>(double(left.size()) / rate);
        EXPECT_NEAR(sideOverMiddle(out.channel(0).first(frames), out.channel(1).first(frames)), before, 4)
            << rate << " " << semitones;
    }
}

TEST(TimePitch, MovesFormantsWithThePitch)
{
    // A buzz of 110 Hz through a resonance at 1 kHz; an octave up it lies at 2 kHz.
    Samples vowel(96'000);
    double y1 = 0, y2 = 0;
    const double radius = std::exp(-std::numbers::pi * 120 / 48'000);
    for (std::size_t n = 0; n < vowel.size(); ++n) {
        const double x = n % 436 == 0 ? 1 : 0;
        const double y = x + 2 * radius * std::cos(2 * std::numbers::pi * 1'000 / 48'000) * y1 - radius * radius * y2;
        y2 = y1;
        y1 = y;
        vowel[n] = static_cast<float>(0.05 * y);
    }
    const AudioBuffer out = changed(test::stereo(vowel), 1, 12);
    const auto energyAround = [&](double hertz) { return test::energyOf(test::bandOf(out.channel(0).first(96'000), hertz)); };
    EXPECT_GT(energyAround(2'000), 4 * energyAround(1'000));
}

TEST(TimePitch, GivesTheSameBytesFromEveryThread)
{
    const AudioBuffer in = test::bufferOf({test::noise(0.5, 1), test::noise(0.5, 2)});
    const AudioBuffer first = changed(in, 0.8, 3);
    std::vector<AudioBuffer> results(4);
    std::vector<std::thread> threads;
    for (AudioBuffer& result : results)
        threads.emplace_back([&] { result = changed(in, 0.8, 3); });
    for (std::thread& thread : threads)
        thread.join();
    for (const AudioBuffer& result : results)
        EXPECT_TRUE(test::haveEqualSamples(result, first));
}

TEST(TimePitch, StopsWhenItIsCancelled)
{
    const AudioBuffer in = test::stereo(test::noise(1, 1));
    AudioBuffer out({48'000, 2}, 48'000);
    out.setFrameLength(48'000);
    Progress progress;
    progress.cancel();
    EXPECT_THROW(TimePitch::apply(in, 2, 0, out, &progress), Cancelled);
    Progress whole;
    TimePitch::apply(in, 2, 0, out, &whole);
    EXPECT_EQ(whole.fraction(), 1);
}

TEST(TimePitch, EndsSoonAfterItIsCancelled)
{
    const auto work = [](const AudioBuffer& in, double rate) {
        AudioBuffer out({48'000, 2}, in.frameLength());
        out.setFrameLength(in.frameLength());
        return test::workAfterCancel([&](Progress& progress) { TimePitch::apply(in, rate, 0, out, &progress); });
    };
    EXPECT_LE(work(test::stereo(test::noise(5, 1)), 1.5), test::kSoon);
    EXPECT_LE(work(test::stereo(test::noise(180, 1)), 1), test::kSoon) << "a copy";
}
