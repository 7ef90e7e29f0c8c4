#include "platform/SdlAudioOutput.h"

#include "platform/AudioFile.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Signal.h"
#include "support/Sound.h"
#include "support/WavBytes.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <gmock/gmock.h>

#include <csignal>
#include <cstring>
#include <map>
#include <unistd.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

struct Frame {
    float left = 0;
    float right = 0;
    bool operator==(const Frame&) const = default;
};
using Frames = std::vector<Frame>;

// Where outputs that are made from now on are heard. SDL asks the environment
// each time it is started, which an output does with its first sound.
void playTo(const char* driver, const QString& file = {}, const char* delayMs = "1")
{
    qputenv("SDL_AUDIODRIVER", driver);
    qputenv("SDL_DISKAUDIOFILE", QFile::encodeName(file));
    // Each block of 21 ms takes so long: about twenty times as fast as real time,
    // which takes no longer and still lets a decoder keep up.
    qputenv("SDL_DISKAUDIODELAY", delayMs);
}

// An output whose sound is written down.
class Recorder {
public:
    explicit Recorder(const char* delayMs = "1")
    {
        playTo("disk", path(), delayMs);
        m_output = std::make_unique<SdlAudioOutput>();
    }

    std::unique_ptr<AudioPlayer> open(const QString& file) { return m_output->open(file); }

    // Everything that was heard, silences included. REQUIRES: the players are gone.
    Frames all()
    {
        m_output.reset();
        const QByteArray bytes = test::bytesOfFile(path());
        Frames frames(static_cast<std::size_t>(bytes.size()) / sizeof(Frame));
        std::memcpy(frames.data(), bytes.constData(), frames.size() * sizeof(Frame));
        return frames;
    }

    // What was heard without the silences: a sound of noise has none of its own,
    // and how long the device waits for a sound is not what is tested.
    Frames heard()
    {
        Frames frames = all();
        std::erase(frames, Frame());
        return frames;
    }

private:
    QString path() const { return m_folder.filePath(u"heard.raw"_s); }

    QTemporaryDir m_folder;
    std::unique_ptr<SdlAudioOutput> m_output;
};

