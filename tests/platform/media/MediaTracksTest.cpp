#include "platform/media/MediaTracks.h"

#include "support/Cancelling.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Sound.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <cmath>

using namespace tonequill;
using namespace Qt::StringLiterals;
using Kind = AudioFileError::Kind;

namespace {

MediaTracks tracksOf(const QString& name, const QStringList& arguments)
{
    return mediaTracks(test::makeMedia(name, arguments));
}

const QStringList kSound = test::wandering(48'000, 2, 2);

QString filmOf(const QString& name, const QStringList& encoders, const QStringList& sound = kSound)
{
    return test::makeMedia(name, sound + test::picture(2) + encoders);
}

// Extracts to a fresh path and gives it.
QString extracted(const QString& source, Progress* progress = nullptr)
{
    static int count = 0;
    const QString path = test::scratchPath(u"extracted-%1.m4a"_s.arg(++count));
    extractFirstAudio(source, path, progress);
    return path;
}

double differenceDb(const AudioBuffer& a, const AudioBuffer& b, qint64 shift = 0)
{
    double signal = 0;
    double error = 0;
    for (qint64 i = 4'096; i < std::min(a.frameLength(), b.frameLength()) - 4'096; ++i) {
        const double value = a.channel(0)[static_cast<std::size_t>(i)];
        signal += value * value;
        error += std::pow(value - static_cast<double>(b.channel(0)[static_cast<std::size_t>(i + shift)]), 2);
    }
    return 10 * std::log10(error / signal);
}

std::optional<Kind> failureOf(const QString& source, const QString& destination = test::scratchPath(u"failed.m4a"_s))
{
    try {
        extractFirstAudio(source, destination);
    } catch (const AudioFileError& error) {
        return error.kind();
    }
    return std::nullopt;
}

} // namespace

TEST(MediaTracks, CountsSoundAndPictures)
{
    const auto expect = [](MediaTracks tracks, int audio, int video) {
        EXPECT_EQ(tracks.audioCount, audio);
        EXPECT_EQ(tracks.videoCount, video);
    };
    expect(tracksOf(u"sound.wav"_s, kSound), 1, 0);
    expect(tracksOf(u"sound.mp3"_s, kSound), 1, 0);
    expect(tracksOf(u"silent.mp4"_s, test::picture(1)), 0, 1);
    for (const QString& name :
         {u"film.mp4"_s, u"film.mov"_s, u"film.mkv"_s, u"film.webm"_s, u"film.avi"_s, u"film.ts"_s, u"film.mpg"_s, u"film.flv"_s})
        expect(mediaTracks(filmOf(name, name.endsWith(u"flv") ? QStringList{u"-ar"_s, u"44100"_s} : QStringList{})), 1, 1);
    expect(tracksOf(u"two.mkv"_s, kSound + test::wandering(44'100, 1, 1) + QStringList{u"-map"_s, u"0"_s, u"-map"_s, u"1"_s}), 2,
           0);
}

TEST(MediaTracks, TakesNoCoverForAVideo)
{
    const QString cover = test::makeMedia(u"cover.jpg"_s, test::picture(0.04));
    const QStringList withCover =
        kSound + QStringList{u"-i"_s, cover, u"-map"_s, u"0"_s, u"-map"_s, u"1"_s, u"-disposition:v"_s, u"attached_pic"_s};
    for (const QString& name : {u"cover.mp3"_s, u"cover.m4a"_s, u"cover.flac"_s}) {
        const QString path = test::makeMedia(name, withCover + QStringList{u"-c:v"_s, u"mjpeg"_s});
        const MediaTracks tracks = mediaTracks(path);
        EXPECT_EQ(tracks.audioCount, 1) << name.toStdString();
        EXPECT_EQ(tracks.videoCount, 0) << name.toStdString();
        EXPECT_NEAR(AudioFile(path).durationSeconds(), 2, 0.001) << name.toStdString();
    }
}

TEST(MediaTracks, RefusesWhatIsNoMedia)
{
    const auto kindOf = [](const QString& path) -> std::optional<Kind> {
        try {
            mediaTracks(path);
        } catch (const AudioFileError& error) {
            return error.kind();
        }
        return std::nullopt;
    };
    EXPECT_EQ(kindOf(test::scratchPath(u"nowhere.mp4"_s)), Kind::open);
    EXPECT_EQ(kindOf(QDir::tempPath()), Kind::open);
    EXPECT_EQ(kindOf(test::makeFile(u"text.mp4"_s, "Only words.\n")), Kind::unsupported);
    EXPECT_EQ(kindOf(test::makeFile(u"empty.mp4"_s, {})), Kind::unsupported);
    EXPECT_EQ(kindOf(test::makeMedia(u"still.png"_s, test::picture(0.04))), Kind::unsupported);
    EXPECT_EQ(kindOf(test::makeMedia(u"moving.gif"_s, test::picture(0.5))), Kind::unsupported);
}

TEST(AudioExtraction, CopiesAacAsItIs)
{
    for (const QString& name : {u"copied.mp4"_s, u"copied.mov"_s}) {
        const QString film = filmOf(name, {u"-c:a"_s, u"aac"_s});
        const AudioBuffer before = test::readAll(film);
        const AudioBuffer after = test::readAll(extracted(film));
        // The container's end may be told in units of 1/1000 s.
        EXPECT_NEAR(static_cast<double>(after.frameLength()), static_cast<double>(before.frameLength()), 1'024);
        for (int channel = 0; channel < 2; ++channel)
            EXPECT_TRUE(std::ranges::equal(after.channel(channel).first(95'000), before.channel(channel).first(95'000)));
    }
}

TEST(AudioExtraction, CopiesAacOutOfATransportStream)
{
    const QString film = filmOf(u"copied.ts"_s, {u"-c:a"_s, u"aac"_s});
    const AudioBuffer before = test::readAll(film);
    const AudioBuffer after = test::readAll(extracted(film));
    EXPECT_EQ(after.frameLength(), before.frameLength());
    EXPECT_TRUE(std::ranges::equal(after.channel(0), before.channel(0)));
}

TEST(AudioExtraction, EncodesEverythingElse)
{
    const AudioBuffer source = test::readAll(test::makeMedia(u"source.wav"_s, kSound));
    for (const auto& [name, encoder] : {std::pair(u"vorbis.webm"_s, u"libvorbis"_s), std::pair(u"pcm.mov"_s, u"pcm_s16le"_s),
                                        std::pair(u"opus.mkv"_s, u"libopus"_s), std::pair(u"flac.mkv"_s, u"flac"_s)}) {
        const QString path = extracted(filmOf(name, {u"-c:a"_s, encoder}));
        const AudioBuffer sound = test::readAll(path);
        EXPECT_EQ(AudioFile(path).format(), source.format());
        EXPECT_NEAR(static_cast<double>(sound.frameLength()), static_cast<double>(source.frameLength()), 100)
            << name.toStdString();
        EXPECT_LT(differenceDb(source, sound), -10) << name.toStdString();
        EXPECT_EQ(mediaTracks(path).videoCount, 0);
    }
}

TEST(AudioExtraction, MixesManyChannelsDownToTwo)
{
    const QString film = filmOf(u"surround.mkv"_s, {u"-c:a"_s, u"ac3"_s}, test::wandering(44'100, 6, 2));
    const AudioFile file(extracted(film));
    EXPECT_EQ(file.channelCount(), 2);
    EXPECT_EQ(file.sampleRate(), 44'100);
    EXPECT_NEAR(file.durationSeconds(), 2, 0.04);
}

TEST(AudioExtraction, ConvertsRatesThatAacDoesNotKnow)
{
    const QString film = filmOf(u"fast.mov"_s, {u"-c:a"_s, u"pcm_s16le"_s}, test::wandering(192'000, 1, 2));
    const QString path = extracted(film);
    const AudioFile file(path);
    EXPECT_EQ(file.sampleRate(), 48'000);
    EXPECT_EQ(file.channelCount(), 1);
    EXPECT_NEAR(file.durationSeconds(), 2, 0.001);
    const AudioBuffer same = test::readAll(test::makeMedia(u"same.wav"_s, test::wandering(48'000, 1, 2)));
    EXPECT_LT(differenceDb(same, test::readAll(path)), -10);
}

TEST(AudioExtraction, StartsWithTheFirstSoundOfALateTrack)
{
    for (const QString& name : {u"late.mkv"_s, u"late.mp4"_s, u"late.ts"_s}) {
        const QString film =
            test::makeMedia(name, test::picture(3) + QStringList{u"-itsoffset"_s, u"0.7"_s} + kSound +
                                      QStringList{u"-c:a"_s, u"aac"_s, u"-map"_s, u"0:v"_s, u"-map"_s, u"1:a"_s});
        const AudioBuffer sound = test::readAll(extracted(film));
        EXPECT_NEAR(static_cast<double>(sound.frameLength()), 96'000, 3'000) << name.toStdString();
        EXPECT_EQ(AudioFile(film).length(), test::readAll(film).frameLength());
    }
}

TEST(AudioExtraction, LeavesNothingWhereItFails)
{
    const QString destination = test::scratchPath(u"failed.m4a"_s);
    EXPECT_EQ(failureOf(test::makeMedia(u"mute.mp4"_s, test::picture(1))), Kind::unsupported);
    EXPECT_EQ(failureOf(test::makeFile(u"words.mp4"_s, "Only words.\n")), Kind::unsupported);
    EXPECT_EQ(failureOf(test::scratchPath(u"nowhere.mp4"_s)), Kind::open);
    EXPECT_FALSE(QFileInfo::exists(destination));
    EXPECT_EQ(failureOf(filmOf(u"good.mp4"_s, {}), test::scratchPath(u"no folder/a.m4a"_s)), Kind::write);
}

TEST(AudioExtraction, ReportsItsProgressAndCanBeStopped)
{
    for (const QString& film :
         {filmOf(u"stopped.mp4"_s, {u"-c:a"_s, u"aac"_s}), filmOf(u"stopped.mkv"_s, {u"-c:a"_s, u"flac"_s})}) {
        Progress progress;
        extracted(film, &progress);
        EXPECT_EQ(progress.fraction(), 1.0);
        progress.cancel();
        const QString destination = test::scratchPath(u"stopped.m4a"_s);
        EXPECT_THROW(extractFirstAudio(film, destination, &progress), Cancelled);
        EXPECT_FALSE(QFileInfo::exists(destination));
    }
}

TEST(AudioExtraction, EndsSoonAfterItIsCancelled)
{
    const QStringList sound = test::wandering(48'000, 2, 5);
    const auto repeated = [&sound](const QString& name, int times) {
        const QString one = test::makeMedia(u"one-"_s + name, sound + QStringList{u"-b:a"_s, u"64k"_s});
        return test::makeFile(name, test::bytesOfFile(one).repeated(times));
    };
    // The one is copied as it is, the other encoded anew.
    for (const QString& source : {repeated(u"copied.aac"_s, 500), repeated(u"encoded.mp3"_s, 4)}) {
        const QString destination = test::scratchPath(u"stopped.m4a"_s);
        const auto extract = [&](Progress& progress) { extractFirstAudio(source, destination, &progress); };
        EXPECT_LE(test::workAfterCancel(extract), test::kSoon) << source.toStdString();
        QFile::remove(destination); // of a run that came to its end
        Progress progress;
        progress.cancel();
        EXPECT_THROW(extractFirstAudio(source, destination, &progress), Cancelled);
        EXPECT_FALSE(QFileInfo::exists(destination));
        EXPECT_THROW(mediaTracks(source, &progress), Cancelled);
    }
}
