#include "platform/media/AudioFile.h"
#include "support/Cancelling.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Sound.h"
#include "support/WavBytes.h"

#include <QtEndian>

#include <gmock/gmock.h>

#include <cmath>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(AudioFile, TellsWhatIsWrongInOneSentence)
{
    const auto sentence = [](AudioFileError::Kind kind, const QString& detail = {}) {
        return AudioFileError(kind, u"/some/where/My Take.wav"_s, detail).message();
    };
    using Kind = AudioFileError::Kind;
    EXPECT_EQ(sentence(Kind::open), u"“My Take.wav” couldn't be opened."_s);
    EXPECT_EQ(sentence(Kind::unsupported), u"“My Take.wav” isn't a sound or video file that can be read."_s);
    EXPECT_EQ(sentence(Kind::read), u"“My Take.wav” couldn't be read."_s);
    EXPECT_EQ(sentence(Kind::seek), u"“My Take.wav” couldn't be read from the chosen place."_s);
    EXPECT_EQ(sentence(Kind::write), u"“My Take.wav” couldn't be saved."_s);
    EXPECT_EQ(sentence(Kind::write, u"the disk is full"_s), u"“My Take.wav” couldn't be saved: the disk is full."_s);
    EXPECT_EQ(sentence(Kind::noMemory), u"There is not enough memory for “My Take.wav”."_s);
}

