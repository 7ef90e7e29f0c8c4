#include "platform/media/AudioFile.h"
#include "platform/media/MediaTracks.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Sound.h"
#include "support/WavBytes.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using Kind = AudioFileError::Kind;

namespace {

// How opening fails; none if it does not.
std::optional<Kind> failureOf(const QString& path)
{
    QElapsedTimer timer;
    timer.start();
    std::optional<Kind> kind;
    try {
        AudioFile file(path);
    } catch (const AudioFileError& error) {
        kind = error.kind();
        EXPECT_FALSE(error.message().isEmpty());
    }
    EXPECT_LT(timer.elapsed(), 10'000);
    return kind;
}

std::optional<Kind> failureOf(const QString& name, const QByteArray& bytes)
{
    return failureOf(test::makeFile(name, bytes));
}

// The most memory that this process has had at once.
qint64 peakKilobytes()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

TEST(AudioFileHostile, RefusesWhatIsNoSound)
{
    EXPECT_EQ(failureOf(u"empty.wav"_s, {}), Kind::unsupported);
    EXPECT_EQ(failureOf(u"text.wav"_s, "Dear reader,\nthis is only a letter.\n"), Kind::unsupported);
    EXPECT_EQ(failureOf(u"long text.mp3"_s, QByteArray("All work and no play. ").repeated(20'000)), Kind::unsupported);
    EXPECT_EQ(failureOf(u"page.m4a"_s, "<!DOCTYPE html><html><body>Not found</body></html>"), Kind::unsupported);
    EXPECT_EQ(failureOf(u"zeros.wav"_s, QByteArray(100'000, '\0')), Kind::unsupported);
    EXPECT_EQ(failureOf(u"subtitles.srt"_s, "1\n00:00:01,000 --> 00:00:02,000\nHello\n"), Kind::unsupported);
    EXPECT_EQ(failureOf(u"riff.wav"_s, "RIFF"), Kind::unsupported);
    EXPECT_EQ(failureOf(test::makeMedia(u"picture.png"_s, test::picture(0.04))), Kind::unsupported);
    EXPECT_EQ(failureOf(test::makeMedia(u"picture.jpg"_s, test::picture(0.04))), Kind::unsupported);
    EXPECT_EQ(failureOf(test::makeMedia(u"silent film.mp4"_s, test::picture(0.5))), Kind::unsupported);
    EXPECT_EQ(failureOf(u"/proc/self/exe"_s), Kind::unsupported);
}

TEST(AudioFileHostile, RefusesWhatIsNoRegularFile)
{
    const QString folder = test::scratchPath(u"folder.wav"_s);
    ASSERT_TRUE(QDir().mkpath(folder));
    EXPECT_EQ(failureOf(folder), Kind::open);
    EXPECT_EQ(failureOf(test::scratchPath(u"nowhere.wav"_s)), Kind::open);
    EXPECT_EQ(failureOf(QString()), Kind::open);
    EXPECT_EQ(failureOf(u"/dev/zero"_s), Kind::open);
    const QString pipe = test::scratchPath(u"pipe.wav"_s);
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(failureOf(pipe), Kind::open);
    EXPECT_THROW(mediaTracks(pipe), AudioFileError);
}

TEST(AudioFileHostile, OpensNoOtherFile)
{
    const QString sound = test::makeMedia(u"target.ts"_s, test::wandering(48'000, 2, 1));
    const QByteArray path = QFile::encodeName(sound);
    EXPECT_EQ(failureOf(u"list.m3u8"_s, "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n" + path + "\n#EXT-X-ENDLIST\n"),
              Kind::unsupported);
    EXPECT_EQ(failureOf(u"list.mp3"_s, "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nhttp://127.0.0.1:9/a.ts\n#EXT-X-ENDLIST\n"),
              Kind::unsupported);
    EXPECT_EQ(failureOf(u"script.wav"_s, "ffconcat version 1.0\nfile '" + path + "'\n"), Kind::unsupported);
    EXPECT_EQ(
        failureOf(u"session.sdp"_s, "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\nt=0 0\nm=audio 5004 RTP/AVP 0\n"),
        Kind::unsupported);
    EXPECT_EQ(failureOf(u"manifest.mpd"_s, "<?xml version=\"1.0\"?><MPD xmlns=\"urn:mpeg:dash:schema:mpd:2011\"><Period/></MPD>"),
              Kind::unsupported);
}

TEST(AudioFileHostile, GoesByTheContentAndNotByTheName)
{
    const QByteArray sound = test::bytesOfFile(test::makeMedia(u"real.mp3"_s, test::wandering(44'100, 2, 1)));
    for (const QString& name : {u"wrong.wav"_s, u"no extension"_s, u"notes.txt"_s, u"picture.png.mp4"_s})
        EXPECT_EQ(AudioFile(test::makeFile(name, sound)).length(), 44'100) << name.toStdString();
}

TEST(AudioFileHostile, RefusesRatesAndChannelsBeyondTheLimits)
{
    const auto open = [](test::WavBytes wav) { return failureOf(u"limits.wav"_s, wav.withSilence(1000)); };
    EXPECT_EQ(open({.sampleRate = 0}), Kind::unsupported);
    EXPECT_EQ(open({.sampleRate = 1}), Kind::unsupported);
    EXPECT_EQ(open({.sampleRate = 79}), Kind::unsupported);
    EXPECT_EQ(open({.sampleRate = 80}), std::nullopt);
    EXPECT_EQ(open({.sampleRate = 768'000}), std::nullopt);
    EXPECT_EQ(open({.sampleRate = 768'001}), Kind::unsupported);
    EXPECT_EQ(open({.sampleRate = 2'147'483'647}), Kind::unsupported);
    EXPECT_EQ(open({.sampleRate = 4'294'967'295}), Kind::unsupported);
    EXPECT_EQ(open({.channels = 0}), Kind::unsupported);
    EXPECT_EQ(open({.channels = 64}), std::nullopt);
    EXPECT_EQ(open({.channels = 65}), Kind::unsupported);
    EXPECT_EQ(open({.channels = 65'535}), Kind::unsupported);
}

TEST(AudioFileHostile, NeverIsLongerThanItsBytes)
{
    const auto length = [](test::WavBytes wav) {
        AudioFile file(test::makeFile(u"lies.wav"_s, wav.withSilence(1000)));
        EXPECT_EQ(test::readAll(file).frameLength(), file.length());
        return file.length();
    };
    EXPECT_EQ(length({}), 1000);
    EXPECT_EQ(length({.toldBytes = 2'000'000'000}), 1000);
    EXPECT_EQ(length({.toldBytes = 0xFFFFFFFF}), 1000); // a recorder that wrote to a pipe
    EXPECT_EQ(length({.toldBytes = 0}), 1000);          // one that was switched off
    EXPECT_EQ(length({.toldBytes = 500}), 250);
    EXPECT_EQ(AudioFile(test::makeFile(u"none.wav"_s, test::WavBytes{}.withSilence(0))).length(), 0);
}

TEST(AudioFileHostile, FindsTheTrueEndOfCompressedFiles)
{
    QByteArray flac = test::bytesOfFile(test::makeMedia(u"truth.flac"_s, test::wandering(48'000, 1, 2)));
    constexpr int kTotalPlace = 4 + 4 + 13; // marker, block header, then the low 36 bits of 18 bytes
    const QByteArray whole = flac;
    for (int i = 0; i < 5; ++i)
        flac[kTotalPlace + i] = char(i == 0 ? flac[kTotalPlace] | 0x0F : 0xFF);
    EXPECT_EQ(AudioFile(test::makeFile(u"lies.flac"_s, flac)).length(), 96'000);
    for (int i = 0; i < 5; ++i)
        flac[kTotalPlace + i] = char(i == 0 ? flac[kTotalPlace] & 0xF0 : 0);
    EXPECT_EQ(AudioFile(test::makeFile(u"unknown.flac"_s, flac)).length(), 96'000);
    const qint64 half = AudioFile(test::makeFile(u"half.flac"_s, whole.first(whole.size() / 2))).length();
    EXPECT_GT(half, 20'000);
    EXPECT_LT(half, 76'000);

    const QByteArray mp3 = test::bytesOfFile(test::makeMedia(u"truth.mp3"_s, test::wandering(48'000, 1, 4)));
    AudioFile cut(test::makeFile(u"half.mp3"_s, mp3.first(mp3.size() / 2)));
    EXPECT_NEAR(static_cast<double>(cut.length()), 96'000, 4000); // its header still promises four seconds
    EXPECT_EQ(test::readAll(cut).frameLength(), cut.length());

    const QByteArray m4a = test::bytesOfFile(
        test::makeMedia(u"truth.m4a"_s, test::wandering(48'000, 1, 4) + QStringList{u"-movflags"_s, u"faststart"_s}));
    AudioFile cutM4a(test::makeFile(u"half.m4a"_s, m4a.first(m4a.size() / 2)));
    EXPECT_LT(cutM4a.length(), 110'000);
    EXPECT_GT(cutM4a.length(), 80'000);
    EXPECT_EQ(test::readAll(cutM4a).frameLength(), cutM4a.length());
}

TEST(AudioFileHostile, ReadsWhatIsNoNumberAsSilence)
{
    const float infinite = std::numeric_limits<float>::infinity();
    const std::vector<float> samples = {0.5F, std::nanf(""), infinite, -infinite, -0.25F, 1e30F};
    const AudioBuffer read =
        test::readAll(test::makeFile(u"nan.wav"_s, test::WavBytes{.kind = 3, .bits = 32}.with(std::span<const float>(samples))));
    EXPECT_THAT(read.channel(0), testing::ElementsAre(0.5F, 0.0F, 0.0F, 0.0F, -0.25F, 1e30F));

    const std::vector<double> wide = {0.5, std::nan(""), 1e300, -1e300, -0.25};
    const AudioBuffer narrowed =
        test::readAll(test::makeFile(u"wide.wav"_s, test::WavBytes{.kind = 3, .bits = 64}.with(std::span<const double>(wide))));
    EXPECT_THAT(narrowed.channel(0), testing::ElementsAre(0.5F, 0.0F, 0.0F, 0.0F, -0.25F));
}

TEST(AudioFileHostile, KeepsWhatWasReadOfAFileThatShrinks)
{
    for (const QString& name : {u"shrinks.wav"_s, u"shrinks.mp3"_s, u"shrinks.m4a"_s, u"shrinks.flac"_s, u"shrinks.ogg"_s}) {
        const QString made = test::makeMedia(name, test::wandering(48'000, 2, 20));
        const QString path = test::makeFile(u"copy-"_s + name, test::bytesOfFile(made));
        AudioFile file(path);
        AudioBuffer block(file.format(), 48'000);
        qint64 read = file.read(block);
        EXPECT_EQ(read, 48'000);
        ASSERT_EQ(truncate(QFile::encodeName(path).constData(), 30'000), 0);
        try {
            while (const qint64 got = file.read(block))
                read += got;
            EXPECT_EQ(file.read(block), 0); // and stays at its end
        } catch (const AudioFileError& error) {
            EXPECT_EQ(error.kind(), Kind::read);
        }
        EXPECT_LT(read, file.length()) << name.toStdString();
        try { // seeking in what is gone is no crash either
            file.seek(10);
            EXPECT_LE(file.read(block), 48'000);
        } catch (const AudioFileError&) {
        }
    }
}

TEST(AudioFileHostile, GoesOnReadingAFileThatWasRemoved)
{
    const QString path =
        test::makeFile(u"removed.ogg"_s, test::bytesOfFile(test::makeMedia(u"kept.ogg"_s, test::wandering(48'000, 2, 5))));
    const AudioBuffer all = test::readAll(path);
    AudioFile file(path);
    ASSERT_TRUE(QFile::remove(path));
    test::makeFile(u"removed.ogg"_s, "something else");
    file.seek(200'000);
    AudioBuffer block(file.format(), 100);
    ASSERT_EQ(file.read(block), 100);
    EXPECT_TRUE(std::ranges::equal(block.channel(0), all.channel(0).subspan(200'000, 100)));
    file.seek(0);
    ASSERT_EQ(file.read(block), 100);
    EXPECT_TRUE(std::ranges::equal(block.channel(0), all.channel(0).first(100)));
}

TEST(AudioFileHostile, PassesOverDamageInTheMiddle)
{
    for (const QString& name : {u"hurt.mp3"_s, u"hurt.ogg"_s, u"hurt.flac"_s, u"hurt.m4a"_s}) {
        QByteArray bytes = test::bytesOfFile(test::makeMedia(name, test::wandering(48'000, 2, 6)));
        const qsizetype middle = bytes.size() / 2;
        for (qsizetype i = middle; i < middle + 600; ++i)
            bytes[i] = char(i * 37);
        const QString path = test::makeFile(u"damaged-"_s + name, bytes);
        const AudioBuffer all = test::readAll(path);
        EXPECT_GT(all.frameLength(), 4 * 48'000) << name.toStdString();
        test::Dice dice(3);
        AudioFile file(path);
        AudioBuffer block(file.format(), 500);
        for (int round = 0; round < 30; ++round) { // damage moves nothing behind it
            const qint64 start = dice.roll(all.frameLength() - 500);
            file.seek(start);
            ASSERT_EQ(file.read(block), 500);
            ASSERT_TRUE(std::ranges::equal(block.channel(1), all.channel(1).subspan(static_cast<std::size_t>(start), 500)))
                << name.toStdString() << " from " << start;
        }
    }
}

TEST(AudioFileHostile, IsAsLongAsWhatCanBeDecodedWhateverFollows)
{
    constexpr double kSeconds = 2;
    const QByteArray zeros(300'000, '\0');
    const QByteArray noise = [] {
        QByteArray bytes(300'000, '\0');
        test::Dice dice(11);
        for (char& byte : bytes)
            byte = char(dice.roll(256));
        return bytes;
    }();
    for (const QString& name : {u"tail.flac"_s, u"tail.mp3"_s, u"tail.aac"_s, u"tail.ac3"_s, u"tail.eac3"_s, u"tail.mp2"_s,
                                u"tail.ogg"_s, u"tail.opus"_s, u"tail.wav"_s, u"tail.m4a"_s, u"tail.dts"_s}) {
        const QStringList strict = name.endsWith(u"dts"_s) ? QStringList{u"-strict"_s, u"-2"_s} : QStringList();
        const QString made = test::makeMedia(name, test::wandering(48'000, 2, kSeconds) + strict);
        const QByteArray bytes = test::bytesOfFile(made);
        const qint64 frames = AudioFile(made).length();
        EXPECT_NEAR(static_cast<double>(frames), 48'000 * kSeconds, 4'096) << name.toStdString();
        // Noise may look like one more frame, where a frame has no sum.
        EXPECT_EQ(AudioFile(test::makeFile(u"zeros-"_s + name, bytes + zeros)).length(), frames) << name.toStdString();
        EXPECT_NEAR(static_cast<double>(AudioFile(test::makeFile(u"noise-"_s + name, bytes + noise)).length()),
                    static_cast<double>(frames), 2 * 1'152)
            << name.toStdString();
    }
}

TEST(AudioFileHostile, TakesNoMemoryForAHugeTail)
{
    constexpr qint64 kTail = 400LL * 1024 * 1024; // a hole in the file, and none of the disk
    for (const QString& name : {u"huge.flac"_s, u"huge.mp3"_s, u"huge.aac"_s, u"huge.ac3"_s, u"huge.ogg"_s, u"huge.wav"_s}) {
        const QString made = test::makeMedia(name, test::wandering(48'000, 2, 2));
        const QString path = test::makeFile(u"hole-"_s + name, test::bytesOfFile(made));
        ASSERT_EQ(truncate(QFile::encodeName(path).constData(), QFileInfo(path).size() + kTail), 0);
        const qint64 before = peakKilobytes();
        AudioFile file(path);
        EXPECT_EQ(file.length(), AudioFile(made).length()) << name.toStdString();
        EXPECT_EQ(test::readAll(file).frameLength(), file.length()) << name.toStdString();
        EXPECT_LT(peakKilobytes() - before, 100'000) << name.toStdString();
        QFile::remove(path);
    }
}

TEST(AudioFileHostile, FindsTheSoundBehindFillingInTheMiddle)
{
    const QByteArray zeros(100'000, '\0');
    for (const QString& name : {u"twice.mp3"_s, u"twice.aac"_s}) {
        const QString made = test::makeMedia(
            name, test::wandering(48'000, 2, 2) + QStringList{u"-write_xing"_s, u"0"_s}.first(name.endsWith(u"mp3"_s) ? 2 : 0));
        const QByteArray bytes = test::bytesOfFile(made);
        const qint64 frames = AudioFile(made).length();
        AudioFile twice(test::makeFile(u"filled-"_s + name, bytes + zeros + bytes));
        EXPECT_EQ(twice.length(), 2 * frames) << name.toStdString();
        EXPECT_EQ(test::readAll(twice).frameLength(), 2 * frames) << name.toStdString();
    }
}

TEST(AudioFileHostile, IsNoSoundIfNoFrameCanBeDecoded)
{
    QByteArray flac = test::bytesOfFile(test::makeMedia(u"truth.flac"_s, test::wandering(48'000, 1, 2)));
    QByteArray headerOnly = flac.first(8 + 34 + 4); // its header goes on to promise two seconds
    headerOnly[4] = char(0x80);                     // and is the last block
    EXPECT_EQ(failureOf(u"header.flac"_s, headerOnly.first(8 + 34)), Kind::unsupported);
    EXPECT_EQ(failureOf(u"zeros behind header.flac"_s, headerOnly.first(8 + 34) + QByteArray(3'000'000, '\0')),
              Kind::unsupported);
}
