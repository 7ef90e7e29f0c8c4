#include "platform/media/AudioFileWriter.h"

#include "support/Cancelling.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Signal.h"
#include "support/Sound.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

AudioBuffer wanderingTone(AudioFormat format, qint64 frames)
{
    AudioBuffer buffer(format, frames);
    buffer.setFrameLength(frames);
    for (int channel = 0; channel < format.channelCount; ++channel)
        for (qint64 i = 0; i < frames; ++i) {
            const double t = static_cast<double>(i) / format.sampleRate;
            buffer.channel(channel)[static_cast<std::size_t>(i)] =
                static_cast<float>(0.5 * std::sin(2 * M_PI * (400 + 110 * channel) * t + 90 * std::sin(t)));
        }
    return buffer;
}

AudioBuffer mono(const std::vector<float>& samples)
{
    AudioBuffer buffer({48'000, 1}, static_cast<qint64>(samples.size()));
    buffer.setFrameLength(buffer.capacityFrames());
    std::ranges::copy(samples, buffer.channel(0).begin());
    return buffer;
}

QString written(const QString& name, const AudioBuffer& buffer, AudioEncoding encoding, int bitRate = 0)
{
    const QString path = test::scratchPath(name);
    AudioFileWriter writer(path, buffer.format(), encoding, bitRate);
    writer.write(buffer);
    writer.finish();
    return path;
}

template <typename Number>
Number numberAt(const QByteArray& bytes, qsizetype place)
{
    return qFromLittleEndian<Number>(bytes.constData() + place);
}

// No file of this process may grow beyond `bytes` while this lives.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit = {bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_before = {};
};

} // namespace

