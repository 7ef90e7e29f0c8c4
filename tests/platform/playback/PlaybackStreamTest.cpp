#include "platform/playback/PlaybackStream.h"

#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Signal.h"
#include "support/Sound.h"
#include "support/WavBytes.h"

#include <gmock/gmock.h>

#include <array>

using namespace tonequill;
using namespace Qt::StringLiterals;
using AtEnd = PlaybackStream::AtEnd;

namespace {

using Sides = std::array<test::Samples, 2>;

// Reads on until the end, or until that many frames have come.
Sides read(PlaybackStream& stream, AtEnd atEnd = AtEnd::stop, std::size_t frames = SIZE_MAX)
{
    Sides sides;
    while (sides[0].size() < frames) {
        const PlaybackStream::Block block = stream.read(atEnd);
        if (block.isEmpty())
            break;
        sides[0].insert(sides[0].end(), block.left.begin(), block.left.end());
        sides[1].insert(sides[1].end(), block.right.begin(), block.right.end());
    }
    return sides;
}

Sides readFrom(const QString& path, qint64 frame)
{
    PlaybackStream stream(path);
    read(stream, AtEnd::stop, 10'000); // a stream that was somewhere already
    stream.seek(frame);
    return read(stream);
}

test::Samples after(const test::Samples& samples, qint64 frame)
{
    return {samples.begin() + frame, samples.end()};
}

QString wav(const QString& name, const test::Samples& interleaved, std::uint16_t channels, std::uint32_t rate = 48'000)
{
    return test::makeFile(name, test::WavBytes{.kind = 3, .channels = channels, .sampleRate = rate, .bits = 32}.with(
                                    std::span<const float>(interleaved)));
}

QString media(const QString& name, int rate, int channels, const QString& codec)
{
    return test::makeMedia(name, test::wandering(rate, channels, 2) + QStringList{u"-c:a"_s, codec});
}

} // namespace

TEST(PlaybackStream, GivesASoundOfTheDevicesRateAsItIs)
{
    for (const QString& path : {media(u"play.wav"_s, 48'000, 2, u"pcm_s24le"_s), media(u"play.flac"_s, 48'000, 2, u"flac"_s),
                                media(u"play.m4a"_s, 48'000, 2, u"aac"_s), media(u"play.mp3"_s, 48'000, 2, u"libmp3lame"_s)}) {
        SCOPED_TRACE(qPrintable(path));
        const AudioBuffer whole = test::readAll(path);
        for (const qint64 frame : {qint64(0), qint64(1), qint64(30'011), whole.frameLength() - 1, whole.frameLength()}) {
            SCOPED_TRACE(frame);
            const Sides sides = readFrom(path, frame);
            EXPECT_TRUE(sides[0] == after(test::samplesOf(whole, 0), frame));
            EXPECT_TRUE(sides[1] == after(test::samplesOf(whole, 1), frame));
        }
    }
}

TEST(PlaybackStream, GivesOneChannelToBothSides)
{
    const test::Samples samples = test::noise(0.5, 1);
    const Sides sides = readFrom(wav(u"one.wav"_s, samples, 1), 777);
    EXPECT_TRUE(sides[0] == after(samples, 777));
    EXPECT_TRUE(sides[1] == sides[0]);
}

TEST(PlaybackStream, MixesManyChannelsDownWithinFullScale)
{
    const test::Samples ones(6 * 24'000, 1.0F);
    const Sides sides = readFrom(wav(u"six.wav"_s, ones, 6), 0);
    ASSERT_EQ(sides[0].size(), 24'000U);
    EXPECT_NEAR(test::peakOf(sides[0]), 1, 1e-6);
    EXPECT_NEAR(test::peakOf(sides[1]), 1, 1e-6);
}

// From everywhere the same samples as from the start: to the 28 bits of the converter.
TEST(PlaybackStream, SeeksExactlyAcrossTheConverter)
{
    constexpr double kTolerance = 1e-6;
    struct Case {
        int rate;
        qint64 step; // frames of the file that are a whole number of the stream's
    };
    for (const Case& one : {Case{44'100, 147}, Case{8'000, 1}, Case{96'000, 2}, Case{22'050, 147}, Case{192'000, 4}}) {
        SCOPED_TRACE(one.rate);
        const QString path = media(u"rate%1.wav"_s.arg(one.rate), one.rate, 2, u"pcm_s16le"_s);
        const Sides whole = readFrom(path, 0);
        EXPECT_EQ(whole[0].size(), 96'000U);
        for (const qint64 steps : {qint64(1), qint64(20), qint64(one.rate / one.step)}) {
            const qint64 frame = steps * one.step;
            const Sides part = readFrom(path, frame);
            const test::Samples rest = after(whole[0], frame * 48'000 / one.rate);
            ASSERT_EQ(part[0].size(), rest.size());
            double worst = 0;
            for (std::size_t i = 0; i < rest.size(); ++i)
                worst = std::max(worst, std::abs(double(part[0][i]) - double(rest[i])));
            EXPECT_LT(worst, kTolerance) << frame;
        }
    }
}

TEST(PlaybackStream, JoinsTheEndToTheStart)
{
    const test::Samples samples = test::noise(0.37, 2);
    PlaybackStream stream(wav(u"round.wav"_s, samples, 1));
    stream.seek(5'000);
    const Sides sides = read(stream, AtEnd::repeat, 60'000);
    for (std::size_t i = 0; i < sides[0].size(); ++i)
        ASSERT_EQ(sides[0][i], samples[(5'000 + i) % samples.size()]) << i;
    EXPECT_EQ(stream.repeats(), 3);
}

// A tone whose period fits the file goes on through the seam as if there were none.
TEST(PlaybackStream, JoinsThemAcrossTheConverterToo)
{
    constexpr double kTolerance = 1e-5; // of the converter's pass band at 440 Hz
    PlaybackStream stream(wav(u"tone.wav"_s, test::sine(440, 0.1, 0.5F, 44'100), 1, 44'100));
    const Sides sides = read(stream, AtEnd::repeat, 20'000);
    const test::Samples tone = test::sine(440, 1);
    for (std::size_t i = 1'000; i < 20'000; ++i)
        ASSERT_NEAR(sides[0][i], tone[i], kTolerance) << i;
}

TEST(PlaybackStream, RepeatsAfterAllWhenItHasEnded)
{
    const test::Samples samples = test::noise(0.1, 3);
    PlaybackStream stream(wav(u"late.wav"_s, samples, 1));
    EXPECT_TRUE(read(stream)[0] == samples);
    EXPECT_TRUE(stream.read(AtEnd::stop).isEmpty());
    const PlaybackStream::Block block = stream.read(AtEnd::repeat);
    ASSERT_FALSE(block.isEmpty());
    EXPECT_EQ(block.left[0], samples[0]);
    EXPECT_EQ(stream.repeats(), 1);
}

TEST(PlaybackStream, EndsAtOnceWithoutASingleFrame)
{
    PlaybackStream stream(wav(u"none.wav"_s, {}, 2));
    EXPECT_EQ(stream.length(), 0);
    EXPECT_TRUE(stream.read(AtEnd::repeat).isEmpty());
    EXPECT_TRUE(stream.read(AtEnd::repeat).isEmpty());
}

TEST(PlaybackStream, RefusesWhatIsNoSound)
{
    EXPECT_THROW(PlaybackStream(test::makeFile(u"text.wav"_s, "no sound")), AudioFileError);
    EXPECT_THROW(PlaybackStream(u"/nowhere/at all.wav"_s), AudioFileError);
}
