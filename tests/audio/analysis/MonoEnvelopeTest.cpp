#include "audio/analysis/MonoEnvelope.h"

#include "support/Sound.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

using namespace tonequill;

namespace {

struct Plain {
    std::vector<double> rms;
    std::vector<double> peak;
    qint64 crossings = 0;
};

// The envelope, frame by frame, as simple as can be.
Plain plainEnvelope(const std::vector<std::vector<float>>& channels, qint64 hopFrames)
{
    Plain result;
    double sum = 0;
    double peak = 0;
    qint64 inHop = 0;
    float previous = 0;
    const std::size_t frames = channels[0].size();
    for (std::size_t i = 0; i < frames; ++i) {
        float mono = 0;
        for (const auto& channel : channels)
            mono += channel[i];
        mono /= static_cast<float>(channels.size());
        peak = std::max<double>(peak, std::abs(mono));
        result.crossings += (previous >= 0) != (mono >= 0) ? 1 : 0;
        previous = mono;
        sum += static_cast<double>(mono) * static_cast<double>(mono);
        if (++inHop == hopFrames || i + 1 == frames) {
            result.rms.push_back(std::sqrt(sum / static_cast<double>(inHop)));
            result.peak.push_back(peak);
            sum = peak = 0;
            inHop = 0;
        }
    }
    return result;
}

void add(MonoEnvelope& envelope, const std::vector<std::vector<float>>& channels, std::size_t first, std::size_t frames)
{
    std::vector<const float*> pointers;
    for (const auto& channel : channels)
        pointers.push_back(channel.data() + first);
    envelope.add(pointers, static_cast<qint64>(frames));
}

} // namespace

TEST(MonoEnvelope, IsThePlainOneForAnyBlocksHopsAndChannels)
{
    test::Dice dice(11);
    for (const int channelCount : {1, 2, 3, 6, 64})
        for (const qint64 hopFrames : {1, 7, 80, 441, 480}) {
            std::vector<std::vector<float>> channels(static_cast<std::size_t>(channelCount), std::vector<float>(5'000));
            for (auto& channel : channels)
                for (float& sample : channel) // small steps, so that there are zeros
                    sample = static_cast<float>(dice.roll(41) - 20) / 20;
            MonoEnvelope envelope(hopFrames, channelCount, 5'000);
            for (std::size_t first = 0; first < 5'000;) {
                const auto frames = std::min<std::size_t>(5'000 - first, static_cast<std::size_t>(1 + dice.roll(900)));
                add(envelope, channels, first, frames);
                first += frames;
            }
            envelope.finish();
            const Plain plain = plainEnvelope(channels, hopFrames);
            EXPECT_EQ(envelope.crossings(), plain.crossings);
            ASSERT_EQ(envelope.rms().size(), plain.rms.size());
            ASSERT_EQ(envelope.peak().size(), plain.peak.size());
            for (std::size_t i = 0; i < plain.rms.size(); ++i) {
                // Sums of squares in floats are good to a millionth.
                EXPECT_NEAR(static_cast<double>(envelope.rms()[i]), plain.rms[i], plain.rms[i] * 1e-6);
                EXPECT_EQ(static_cast<double>(envelope.peak()[i]), plain.peak[i]);
            }
        }
}

TEST(MonoEnvelope, StaysFiniteForTheLargestAndRightForTheSmallestFloats)
{
    const float largest = std::numeric_limits<float>::max();
    MonoEnvelope hot(2, 2, 4);
    add(hot, {{largest, largest, 1e30F, -1e30F}, {largest, -largest, 1e30F, -1e30F}}, 0, 4);
    EXPECT_EQ(hot.peak()[0], largest);
    EXPECT_TRUE(std::isfinite(hot.rms()[0]));
    EXPECT_FLOAT_EQ(hot.rms()[1], 1e30F);
    MonoEnvelope quiet(2, 1, 2);
    add(quiet, {{1e-30F, -1e-30F}}, 0, 2);
    EXPECT_FLOAT_EQ(quiet.rms()[0], 1e-30F);
    EXPECT_EQ(quiet.crossings(), 1);
}

TEST(MonoEnvelope, CarriesTheLastSampleAcrossHops)
{
    MonoEnvelope envelope(1, 1, 4);
    add(envelope, {{-1.0F, 1.0F, 0.0F, -0.5F}}, 0, 4);
    EXPECT_EQ(envelope.crossings(), 3); // zero counts as positive, and so does the time before the start
}
