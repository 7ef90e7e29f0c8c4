#include "platform/playback/PlaybackVoice.h"

#include "platform/playback/AudioPlayer.h"
#include "support/MediaFactory.h"
#include "support/Signal.h"
#include "support/WavBytes.h"

#include <gmock/gmock.h>

#include <thread>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kBlock = 1'024;

// A voice and its device, whose time the test turns. Its file is so short that
// all of it is read ahead before the device takes anything.
class Fixture {
public:
    explicit Fixture(std::size_t frames, std::uint32_t rate = 48'000)
        : samples(test::noise(static_cast<double>(frames) / rate, 1, 0.5F, rate)),
          voice(PlaybackStream(test::makeFile(
              u"voice.wav"_s, test::WavBytes{.kind = 3, .sampleRate = rate, .bits = 32}.with(std::span<const float>(samples)))))
    {}

    ~Fixture()
    {
        voice.pause();
        if (m_decoder.joinable())
            m_decoder.join();
    }

    // Takes a block and gives its frames of sound; all that was taken is heard.
    std::size_t take()
    {
        readAhead();
        std::vector<StereoFrame> block(kBlock);
        voice.mixInto(block, taken);
        taken += kBlock;
        const auto silence = std::ranges::find_if(block, [](const StereoFrame& frame) { return frame.left == 0; });
        const auto frames = static_cast<std::size_t>(silence - block.begin());
        for (std::size_t i = 0; i < frames; ++i)
            sound.push_back(block[i].left);
        return frames;
    }

    // Takes blocks until one has sound.
    void takeSound()
    {
        while (take() == 0)
            std::this_thread::yield();
    }

    double heard() const { return static_cast<double>(taken); }

    test::Samples samples; // of the file
    test::Samples sound;   // that was taken
    PlaybackVoice voice;
    qint64 taken = 0;
    bool isEndless = false; // read ahead by a thread, while the device takes

private:
    void readAhead()
    {
        if (!voice.claimDecoding())
            return;
        if (!isEndless)
            return voice.decode();
        if (m_decoder.joinable())
            m_decoder.join();
        m_decoder = std::thread([this] { voice.decode(); });
    }

    std::thread m_decoder;
};

} // namespace

