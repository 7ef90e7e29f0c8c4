#include "platform/playback/SdlAudioOutput.h"

#include "platform/media/AudioFile.h"
#include "support/Printing.h"
#include "support/Recorder.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <map>
#include <set>
#include <unistd.h>

using namespace tonequill;
using namespace tonequill::test;
using namespace Qt::StringLiterals;

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

TEST(SdlAudioOutput, RepeatsAsOftenAsItIsTold)
{
    const QString path = noise(u"loop.wav"_s, 0.07, 8);
    const Frames once = framesOf(path);
    Recorder recorder;
    auto player = recorder.open(path);
    player->setNumberOfLoops(3);
    EXPECT_TRUE(playToEnd(*player));
    player.reset();
    Frames wanted;
    for (int i = 0; i < 4; ++i)
        wanted.insert(wanted.end(), once.begin(), once.end());
    EXPECT_TRUE(recorder.heard() == wanted);
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

TEST(SdlAudioOutput, GoesOnWhereItWasPaused)
{
    const QString path = noise(u"pause.wav"_s, 1, 11);
    Recorder recorder("5");
    auto player = recorder.open(path);
    for (const double until : {0.1, 0.3, 0.5}) {
        EXPECT_TRUE(player->play());
        EXPECT_TRUE(player->play()) << "it plays already";
        EXPECT_TRUE(waitFor([&] { return player->currentTime() >= until; }));
        if (until < 0.4)
            player->pause();
        else
            player->stop();
        EXPECT_FALSE(player->isPlaying());
        EXPECT_GE(player->currentTime(), until);
        EXPECT_EQ(player->averagePower(), std::vector{AudioPlayer::kSilenceDb});
    }
    EXPECT_TRUE(playToEnd(*player));
    player.reset();
    EXPECT_TRUE(recorder.heard() == framesOf(path));
}

TEST(SdlAudioOutput, JumpsWhileItPlays)
{
    const QString path = noise(u"jump.wav"_s, 2, 12);
    const Frames whole = framesOf(path);
    Recorder recorder("5");
    auto player = recorder.open(path);
    EXPECT_TRUE(player->play());
    EXPECT_TRUE(waitFor([&] { return player->currentTime() > 0.05; }));
    for (int i = 0; i < 200; ++i)
        player->setCurrentTime(0.005 * i); // as a hand does that drags the playhead
    player->setCurrentTime(1.5);
    EXPECT_TRUE(player->isPlaying());
    EXPECT_GE(player->currentTime(), 1.5);
    EXPECT_TRUE(waitFor([&] { return !player->isPlaying(); }));
    player.reset();
    const Frames heard = recorder.heard();
    const Frames tail = from(whole, 72'000);
    ASSERT_GT(heard.size(), tail.size());
    EXPECT_TRUE(from(heard, heard.size() - tail.size()) == tail);
    EXPECT_TRUE(std::equal(heard.begin(), heard.begin() + 1'000, whole.begin()));
}

TEST(SdlAudioOutput, HoldsAJumpWithinTheFile)
{
    playTo("dummy");
    SdlAudioOutput output;
    auto player = output.open(noise(u"within.wav"_s, 0.5, 13));
    EXPECT_EQ(player->duration(), 0.5);
    for (const auto& [seconds, held] : {std::pair(-1.0, 0.0), {0.25, 0.25}, {1e300, 0.5}, {std::nan(""), 0.0}, {-1e300, 0.0}}) {
        player->setCurrentTime(seconds);
        EXPECT_EQ(player->currentTime(), held);
    }
    player->setCurrentTime(1);
    EXPECT_TRUE(playToEnd(*player)) << "there is nothing left to play";
    EXPECT_EQ(player->currentTime(), 0.5);
}

TEST(SdlAudioOutput, TellsATimeThatMovesSmoothly)
{
    playTo("dummy");
    SdlAudioOutput output;
    auto player = output.open(noise(u"time.wav"_s, 0.6, 14));
    EXPECT_TRUE(player->play());
    double last = 0;
    std::set<double> times;
    QElapsedTimer clock;
    EXPECT_TRUE(waitFor([&] { return player->currentTime() > 0; }));
    clock.start();
    EXPECT_TRUE(waitFor([&] {
        const double now = player->currentTime();
        EXPECT_GE(now, last);
        last = now;
        times.insert(now);
        return !player->isPlaying();
    }));
    EXPECT_EQ(last, player->duration());
    // Between the device's 28 calls it moves too.
    EXPECT_GT(times.size(), 40U);
    // Real time, but for what a machine with too much to do lets pass.
    EXPECT_GT(clock.elapsed(), 300);
}

TEST(SdlAudioOutput, TellsThePowerOfWhatIsHeard)
{
    constexpr double kTolerance = 0.05; // of a window that holds no whole number of periods
    test::Samples sides;
    for (const float sample : test::sine(1'000, 1, 1)) {
        sides.push_back(sample);
        sides.push_back(sample / 10);
    }
    playTo("dummy");
    SdlAudioOutput output;
    auto player = output.open(wav(u"power.wav"_s, sides, 2));
    EXPECT_EQ(player->averagePower(), (std::vector{AudioPlayer::kSilenceDb, AudioPlayer::kSilenceDb}));
    EXPECT_TRUE(player->play());
    EXPECT_TRUE(waitFor([&] { return player->currentTime() > 0.2; }));
    const std::vector<double> powers = player->averagePower();
    ASSERT_EQ(powers.size(), 2U);
    EXPECT_NEAR(powers[0], -3.01, kTolerance); // the sine's mean square is a half
    EXPECT_NEAR(powers[1], -23.01, kTolerance);
    EXPECT_TRUE(waitFor([&] { return !player->isPlaying(); }));
    EXPECT_EQ(player->averagePower()[0], AudioPlayer::kSilenceDb);
}

TEST(SdlAudioOutput, EndsWhereAFileIsCutOff)
{
    const QString whole = noise(u"whole.wav"_s, 2, 18);
    const QString flac = test::makeMedia(u"cut.flac"_s, QStringList{u"-i"_s, whole, u"-c:a"_s, u"flac"_s});
    QByteArray bytes = test::bytesOfFile(flac);
    bytes.truncate(bytes.size() / 2);
    const QString cut = test::makeFile(u"half.flac"_s, bytes);
    Recorder recorder;
    auto player = recorder.open(cut);
    EXPECT_TRUE(playToEnd(*player));
    Frames wanted = framesOf(cut);
    EXPECT_EQ(player->currentTime(), static_cast<double>(wanted.size()) / 48'000);
    player.reset();
    std::erase(wanted, Frame());
    EXPECT_TRUE(recorder.heard() == wanted);
}

TEST(SdlAudioOutput, EndsWhenItsFileIsTakenAway)
{
    const QString path = test::scratchPath(u"shrinks.wav"_s);
    QFile::copy(noise(u"stays.wav"_s, 30, 19), path);
    Recorder recorder("5");
    auto player = recorder.open(path);
    player->setNumberOfLoops(AudioPlayer::kEndless);
    EXPECT_TRUE(player->play());
    EXPECT_TRUE(waitFor([&] { return player->currentTime() > 0.1; }));
    QFile::resize(path, 0);
    player->setCurrentTime(20);
    EXPECT_TRUE(waitFor([&] { return !player->isPlaying(); }));
    player.reset();
    EXPECT_GT(recorder.heard().size(), 4'000U);
}

TEST(SdlAudioOutput, RefusesWhatIsNoSound)
{
    SdlAudioOutput output;
    EXPECT_THROW(output.open(test::makeFile(u"text.wav"_s, "no sound")), AudioFileError);
    EXPECT_THROW(output.open(u"/nowhere/at all.wav"_s), AudioFileError);
}

TEST(SdlAudioOutput, TakesNoMoreMemoryForALongFile)
{
    constexpr qint64 kTwoHours = 2LL * 3600 * 48'000 * 2 * 2; // bytes of 16-bit stereo
    const QString path = test::makeFile(
        u"long.wav"_s, test::WavBytes{.channels = 2, .toldBytes = static_cast<std::uint32_t>(kTwoHours)}.withSilence(1));
    QFile::resize(path, 44 + kTwoHours); // holes
    const auto pagesInMemory = [] {
        long size = 0;
        long resident = 0;
        QFile file(u"/proc/self/statm"_s);
        if (file.open(QIODevice::ReadOnly))
            std::sscanf(file.readAll().constData(), "%ld %ld", &size, &resident);
        return resident;
    };
    playTo("disk", u"/dev/null"_s, "1");
    SdlAudioOutput output;
    const long before = pagesInMemory();
    auto player = output.open(path);
    EXPECT_NEAR(player->duration(), 7'200, 1e-6);
    EXPECT_TRUE(player->play());
    EXPECT_TRUE(waitFor([&] { return player->currentTime() > 3; }));
    player->setCurrentTime(7'199.5);
    EXPECT_TRUE(waitFor([&] { return !player->isPlaying(); }));
    EXPECT_LT((pagesInMemory() - before) * sysconf(_SC_PAGESIZE), 16'000'000);
}
