#include "platform/AudioFileWriter.h"
#include "platform/MediaTracks.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"

#include <QFileInfo>

#include <gmock/gmock.h>

#include <cmath>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

AudioBuffer tone(AudioFormat format, qint64 frames)
{
    AudioBuffer buffer(format, frames);
    buffer.setFrameLength(frames);
    for (int channel = 0; channel < format.channelCount; ++channel)
        for (qint64 i = 0; i < frames; ++i)
            buffer.channel(channel)[static_cast<std::size_t>(i)] = 0.5F * std::sin(0.05F * static_cast<float>(i * (channel + 1)));
    return buffer;
}

AudioBuffer readAll(const QString& path)
{
    AudioFile file(path);
    AudioBuffer buffer(file.format(), file.length() + 10);
    file.read(buffer);
    return buffer;
}

} // namespace

TEST(AudioFileWriter, WritesWavThatReadsBackExactly)
{
    for (const int channels : {1, 2, 6}) {
        const AudioBuffer written = tone({48000, channels}, 10'001);
        const QString path = test::scratchPath(u"float.wav"_s);
        AudioFileWriter writer(path, written.format(), AudioEncoding::wavFloat32);
        writer.write(written);
        writer.finish();
        const AudioBuffer read = readAll(path);
        ASSERT_EQ(read.frameLength(), 10'001);
        for (int channel = 0; channel < channels; ++channel)
            EXPECT_TRUE(std::ranges::equal(read.channel(channel), written.channel(channel)));
    }
}

TEST(AudioFileWriter, DeclaresThePrimingOfAac)
{
    for (const double rate : {44100.0, 48000.0}) {
        const AudioBuffer written = tone({rate, 2}, 100'000);
        const QString path = test::scratchPath(u"tone.m4a"_s);
        AudioFileWriter writer(path, written.format(), AudioEncoding::m4aAac, 256'000);
        writer.write(written);
        writer.finish();
        EXPECT_NEAR(static_cast<double>(AudioFile(path).length()), 100'000, 1024);
        const AudioBuffer read = readAll(path);
        double error = 0;
        for (std::size_t i = 4096; i < 90'000; ++i)
            error = std::max<double>(error, std::abs(read.channel(0)[i] - written.channel(0)[i]));
        EXPECT_LT(error, 0.1); // in step with what was written; one frame off would give 0.7
    }
}

TEST(MediaTracks, ExtractsTheFirstSoundOfAVideo)
{
    const QString video =
        test::makeMedia(u"video.mp4"_s, test::wandering(48000, 2, 2) + test::picture(2) + QStringList{u"-shortest"_s});
    EXPECT_EQ(mediaTracks(video).audioCount, 1);
    EXPECT_EQ(mediaTracks(video).videoCount, 1);
    const QString path = test::scratchPath(u"extracted.m4a"_s);
    extractFirstAudio(video, path);
    EXPECT_NEAR(AudioFile(path).durationSeconds(), 2, 0.03);
    EXPECT_EQ(mediaTracks(path).videoCount, 0);

    const QString film =
        test::makeMedia(u"film.mkv"_s, test::wandering(44100, 6, 2) + test::picture(2) + QStringList{u"-c:a"_s, u"ac3"_s});
    extractFirstAudio(film, path);
    EXPECT_NEAR(AudioFile(path).durationSeconds(), 2, 0.04);
    EXPECT_EQ(AudioFile(path).channelCount(), 2);
}