TEST(AudioFileWriter, WritesFloatsThatReadBackTheSame)
{
    for (const int channels : {1, 2, 6}) {
        const AudioBuffer sound = wanderingTone({48'000, channels}, 10'001);
        const AudioBuffer read = test::readAll(written(u"float.wav"_s, sound, AudioEncoding::wavFloat32));
        ASSERT_EQ(read.frameLength(), 10'001);
        EXPECT_EQ(read.format(), sound.format());
        for (int channel = 0; channel < channels; ++channel)
            EXPECT_TRUE(std::ranges::equal(read.channel(channel), sound.channel(channel)));
    }
}

TEST(AudioFileWriter, RoundsToTheNearestOf24Bits)
{
    const float step = 0x1p-23F;
    const AudioBuffer read = test::readAll(
        written(u"rounded.wav"_s, mono({0.4F * step, 0.6F * step, -0.4F * step, -0.6F * step, 100.25F * step, -100.75F * step}),
                AudioEncoding::wavInt24));
    EXPECT_THAT(read.channel(0), testing::ElementsAre(0.0F, step, 0.0F, -step, 100 * step, -101 * step));
}

TEST(AudioFileWriter, ClampsWhatIsTooLoud)
{
    const float step = 0x1p-23F;
    const float infinite = std::numeric_limits<float>::infinity();
    const AudioBuffer read = test::readAll(
        written(u"loud.wav"_s, mono({1.0F, 1.5F, -1.0F, -7.0F, infinite, -infinite, std::nanf("")}), AudioEncoding::wavInt24));
    EXPECT_THAT(read.channel(0), testing::ElementsAre(1 - step, 1 - step, -1.0F, -1.0F, 1 - step, -1.0F, 0.0F));
}

TEST(AudioFileWriter, LaysOutAPlainPcmHeader)
{
    const QByteArray bytes = test::bytesOfFile(written(u"plain.wav"_s, mono({0.5F, 0.25F, -0.5F}), AudioEncoding::wavInt24));
    ASSERT_EQ(bytes.size(), 44 + 9 + 1); // nine bytes of samples and one to an even size
    EXPECT_EQ(bytes.first(4), "RIFF");
    EXPECT_EQ(numberAt<quint32>(bytes, 4), 46U);
    EXPECT_EQ(bytes.mid(8, 8), "WAVEfmt ");
    EXPECT_EQ(numberAt<quint32>(bytes, 16), 16U);
    EXPECT_EQ(numberAt<quint16>(bytes, 20), 1);       // PCM
    EXPECT_EQ(numberAt<quint16>(bytes, 22), 1);       // channel
    EXPECT_EQ(numberAt<quint32>(bytes, 24), 48'000U); // frames a second
    EXPECT_EQ(numberAt<quint32>(bytes, 28), 144'000U);
    EXPECT_EQ(numberAt<quint16>(bytes, 32), 3);
    EXPECT_EQ(numberAt<quint16>(bytes, 34), 24);
    EXPECT_EQ(bytes.mid(36, 4), "data");
    EXPECT_EQ(numberAt<quint32>(bytes, 40), 9U);
    EXPECT_EQ(bytes.mid(44), QByteArray::fromHex("000040"
                                                 "000020"
                                                 "0000c0"
                                                 "00"));
}

TEST(AudioFileWriter, LaysOutAFloatHeaderWithItsFactChunk)
{
    const QByteArray bytes = test::bytesOfFile(written(u"fact.wav"_s, mono({0.5F, 0.25F}), AudioEncoding::wavFloat32));
    ASSERT_EQ(bytes.size(), 58 + 8);
    EXPECT_EQ(numberAt<quint32>(bytes, 4), 58U);
    EXPECT_EQ(numberAt<quint32>(bytes, 16), 18U);
    EXPECT_EQ(numberAt<quint16>(bytes, 20), 3); // IEEE float
    EXPECT_EQ(numberAt<quint16>(bytes, 34), 32);
    EXPECT_EQ(numberAt<quint16>(bytes, 36), 0); // no extension
    EXPECT_EQ(bytes.mid(38, 4), "fact");
    EXPECT_EQ(numberAt<quint32>(bytes, 46), 2U); // frames
    EXPECT_EQ(bytes.mid(50, 4), "data");
}

TEST(AudioFileWriter, IsReadByOtherPrograms)
{
    for (const AudioEncoding encoding : {AudioEncoding::wavInt24, AudioEncoding::wavFloat32})
        for (const int channels : {1, 2, 6}) {
            const QString path = written(u"others.wav"_s, wanderingTone({44'100, channels}, 4'410), encoding);
            const QString copy = test::scratchPath(u"copy-%1-%2.aiff"_s.arg(int(encoding)).arg(channels));
            EXPECT_EQ(test::run(u"sox"_s, {path, u"-b"_s, u"24"_s, copy}), 0);
            EXPECT_EQ(AudioFile(copy).length(), 4'410);
            EXPECT_EQ(AudioFile(copy).channelCount(), channels);
        }
}

TEST(AudioFileWriter, TakesManySmallBuffersForOne)
{
    const AudioBuffer sound = wanderingTone({48'000, 2}, 30'000);
    for (const AudioEncoding encoding : {AudioEncoding::wavInt24, AudioEncoding::m4aAac}) {
        const QString path = test::scratchPath(u"pieces"_s);
        AudioFileWriter writer(path, sound.format(), encoding);
        test::Dice dice(5);
        for (qint64 start = 0; start < sound.frameLength();) {
            AudioBuffer piece(sound.format(), std::min(1 + dice.roll(3'000), sound.frameLength() - start));
            piece.setFrameLength(piece.capacityFrames());
            for (int channel = 0; channel < 2; ++channel)
                std::copy_n(sound.channel(channel).data() + start, piece.frameLength(), piece.channel(channel).data());
            writer.write(piece);
            start += piece.frameLength();
        }
        writer.finish();
        EXPECT_EQ(test::bytesOfFile(path), test::bytesOfFile(written(u"whole"_s, sound, encoding)));
    }
}

TEST(AudioFileWriter, GivesAacExactlyAsLongAsItWasWritten)
{
    for (const double rate : {44'100.0, 48'000.0})
        for (const qint64 frames : {1, 1'023, 1'024, 1'025, 100'000}) {
            const QString path = written(u"long.m4a"_s, wanderingTone({rate, 2}, frames), AudioEncoding::m4aAac, 256'000);
            EXPECT_EQ(AudioFile(path).length(), frames);
            EXPECT_EQ(test::readAll(path).frameLength(), frames);
        }
}

TEST(AudioFileWriter, KeepsAacInStepWithWhatWasWritten)
{
    for (const int channels : {1, 2}) {
        const AudioBuffer sound = wanderingTone({48'000, channels}, 100'000);
        const AudioBuffer read = test::readAll(written(u"step.m4a"_s, sound, AudioEncoding::m4aAac, 128'000 * channels));
        double error = 0;
        for (std::size_t i = 4'096; i < 99'000; ++i)
            error = std::max<double>(error, std::abs(read.channel(0)[i] - sound.channel(0)[i]));
        EXPECT_LT(error, 0.1); // one AAC frame out of step would give up to 1
    }
}

TEST(AudioFileWriter, RefusesWhatTheFormatCannotHold)
{
    const auto kindOf = [](AudioFormat format, AudioEncoding encoding) -> std::optional<AudioFileError::Kind> {
        try {
            AudioFileWriter writer(test::scratchPath(u"refused"_s), format, encoding);
        } catch (const AudioFileError& error) {
            return error.kind();
        }
        return std::nullopt;
    };
    EXPECT_EQ(kindOf({192'000, 2}, AudioEncoding::m4aAac), AudioFileError::Kind::unsupported);
    EXPECT_EQ(kindOf({48'000, 16}, AudioEncoding::m4aAac), AudioFileError::Kind::unsupported);
    EXPECT_EQ(kindOf({48'000, 65}, AudioEncoding::wavInt24), AudioFileError::Kind::unsupported);
    EXPECT_EQ(kindOf({0, 2}, AudioEncoding::wavInt24), AudioFileError::Kind::unsupported);
    EXPECT_FALSE(QFileInfo::exists(test::scratchPath(u"refused"_s)));
}

TEST(AudioFileWriter, LeavesNothingBehindUnlessFinished)
{
    const AudioBuffer sound = wanderingTone({48'000, 1}, 50'000);
    for (const AudioEncoding encoding : {AudioEncoding::wavInt24, AudioEncoding::m4aAac}) {
        const QString path = test::scratchPath(u"given up"_s);
        {
            AudioFileWriter writer(path, sound.format(), encoding);
            writer.write(sound);
            EXPECT_TRUE(QFileInfo::exists(path));
        }
        EXPECT_FALSE(QFileInfo::exists(path));
    }
}

TEST(AudioFileWriter, TellsOfAFullDiskAndLeavesNothing)
{
    const AudioBuffer sound = wanderingTone({48'000, 2}, 200'000);
    for (const AudioEncoding encoding : {AudioEncoding::wavInt24, AudioEncoding::wavFloat32, AudioEncoding::m4aAac})
        for (const rlim_t bytes : {0, 10, 100, 20'000}) {
            const QString path = test::scratchPath(u"too large"_s);
            const FullDisk disk(bytes);
            try {
                AudioFileWriter writer(path, sound.format(), encoding, 256'000);
                writer.write(sound);
                writer.finish();
                FAIL() << "nothing was noticed after " << bytes << " bytes";
            } catch (const AudioFileError& error) {
                EXPECT_EQ(error.kind(), AudioFileError::Kind::write);
                EXPECT_EQ(error.message(), u"“too large” couldn't be saved: it is too large for this disk."_s);
            }
            EXPECT_FALSE(QFileInfo::exists(path));
        }
}

TEST(AudioFileWriter, TellsWhyTheFileCannotBeMade)
{
    const auto message = [](const QString& path) {
        try {
            AudioFileWriter writer(path, {48'000, 2}, AudioEncoding::wavInt24);
            return QString();
        } catch (const AudioFileError& error) {
            return error.message();
        }
    };
    EXPECT_EQ(message(test::scratchPath(u"nowhere/a.wav"_s)), u"“a.wav” couldn't be saved: its folder doesn't exist."_s);
    EXPECT_EQ(message(test::scratchPath(QString(300, u'x'))),
              u"“"_s + QString(300, u'x') + u"” couldn't be saved: its name is too long."_s);
    const QString pipe = test::scratchPath(u"pipe"_s);
    ASSERT_EQ(mkfifo(qPrintable(pipe), 0600), 0);
    EXPECT_FALSE(message(pipe).isEmpty()); // and does not wait for a reader
}

TEST(AudioFileWriter, EndsAWavBeforeItsSizesOverflow)
{
    const QString path = test::scratchPath(u"huge.wav"_s);
    AudioFileWriter writer(path, {48'000, 2}, AudioEncoding::wavFloat32);
    AudioBuffer block({48'000, 2}, 1'000);
    block.setFrameLength(1'000);
    writer.write(block);
    // Only counted: what is told here is refused before any of it is looked at.
    block.setFrameLength((0xFFFFFFFF - 58) / 8 - 999);
    try {
        writer.write(block);
        FAIL() << "more than 4 GB were written";
    } catch (const AudioFileError& error) {
        EXPECT_EQ(error.message(), u"“huge.wav” couldn't be saved: a WAV file can't be larger than 4 GB."_s);
    }
    EXPECT_FALSE(QFileInfo::exists(path));
}

TEST(AudioFileWriter, EndsSoonAfterItIsCancelledAndLeavesNothing)
{
    for (const AudioEncoding encoding : {AudioEncoding::wavInt24, AudioEncoding::m4aAac}) {
        const bool isQuick = encoding == AudioEncoding::wavInt24;
        const AudioBuffer sound = test::stereo(test::noise(isQuick ? 120 : 20, 1));
        const QString path = test::scratchPath(u"never"_s);
        const auto write = [&](Progress& progress) {
            AudioFileWriter writer(path, sound.format(), encoding);
            writer.write(sound, &progress);
        };
        EXPECT_LE(test::workAfterCancel(write), test::kSoon);
        EXPECT_FALSE(QFile::exists(path));
    }
}
