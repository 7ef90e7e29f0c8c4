#include "platform/media/AudioFile.h"
#include "platform/media/MediaTracks.h"
#include "support/MediaFactory.h"
#include "support/Sound.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMaxFrames = 500'000; // read of one file; a lying header may promise hours

// Changes that damaged disks, broken downloads and bad programs make.
void mutate(QByteArray& bytes, test::Dice& dice)
{
    const qsizetype headerBytes = std::min<qsizetype>(bytes.size(), 600);
    for (qint64 change = 0, changes = 1 + dice.roll(6); change < changes && !bytes.isEmpty(); ++change) {
        const qsizetype place = dice.roll(dice.roll(3) > 0 ? std::min(headerBytes, bytes.size()) : bytes.size());
        const qsizetype length = std::min<qsizetype>(1 + dice.roll(40), bytes.size() - place);
        switch (dice.roll(7)) {
        case 0:
            bytes[place] = char(bytes[place] ^ (1 << dice.roll(8)));
            break;
        case 1:
            bytes[place] = char(dice.roll(256));
            break;
        case 2:
            bytes.replace(place, std::min<qsizetype>(4, length), QByteArray(std::min<qsizetype>(4, length), '\xff'));
            break;
        case 3:
            bytes.replace(place, std::min<qsizetype>(4, length), QByteArray(std::min<qsizetype>(4, length), '\0'));
            break;
        case 4:
            bytes.remove(place, length);
            break;
        case 5:
            bytes.insert(place, bytes.mid(dice.roll(bytes.size()), length));
            break;
        case 6:
            bytes.truncate(std::max<qsizetype>(place, 16));
            break;
        }
    }
}

void readHereAndThere(const QString& path, test::Dice& dice)
{
    AudioFile file(path);
    EXPECT_GE(file.length(), 0);
    AudioBuffer block(file.format(), 20'000);
    qint64 read = 0;
    while (read < kMaxFrames) {
        const qint64 got = file.read(block);
        EXPECT_LE(file.framePosition(), file.length());
        if (got == 0)
            break;
        for (int channel = 0; channel < file.channelCount(); ++channel)
            for (const float sample : block.channel(channel))
                ASSERT_TRUE(std::isfinite(sample));
        read += got;
    }
    for (int round = 0; round < 3 && file.length() > 0; ++round) {
        file.seek(dice.roll(std::min(file.length(), kMaxFrames)));
        file.read(block, 1000);
    }
}

} // namespace

TEST(AudioFileMutation, SurvivesThreeHundredDamagedFiles)
{
    const QStringList sound = test::wandering(48'000, 2, 0.4);
    const QStringList film = sound + test::picture(0.4);
    const QList<QString> originals = {
        test::makeMedia(u"m.wav"_s, sound),
        test::makeMedia(u"m.aiff"_s, sound),
        test::makeMedia(u"m.caf"_s, sound),
        test::makeMedia(u"m.mp3"_s, sound),
        test::makeMedia(u"m.m4a"_s, sound),
        test::makeMedia(u"m.aac"_s, sound),
        test::makeMedia(u"m.flac"_s, sound),
        test::makeMedia(u"m.ogg"_s, sound),
        test::makeMedia(u"m.opus"_s, sound),
        test::makeMedia(u"m.mka"_s, sound + QStringList{u"-c:a"_s, u"aac"_s}),
        test::makeMedia(u"m.mp4"_s, film),
        test::makeMedia(u"m.ts"_s, film),
        test::makeMedia(u"m.avi"_s, film),
        test::makeMedia(u"m.webm"_s, sound),
        test::makeMedia(u"m.w64"_s, sound),
        test::makeMedia(u"m.wma"_s, sound),
        test::makeMedia(u"m.wv"_s, sound),
        test::makeMedia(u"m.ac3"_s, sound),
        test::makeMedia(u"alac.m4a"_s, sound + QStringList{u"-c:a"_s, u"alac"_s}),
        test::makeMedia(u"adpcm.wav"_s, sound + QStringList{u"-c:a"_s, u"adpcm_ms"_s}),
    };
    constexpr int kFiles = 300;
    int opened = 0;
    for (int i = 0; i < kFiles; ++i) {
        test::Dice dice(static_cast<std::uint64_t>(i));
        const QString original = originals[i % originals.size()];
        QByteArray bytes = test::bytesOfFile(original);
        mutate(bytes, dice);
        const QString path = test::makeFile(u"mutated"_s, bytes);
        QElapsedTimer timer;
        timer.start();
        try {
            readHereAndThere(path, dice);
            ++opened;
        } catch (const AudioFileError&) {
        }
        try {
            mediaTracks(path);
        } catch (const AudioFileError&) {
        }
        EXPECT_LT(timer.elapsed(), 10'000) << "number " << i << " of " << original.toStdString();
    }
    EXPECT_GT(opened, kFiles / 3); // most damage is small enough to read on
}