template <typename Condition>
bool waitFor(Condition&& condition, int milliseconds = 10'000)
{
    QElapsedTimer time;
    time.start();
    while (!condition()) {
        if (time.elapsed() > milliseconds)
            return false;
        QThread::usleep(500);
    }
    return true;
}

bool playToEnd(AudioPlayer& player)
{
    return player.play() && waitFor([&] { return !player.isPlaying(); });
}

QString wav(const QString& name, const test::Samples& interleaved, std::uint16_t channels, std::uint32_t rate = 48'000)
{
    return test::makeFile(name, test::WavBytes{.kind = 3, .channels = channels, .sampleRate = rate, .bits = 32}.with(
                                    std::span<const float>(interleaved)));
}

QString noise(const QString& name, double seconds, std::uint32_t seed)
{
    return wav(name, test::noise(seconds, seed), 1);
}

Frames framesOf(const QString& path)
{
    const AudioBuffer whole = test::readAll(path);
    Frames frames(static_cast<std::size_t>(whole.frameLength()));
    for (std::size_t i = 0; i < frames.size(); ++i)
        frames[i] = {whole.channel(0)[i], whole.channel(whole.channelCount() - 1)[i]};
    return frames;
}

Frames from(const Frames& frames, std::size_t first)
{
    return {frames.begin() + static_cast<std::ptrdiff_t>(first), frames.end()};
}

Frames times(const Frames& frames, float gain)
{
    Frames result;
    for (const Frame& frame : frames)
        result.push_back({frame.left * gain, frame.right * gain});
    return result;
}

} // namespace

TEST(SdlAudioOutput, PlaysTheSamplesOfTheFile)
{
    const QString stereo = wav(u"stereo.wav"_s, test::noise(1, 4), 2); // half a second
    const QString flac =
        test::makeMedia(u"heard.flac"_s, QStringList{u"-i"_s, stereo, u"-c:a"_s, u"flac"_s, u"-sample_fmt"_s, u"s16"_s});
    const QString aac = test::makeMedia(u"heard.m4a"_s, QStringList{u"-i"_s, stereo, u"-c:a"_s, u"aac"_s});
    for (const QString& path : {stereo, noise(u"mono.wav"_s, 0.5, 5), flac, aac}) {
        SCOPED_TRACE(qPrintable(path));
        Frames whole = framesOf(path);
        std::erase(whole, Frame());
        Recorder recorder;
        auto player = recorder.open(path);
        EXPECT_FALSE(player->isPlaying());
        EXPECT_EQ(player->currentTime(), 0);
        EXPECT_TRUE(playToEnd(*player));
        EXPECT_EQ(player->currentTime(), player->duration());
        player.reset();
        EXPECT_TRUE(recorder.heard() == whole);
    }
}

TEST(SdlAudioOutput, PlaysFromTheFrameThatWasChosen)
{
    const QString path = noise(u"seek.wav"_s, 0.5, 6);
    Recorder recorder;
    auto player = recorder.open(path);
    player->setCurrentTime(10'001 / 48'000.0);
    EXPECT_NEAR(player->currentTime(), 10'001 / 48'000.0, 1e-9);
    EXPECT_TRUE(playToEnd(*player));
    player.reset();
    EXPECT_TRUE(recorder.heard() == from(framesOf(path), 10'001));
}

TEST(SdlAudioOutput, StartsAnewAfterTheEnd)
{
    const QString path = noise(u"again.wav"_s, 0.2, 7);
    Recorder recorder;
    auto player = recorder.open(path);
    EXPECT_TRUE(playToEnd(*player));
    EXPECT_TRUE(playToEnd(*player));
    player.reset();
    Frames twice = framesOf(path);
    const Frames once = twice;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_TRUE(recorder.heard() == twice);
}

TEST(SdlAudioOutput, RepeatsWithoutASeam)
{
    const QString path = noise(u"loop.wav"_s, 0.07, 8);
    const Frames once = framesOf(path);
    Recorder recorder;
    auto player = recorder.open(path);
    player->setNumberOfLoops(3);
    EXPECT_TRUE(playToEnd(*player));
    player.reset();
    Frames all = recorder.all();
    Frames wanted;
    for (int i = 0; i < 4; ++i)
        wanted.insert(wanted.end(), once.begin(), once.end());
    // Here a silence would be a seam. Four rounds are read ahead at once.
    const auto first = std::ranges::find_if(all, [](const Frame& frame) { return frame != Frame(); });
    ASSERT_GE(all.end() - first, std::ptrdiff_t(wanted.size()));
    EXPECT_TRUE(std::equal(wanted.begin(), wanted.end(), first));
}

TEST(SdlAudioOutput, RepeatsForEverUntilItIsToldNotTo)
{
    const QString path = noise(u"ever.wav"_s, 0.1, 9);
    Recorder recorder;
    auto player = recorder.open(path);
    player->setNumberOfLoops(AudioPlayer::kEndless);
    EXPECT_TRUE(player->play());
    double last = 0;
    int rounds = 0;
    EXPECT_TRUE(waitFor([&] {
        const double now = player->currentTime();
        rounds += now < last;
        last = now;
        return rounds == 3;
    }));
    EXPECT_TRUE(player->isPlaying());
    player->setNumberOfLoops(0); // the round that is played is the last, though more is read ahead
    EXPECT_TRUE(waitFor([&] { return !player->isPlaying(); }));
    player.reset();
    const Frames once = framesOf(path);
    const Frames heard = recorder.heard();
    ASSERT_GE(heard.size(), 4 * once.size());
    EXPECT_EQ(heard.size() % once.size(), 0U);
    for (std::size_t i = 0; i < heard.size(); ++i)
        ASSERT_EQ(heard[i], once[i % once.size()]) << i;
}

TEST(SdlAudioOutput, HasItsVolume)
{
    const QString path = noise(u"volume.wav"_s, 0.2, 10);
    Recorder recorder;
    auto player = recorder.open(path);
    player->setVolume(0.25);
    EXPECT_TRUE(playToEnd(*player));
    player.reset();
    EXPECT_TRUE(recorder.heard() == times(framesOf(path), 0.25F));
}

TEST(SdlAudioOutput, AddsItsPlayersUp)
{
    const QString one = wav(u"sum1.wav"_s, test::Samples(12'000, 0.25F), 1);
    const QString other = wav(u"sum2.wav"_s, test::Samples(24'000, 0.125F), 1);
    Recorder recorder("21"); // real time, so that one still sounds when the other starts
    auto first = recorder.open(one);
    auto second = recorder.open(other);
    EXPECT_TRUE(first->play());
    EXPECT_TRUE(playToEnd(*second));
    EXPECT_FALSE(first->isPlaying());
    first.reset();
    second.reset();
    std::map<float, int> counts;
    for (const Frame& frame : recorder.heard()) {
        EXPECT_EQ(frame.left, frame.right);
        ++counts[frame.left];
    }
    const int both = counts[0.375F];
    EXPECT_GT(both, 0);
    EXPECT_EQ(counts[0.25F], 12'000 - both);
    EXPECT_EQ(counts[0.125F], 24'000 - both);
    EXPECT_EQ(counts.size(), 3U);
}
