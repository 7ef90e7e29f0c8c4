#include "platform/media/AudioFile.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Sound.h"

#include <QFileInfo>

#include <gmock/gmock.h>

#include <numeric>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

constexpr int kRate = 44'100;

// Bits, the highest first, and the two checksums of FLAC.
class Bits {
public:
    void put(quint64 value, int bits)
    {
        for (int bit = bits - 1; bit >= 0; --bit) {
            m_last = static_cast<quint8>(m_last << 1 | (value >> bit & 1));
            if (++m_count == 8) {
                m_bytes.append(char(m_last));
                m_count = 0;
            }
        }
    }

    void putSum8() { put(remainder(0x07, 8), 8); }
    void putSum16() { put(remainder(0x8005, 16), 16); }
    const QByteArray& bytes() const { return m_bytes; }

private:
    quint32 remainder(quint32 polynomial, int width) const
    {
        quint32 sum = 0;
        const quint32 top = 1U << (width - 1);
        for (const char byte : m_bytes) {
            sum ^= quint32(quint8(byte)) << (width - 8);
            for (int bit = 0; bit < 8; ++bit)
                sum = (sum << 1 ^ ((sum & top) != 0 ? polynomial : 0)) & (2 * top - 1);
        }
        return sum;
    }

    QByteArray m_bytes;
    quint8 m_last = 0;
    int m_count = 0;
};

// A frame of one channel of 16 bits whose samples are stored as they are: a ramp
// that goes on from frame to frame. `number` as its header has it.
QByteArray frame(int number, bool isSampleNumber, int samples, int firstSample)
{
    Bits bits;
    bits.put(0x7FFC, 15);
    bits.put(isSampleNumber ? 1 : 0, 1);
    bits.put(7, 4); // the size stands behind the number, in 16 bits
    bits.put(9, 4); // 44.1 kHz
    bits.put(0, 4); // one channel
    bits.put(4, 3); // 16 bits
    bits.put(0, 1);
    if (number < 0x80) {
        bits.put(quint64(number), 8);
    } else if (number < 0x800) {
        bits.put(0xC0 | quint64(number) >> 6, 8);
        bits.put(0x80 | (quint64(number) & 0x3F), 8);
    } else {
        bits.put(0xE0 | quint64(number) >> 12, 8);
        bits.put(0x80 | (quint64(number) >> 6 & 0x3F), 8);
        bits.put(0x80 | (quint64(number) & 0x3F), 8);
    }
    bits.put(quint64(samples - 1), 16);
    bits.putSum8();
    bits.put(2, 8); // stored as they are
    for (int i = 0; i < samples; ++i)
        bits.put(quint16(firstSample + i), 16);
    bits.putSum16();
    return bits.bytes();
}

QByteArray header(int fewest, int most, qint64 length, int bitsPerSample = 16)
{
    Bits bits;
    for (const char letter : {'f', 'L', 'a', 'C'})
        bits.put(quint64(letter), 8);
    bits.put(0x80, 8); // STREAMINFO, the last block
    bits.put(34, 24);
    bits.put(quint64(fewest), 16);
    bits.put(quint64(most), 16);
    bits.put(0, 24);
    bits.put(0, 24);
    bits.put(kRate, 20);
    bits.put(0, 3);
    bits.put(quint64(bitsPerSample - 1), 5);
    bits.put(quint64(length), 36);
    for (int i = 0; i < 16; ++i)
        bits.put(0, 8);
    return bits.bytes();
}

struct Numbering {
    bool isMarked = false;   // as the numbers of samples …
    bool areSamples = false; // … and whether they are
};

// Frames of these lengths, one after the other.
QList<QByteArray> frames(const std::vector<int>& lengths, Numbering numbering)
{
    QList<QByteArray> list;
    int start = 0;
    for (const int length : lengths) {
        list << frame(numbering.areSamples ? start : int(list.size()), numbering.isMarked, length, start);
        start += length;
    }
    return list;
}

QString fileOf(const QString& name, const QByteArray& bytes)
{
    return test::makeFile(name, bytes);
}

// The number of the first sample that is not as in the ramp; -1 if none.
qint64 firstWrong(const AudioBuffer& sound, qint64 from = 0)
{
    for (qint64 i = from; i < sound.frameLength(); ++i)
        if (sound.channel(0)[std::size_t(i)] != float(qint16(i)) / 32'768)
            return i;
    return -1;
}

QString publicFile(const QString& name)
{
    return QStringLiteral(TONEQUILL_MEDIA_BESIDE) + u'/' + name;
}

} // namespace