TEST(AudioFile, LeavesOutThePaddingThatCafDeclares)
{
    QByteArray caf =
        test::bytesOfFile(test::makeMedia(u"padded.caf"_s, test::wandering(48'000, 1, 1) + QStringList{u"-c:a"_s, u"alac"_s}));
    const AudioBuffer whole = test::readAll(test::makeFile(u"whole.caf"_s, caf));
    const qsizetype table = caf.indexOf("pakt") + 12;
    ASSERT_GT(table, 12);
    const qint64 decoded = qFromBigEndian<qint64>(caf.constData() + table + 8);
    qToBigEndian<qint32>(2112, caf.data() + table + 16);
    qToBigEndian<qint32>(static_cast<qint32>(decoded - 40'000), caf.data() + table + 20);
    const AudioBuffer trimmed = test::readAll(test::makeFile(u"trimmed.caf"_s, caf));
    ASSERT_EQ(trimmed.frameLength(), 40'000 - 2112);
    EXPECT_TRUE(std::ranges::equal(trimmed.channel(0), whole.channel(0).subspan(2112, 40'000 - 2112)));
}

TEST(AudioFile, SeeksAndReadsByItsPosition)
{
    AudioFile file(test::makeMedia(u"position.wav"_s, test::wandering(48'000, 2, 1)));
    EXPECT_EQ(file.framePosition(), 0);
    EXPECT_EQ(file.length(), 48'000);
    EXPECT_EQ(file.durationSeconds(), 1.0);
    AudioBuffer block(file.format(), 30'000);
    EXPECT_EQ(file.read(block), 30'000);
    EXPECT_EQ(file.read(block, 5), 5);
    EXPECT_EQ(block.frameLength(), 5);
    EXPECT_EQ(file.framePosition(), 30'005);
    EXPECT_EQ(file.read(block), 17'995);
    EXPECT_EQ(file.read(block), 0);
    EXPECT_EQ(block.frameLength(), 0);
    file.seek(1'000'000); // past the end
    EXPECT_EQ(file.read(block), 0);
    file.seek(47'999);
    EXPECT_EQ(file.read(block), 1);
}

TEST(AudioFile, ReadsSeveralAtOnceAndMoves)
{
    const QString path = test::makeMedia(u"moved.mp3"_s, test::wandering(44'100, 1, 1));
    AudioFile first(path);
    AudioFile second(path);
    AudioBuffer a(first.format(), 44'100);
    AudioBuffer b(first.format(), 44'100);
    first.read(a, 100);
    AudioFile moved(std::move(first));
    moved.read(a, 100);
    second.seek(100);
    second.read(b, 100);
    EXPECT_TRUE(std::ranges::equal(a.channel(0), b.channel(0)));
}

TEST(AudioFile, ReadsTheFirstSoundOfAVideo)
{
    const QString path = test::makeMedia(
        u"film.mkv"_s, test::picture(1) + test::wandering(48'000, 2, 1) + test::wandering(44'100, 1, 1) +
                           QStringList{u"-map"_s, u"0"_s, u"-map"_s, u"1"_s, u"-map"_s, u"2"_s, u"-c:a"_s, u"flac"_s});
    EXPECT_EQ(AudioFile(path).format(), (AudioFormat{48'000, 2}));
    EXPECT_EQ(AudioFile(path).length(), 48'000);
}

TEST(AudioFile, KeepsTheEncodersSoundWhole)
{
    // The same sound through a tool that knows nothing of ours.
    const QStringList sound = test::wandering(44'100, 2, 2);
    for (const QString& name : {u"peer.mp3"_s, u"peer.flac"_s, u"peer.opus"_s}) {
        const QString path = test::makeMedia(name, sound);
        const QString decoded = test::scratchPath(name + u".wav"_s);
        ASSERT_EQ(test::run(u"ffmpeg"_s,
                            {u"-nostdin"_s, u"-v"_s, u"error"_s, u"-y"_s, u"-i"_s, path, u"-c:a"_s, u"pcm_f32le"_s, decoded}),
                  0);
        const AudioBuffer ours = test::readAll(path);
        const AudioBuffer theirs = test::readAll(decoded);
        ASSERT_EQ(ours.frameLength(), theirs.frameLength()) << name.toStdString();
        double difference = 0;
        for (std::size_t i = 0; i < ours.channel(1).size(); ++i)
            difference = std::max<double>(difference, std::abs(ours.channel(1)[i] - theirs.channel(1)[i]));
        EXPECT_LT(difference, 1e-3) << name.toStdString(); // two Opus decoders differ by that much
    }
}

TEST(AudioFile, EndsSoonAfterItIsCancelled)
{
    // Frames follow frames: the same bytes again and again are a longer sound.
    const QStringList sound = test::wandering(48'000, 2, 5);
    const QString aac = test::makeFile(
        u"long.aac"_s,
        test::bytesOfFile(test::makeMedia(u"short.aac"_s, sound + QStringList{u"-b:a"_s, u"48k"_s})).repeated(600));
    const auto open = [&aac](Progress& progress) { AudioFile(aac, &progress); };
    EXPECT_LE(test::workAfterCancel(open), test::kSoon) << "while its packets are counted";

    const QString mp3 = test::makeFile(u"long.mp3"_s, test::bytesOfFile(test::makeMedia(u"short.mp3"_s, sound)).repeated(20));
    const QString wav = test::makeFile(u"long.wav"_s, test::WavBytes{.channels = 2}.withSilence(20'000'000));
    for (const QString& path : {mp3, wav}) {
        AudioBuffer all = test::readAll(path);
        const auto read = [&](Progress& progress) { AudioFile(path, &progress).read(all); };
        EXPECT_LE(test::workAfterCancel(read), test::kSoon) << path.toStdString();
    }
}

TEST(AudioFile, SaysCancelledWhateverItWouldHaveSaid)
{
    Progress progress;
    AudioFile file(test::makeMedia(u"position.wav"_s, test::wandering(48'000, 2, 1)), &progress);
    AudioBuffer block(file.format(), 1'000);
    file.read(block);
    progress.cancel();
    EXPECT_THROW(file.read(block), Cancelled);
    EXPECT_THROW(file.seek(10), Cancelled);
    EXPECT_THROW(AudioFile(test::scratchPath(u"nowhere.wav"_s), &progress), Cancelled);
}

TEST(AudioFile, KeepsWhatIsLouderThanFullScale)
{
    // A tone of almost twice full scale: what goes through 16 bits ends at 1.
    const QStringList hot = {u"-f"_s, u"lavfi"_s, u"-i"_s, u"aevalsrc='1.8*sin(2*PI*440*t)':s=48000:d=1"_s};
    const auto peakOf = [&hot](const QString& name, const QStringList& encoder) {
        const AudioBuffer sound = test::readAll(test::makeMedia(name, hot + encoder));
        const auto samples = sound.channel(0);
        return std::max(*std::ranges::max_element(samples), -*std::ranges::min_element(samples));
    };
    EXPECT_NEAR(peakOf(u"hot.wav"_s, {u"-c:a"_s, u"pcm_f32le"_s}), 1.8, 0.001);
    EXPECT_NEAR(peakOf(u"hot.wv"_s, {u"-sample_fmt"_s, u"fltp"_s}), 1.8, 0.001);
    const QStringList rate = {u"-b:a"_s, u"128k"_s};
    EXPECT_GT(peakOf(u"hot.opus"_s, rate + QStringList{u"-sample_fmt"_s, u"flt"_s}), 1.7);
    EXPECT_GT(peakOf(u"hot.ogg"_s, {u"-c:a"_s, u"libvorbis"_s}), 1.7);
    for (const QString& name : {u"hot.m4a"_s, u"hot.mp3"_s, u"hot.ac3"_s, u"hot.eac3"_s, u"hot.wma"_s})
        EXPECT_GT(peakOf(name, rate), 1.7) << name.toStdString();
    // This encoder takes 16 bits: the cut-off tops ring when they come back.
    EXPECT_GT(peakOf(u"hot.mp2"_s, rate), 1.01);
}

TEST(AudioFile, ReadsTheSlowestRates)
{
    for (const int rate : {80, 4'000, 5'512, 7'350}) {
        const test::WavBytes wav = {.sampleRate = std::uint32_t(rate)};
        AudioFile file(test::makeFile(u"slow.wav"_s, wav.withSilence(std::size_t(2 * rate))));
        EXPECT_EQ(file.sampleRate(), rate);
        EXPECT_EQ(file.durationSeconds(), 2);
    }
    AudioFile aac(test::makeMedia(u"slow.m4a"_s, test::wandering(7'350, 1, 2)));
    EXPECT_EQ(aac.sampleRate(), 7'350);
    EXPECT_EQ(aac.length(), 14'700);
    AudioFile flac(test::makeMedia(u"slow.flac"_s, test::wandering(4'000, 1, 2)));
    EXPECT_EQ(flac.length(), 8'000);
}
