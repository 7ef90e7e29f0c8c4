#include "platform/media/StreamConverter.h"

#include "support/Signal.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace tonequill;
using test::Samples;

namespace {

void append(Samples& all, const AudioBuffer& block)
{
    const auto samples = block.channel(0);
    all.insert(all.end(), samples.begin(), samples.end());
}

// The first channel of the sound, converted in blocks of so many frames.
Samples converted(StreamConverter converter, const AudioBuffer& sound, qint64 blockFrames)
{
    Samples all;
    AudioBuffer block(sound.format(), blockFrames);
    for (qint64 first = 0; first < sound.frameLength(); first += blockFrames) {
        block.setFrameLength(std::min(blockFrames, sound.frameLength() - first));
        for (int channel = 0; channel < sound.channelCount(); ++channel)
            std::copy_n(sound.channel(channel).begin() + first, block.frameLength(), block.channel(channel).begin());
        append(all, converter.convert(block));
    }
    append(all, converter.finish());
    return all;
}

} // namespace

TEST(StreamConverter, GivesTheSameSoundHoweverItIsCut)
{
    const AudioBuffer sound = test::bufferOf({test::noise(1, 1, 0.5F, 44'100)}, 44'100);
    const AudioFormat to = {48'000, 1};
    const Samples whole = converted({sound.format(), to}, sound, sound.frameLength());
    EXPECT_EQ(whole.size(), 48'000U);
    for (const qint64 frames : {1'000, 4'096, 44'099})
        EXPECT_TRUE(converted({sound.format(), to}, sound, frames) == whole) << frames;
}

TEST(StreamConverter, HandsOnWhatNeedsNoConversion)
{
    const AudioBuffer sound = test::stereo(test::noise(0.1, 1));
    StreamConverter converter(sound.format(), sound.format());
    EXPECT_EQ(&converter.convert(sound), &sound);
    EXPECT_EQ(converter.finish().frameLength(), 0);
}

TEST(StreamConverter, GoesOnInAnotherPlace)
{
    const AudioBuffer sound = test::bufferOf({test::noise(0.5, 1, 0.5F, 22'050)}, 22'050);
    StreamConverter first(sound.format(), {48'000, 1});
    Samples all;
    append(all, first.convert(sound));
    StreamConverter second = std::move(first);
    append(all, second.finish());
    EXPECT_TRUE(all == converted({sound.format(), {48'000, 1}}, sound, sound.frameLength()));
}

TEST(StreamConverter, KeepsFullScaleInManyChannelsFullScale)
{
    const AudioBuffer sound = test::bufferOf(std::vector<Samples>(6, Samples(4'800, 1)));
    for (const float sample : converted({sound.format(), {48'000, 2}}, sound, 1'000))
        ASSERT_NEAR(sample, 1, 1e-5);
}