TEST(FlacFrames, CountsItsSamplesHoweverItsFramesAreNumbered)
{
    const std::vector<int> equal = {576, 576, 576, 576, 300};
    const std::vector<int> unequal = {576, 4'608, 1'152, 576, 2'304, 300};
    const auto total = [](const std::vector<int>& lengths) { return std::accumulate(lengths.begin(), lengths.end(), 0); };
    const auto check = [&](const std::vector<int>& lengths, int fewest, int most, Numbering numbering) {
        for (const qint64 told : {qint64(total(lengths)), qint64(0), qint64(1) << 35}) {
            const QString path = fileOf(u"numbered.flac"_s, header(fewest, most, told) + frames(lengths, numbering).join());
            AudioFile file(path);
            EXPECT_EQ(file.length(), total(lengths)) << "told " << told;
            const AudioBuffer all = test::readAll(file);
            EXPECT_EQ(all.frameLength(), total(lengths));
            EXPECT_EQ(firstWrong(all), -1);
            file.seek(total(lengths) - 310);
            AudioBuffer end(file.format(), 400);
            ASSERT_EQ(file.read(end), 310);
            EXPECT_EQ(end.channel(0)[0], float(qint16(total(lengths) - 310)) / 32'768);
        }
    };
    check(equal, 576, 576, {});
    check(equal, 576, 576, {true, true});
    check(unequal, 576, 4'608, {true, true});
    check(unequal, 576, 4'608, {false, true}); // the old way: samples are counted and not marked as such
}

TEST(FlacFrames, IsSilentWhereAFrameIsMissing)
{
    QList<QByteArray> list = frames(std::vector<int>(10, 1'000), {});
    list[4] = QByteArray(list[4].size(), '\x55');
    const AudioBuffer sound = test::readAll(fileOf(u"gap.flac"_s, header(1'000, 1'000, 10'000) + list.join()));
    ASSERT_EQ(sound.frameLength(), 10'000);
    EXPECT_EQ(firstWrong(sound), 4'000);
    EXPECT_EQ(firstWrong(sound, 5'000), -1);
    EXPECT_THAT(sound.channel(0).subspan(4'000, 1'000), testing::Each(0.0F));
}

TEST(FlacFrames, DoesNotBelieveItsNumbers)
{
    const QList<QByteArray> list = frames(std::vector<int>(4, 1'000), {});
    // A number that the missing bytes can't have held, and the same sound once more.
    const QByteArray far = list[0] + list[1] + frame(2'000, false, 1'000, 2'000) + list[3];
    EXPECT_EQ(AudioFile(fileOf(u"far.flac"_s, header(1'000, 1'000, 0) + far)).length(), 4'000);
    EXPECT_EQ(AudioFile(fileOf(u"twice.flac"_s, header(1'000, 1'000, 0) + list.join() + list.join())).length(), 8'000);
    // A stream that was begun to be kept late.
    EXPECT_EQ(AudioFile(fileOf(u"late.flac"_s, header(1'000, 1'000, 0) + list[2] + list[3])).length(), 2'000);
}

TEST(FlacFrames, EndsWithItsLastWholeFrame)
{
    const QByteArray whole = header(1'000, 1'000, 5'000) + frames(std::vector<int>(5, 1'000), {}).join();
    EXPECT_EQ(AudioFile(fileOf(u"cut.flac"_s, whole.chopped(1))).length(), 4'000);
    EXPECT_EQ(AudioFile(fileOf(u"tagged.flac"_s, whole + "TAG" + QByteArray(125, ' '))).length(), 5'000);
    EXPECT_EQ(AudioFile(fileOf(u"filled.flac"_s, whole + QByteArray(1'000'000, '\0'))).length(), 5'000);
    EXPECT_EQ(AudioFile(fileOf(u"followed.flac"_s, whole + QByteArray(1'000'000, '\xff'))).length(), 5'000);
}

TEST(FlacFrames, IsRefusedIfItCannotBeDecoded)
{
    QByteArray wide = frames(std::vector<int>(5, 1'000), {}).join();
    const auto open = [&](const QByteArray& bytes) { AudioFile file(fileOf(u"wide.flac"_s, bytes)); };
    EXPECT_NO_THROW(open(header(1'000, 1'000, 5'000) + wide));
    QByteArray broken;
    for (const QByteArray& one : frames(std::vector<int>(5, 1'000), {})) {
        QByteArray bytes = one;
        bytes[5] = char(bytes[5] ^ 1); // the sum of the header is wrong now
        broken += bytes;
    }
    EXPECT_THROW(open(header(1'000, 1'000, 5'000) + broken), AudioFileError);
    EXPECT_THROW(open(header(1'000, 1'000, 5'000)), AudioFileError);
}

TEST(FlacFrames, ReadsTheFilesOfThePublicTestBench)
{
    if (!QFileInfo::exists(publicFile(u"32-bit.flac"_s)))
        GTEST_SKIP() << "the files are not beside this folder";
    AudioFile variable(publicFile(u"variable-blocks-old-format.flac"_s));
    EXPECT_EQ(variable.sampleRate(), 44'100);
    EXPECT_EQ(variable.length(), 1'133'090);
    EXPECT_EQ(test::readAll(variable).frameLength(), 1'133'090);
    EXPECT_THROW(AudioFile(publicFile(u"32-bit.flac"_s)), AudioFileError); // no decoder for it
    for (const auto& [name, seconds] :
         {std::pair{u"starts-at-frame-header.flac"_s, 15.0719}, {u"starts-with-junk.flac"_s, 12.8888}}) {
        try { // it may be refused
            EXPECT_NEAR(AudioFile(publicFile(name)).durationSeconds(), seconds, 0.001);
        } catch (const AudioFileError& error) {
            EXPECT_EQ(error.kind(), AudioFileError::Kind::unsupported);
        }
    }
}