TEST(PlaybackVoice, IsWhereItIsHeard)
{
    Fixture one(24'000);
    EXPECT_EQ(one.voice.position(0), 0);
    one.voice.play(0);
    EXPECT_TRUE(one.voice.isPlaying(0));
    one.takeSound();
    EXPECT_EQ(one.voice.position(one.heard() - 5'000), 0); // not yet heard
    EXPECT_EQ(one.voice.position(one.heard() - 1'000), 24);
    EXPECT_EQ(one.voice.position(one.heard() - 0.5), 1'023.5);
    EXPECT_EQ(one.voice.position(one.heard() - 500), 1'023.5) << "a clock that runs backwards is not followed";
    EXPECT_EQ(one.voice.position(one.heard() + 5'000), 1'024);
}

TEST(PlaybackVoice, CountsInFramesOfItsFile)
{
    Fixture one(4'000, 8'000);
    one.voice.seek(1'000, 0);
    EXPECT_EQ(one.voice.position(0), 1'000);
    one.voice.play(0);
    one.takeSound();
    EXPECT_NEAR(one.voice.position(one.heard()), 1'000 + 1'024 / 6.0, 1e-9);
}

TEST(PlaybackVoice, EndsWhenItsLastFrameIsHeard)
{
    Fixture one(2'500);
    one.voice.play(0);
    one.takeSound();
    EXPECT_EQ(one.take(), kBlock);
    EXPECT_TRUE(one.voice.isActive());
    EXPECT_EQ(one.take(), 2'500 - 2 * kBlock);
    EXPECT_FALSE(one.voice.isActive()) << "the device has nothing more to take";
    const double end = one.heard() - 3 * kBlock + 2'500;
    EXPECT_TRUE(one.voice.isPlaying(end - 1));
    EXPECT_EQ(one.voice.position(end - 1), 2'499);
    EXPECT_FALSE(one.voice.isPlaying(end));
    EXPECT_EQ(one.voice.position(end), 2'500);
    EXPECT_EQ(one.take(), 0U);
    EXPECT_TRUE(one.sound == one.samples);
    one.voice.play(one.heard());
    EXPECT_EQ(one.voice.position(one.heard()), 0);
}

TEST(PlaybackVoice, EndsOnTheBorderOfABlock)
{
    Fixture one(2 * kBlock);
    one.voice.play(0);
    one.takeSound();
    one.take();
    EXPECT_EQ(one.voice.position(one.heard()), 2 * kBlock) << "not the start of a repeat";
    EXPECT_EQ(one.take(), 0U);
    EXPECT_FALSE(one.voice.isPlaying(one.heard()));
}

TEST(PlaybackVoice, StaysStoppedWhenItIsMovedAfterItsEnd)
{
    Fixture one(500);
    one.voice.play(0);
    one.takeSound();
    one.voice.seek(100, one.heard());
    EXPECT_FALSE(one.voice.isPlaying(one.heard()));
    EXPECT_EQ(one.voice.position(one.heard()), 100);
}

TEST(PlaybackVoice, PlaysOnWhenItIsMovedBeforeItsEndIsHeard)
{
    Fixture one(500);
    one.voice.play(0);
    one.takeSound();
    one.voice.seek(100, one.heard() - kBlock);
    EXPECT_TRUE(one.voice.isPlaying(one.heard()));
    one.sound.clear();
    one.takeSound();
    EXPECT_TRUE(std::equal(one.sound.begin(), one.sound.end(), one.samples.begin() + 100, one.samples.end()));
}

TEST(PlaybackVoice, RepeatsWithoutASeam)
{
    Fixture one(3'000);
    one.voice.setLoops(3);
    one.voice.play(0);
    for (std::size_t taken = 0; taken < 12'000; taken += kBlock)
        EXPECT_EQ(one.take(), std::min(kBlock, 12'000 - taken));
    EXPECT_FALSE(one.voice.isPlaying(one.heard()));
    for (std::size_t i = 0; i < one.sound.size(); ++i)
        ASSERT_EQ(one.sound[i], one.samples[i % 3'000]) << i;
}

TEST(PlaybackVoice, IsToldAfterItsLastReadThatItRepeats)
{
    Fixture one(5'000);
    one.voice.play(0);
    one.takeSound(); // the whole of it is read by now
    one.voice.setLoops(1);
    while (one.sound.size() < 10'000)
        one.take();
    EXPECT_EQ(one.take(), 0U);
    EXPECT_FALSE(one.voice.isPlaying(one.heard()));
    for (std::size_t i = 0; i < one.sound.size(); ++i)
        ASSERT_EQ(one.sound[i], one.samples[i % 5'000]) << i;
    EXPECT_EQ(one.sound.size(), 10'000U);
}

TEST(PlaybackVoice, PlaysOnlyTheRoundItIsInOnceItNoLongerRepeats)
{
    Fixture one(1'500);
    one.isEndless = true;
    one.voice.setLoops(AudioPlayer::kEndless);
    one.voice.play(0);
    one.takeSound();
    one.take(); // 2048: in the second round
    one.voice.setLoops(0);
    while (one.voice.isPlaying(one.heard()))
        one.take();
    EXPECT_EQ(one.sound.size(), 3'000U);
    EXPECT_EQ(one.voice.position(one.heard()), 1'500);
}

TEST(PlaybackVoice, ChangesItsVolumeWithoutAStep)
{
    Fixture one(24'000);

    one.voice.play(0);
    one.takeSound();
    one.voice.setVolume(0.5F);
    const std::size_t before = one.sound.size();
    one.take();
    one.take();
    const auto gain = [&](std::size_t i) { return one.sound[before + i] / test::noise(1, 1)[before + i]; };
    EXPECT_NEAR(gain(0), 1 - 0.5 / kBlock, 1e-3);
    EXPECT_NEAR(gain(kBlock / 2), 0.75, 1e-2);
    EXPECT_EQ(gain(kBlock), 0.5F);
}

TEST(PlaybackVoice, MeasuresWhatIsHeardOnly)
{
    constexpr double kTolerance = 0.01; // of a tenth of a second of noise
    const double expected = 0.25 / 3;   // white noise within ±0.5
    Fixture one(24'000);
    one.voice.play(0);
    EXPECT_EQ(one.voice.meanSquares(0)[0], 0);
    one.takeSound();
    EXPECT_EQ(one.voice.meanSquares(one.heard() - kBlock)[0], 0);
    for (int i = 0; i < 10; ++i)
        one.take();
    EXPECT_NEAR(one.voice.meanSquares(one.heard())[0], expected, kTolerance);
    one.voice.setVolume(0);
    for (int i = 0; i < 6; ++i)
        one.take();
    EXPECT_EQ(one.voice.meanSquares(one.heard())[0], 0);
    EXPECT_NEAR(one.voice.meanSquares(one.heard() - 6 * kBlock)[0], expected, kTolerance);
}

TEST(PlaybackVoice, GivesItsMemoryBackAndGoesOn)
{
    Fixture one(20'000);
    one.voice.play(0);
    one.takeSound();
    one.voice.stop();
    EXPECT_FALSE(one.voice.isPlaying(one.heard()));
    EXPECT_EQ(one.take(), 0U);
    EXPECT_EQ(one.voice.position(one.heard()), kBlock);
    one.voice.play(one.heard());
    while (one.voice.isPlaying(one.heard()))
        one.take();
    EXPECT_TRUE(one.sound == one.samples);
}
