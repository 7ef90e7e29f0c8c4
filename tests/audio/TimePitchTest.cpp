#include "audio/TimePitch.h"
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

// The loudest frame around `expected`: where a click is.
double clickNear(std::span<const float> samples, double expectedFrame)
{
    constexpr double kReach = 6'000;
    const auto first = static_cast<std::size_t>(std::max(0.0, expectedFrame - kReach));
    const auto last = std::min(samples.size(), static_cast<std::size_t>(expectedFrame + kReach));
    const auto window = samples.subspan(first, last - first);
    const auto isQuieter = [](float one, float other) { return std::abs(one) < std::abs(other); };
    return static_cast<double>(first) + double(std::max_element(window.begin(), window.end(), isQuieter) - window.begin());
}

// Short bursts of noise in silence, with their places.
struct Clicks {
    explicit Clicks(std::size_t apart)
    {
        const Samples burst = test::noise(0.002, 3);
        samples.resize(apart * 10);
        for (std::size_t place = apart; place + apart < samples.size(); place += apart + 317) {
            places.push_back(place);
            for (std::size_t i = 0; i < burst.size(); ++i)
                samples[place + i] = burst[i] * std::exp(-static_cast<float>(i) / 30);
        }
    }
    Samples samples;
    std::vector<std::size_t> places;
};

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
        const Clicks clicks(static_cast<std::size_t>(14'400 * std::max(1.0, rate)));
        const AudioBuffer out = changed(test::stereo(clicks.samples), rate, 0);
        for (const std::size_t place : clicks.places) {
            const double expected = static_cast<double>(place) / rate;
            EXPECT_NEAR(clickNear(out.channel(0), expected), expected, 240) << "at rate " << rate; // 5 ms
        }
    }
}

TEST(TimePitch, KeepsClicksInTheirPlaceAtEveryPitch)
{
    for (const double semitones : {-12.0, -9.0, -4.0, 3.0, 4.0, 7.0, 8.0, 12.0}) {
        const Clicks clicks(14'400);
        const AudioBuffer out = changed(test::stereo(clicks.samples), 1, semitones);
        for (const std::size_t place : clicks.places) {
            const auto expected = static_cast<double>(place);
            EXPECT_NEAR(clickNear(out.channel(0), expected), expected, 240) << "at pitch " << semitones; // 5 ms
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
