#include "platform/media/AudioFile.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Sound.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// How much of the source a format gives back.
enum class Fidelity {
    same,    // every sample
    inStep,  // lossy, but at the same place and of the same length
    shifted, // lossy, and the container declares no delay or padding
};

struct Format {
    const char* name;
    const char* arguments; // of the encoder
    Fidelity fidelity = Fidelity::same;
    int sampleRate = 48'000;
    int channels = 2;
    double seconds = 3.01;
};

void PrintTo(const Format& format, std::ostream* out)
{
    *out << format.name;
}

QString sourceOf(const Format& format)
{
    return test::makeMedia(u"source-%1-%2-%3.wav"_s.arg(format.sampleRate).arg(format.channels).arg(format.seconds),
                           test::wandering(format.sampleRate, format.channels, format.seconds) +
                               QStringList{u"-c:a"_s, u"pcm_s16le"_s});
}

QString fileOf(const Format& format)
{
    return test::makeMedia(QString::fromLatin1(format.name),
                           QStringList{u"-i"_s, sourceOf(format)} +
                               QString::fromLatin1(format.arguments).split(u' ', Qt::SkipEmptyParts));
}

class AudioFileFormats : public testing::TestWithParam<Format> {};

// The first frame of `range` that is not as in `all` from `start` on; -1 if none.
qint64 firstDifference(const AudioBuffer& all, qint64 start, const AudioBuffer& range)
{
    for (int channel = 0; channel < all.channelCount(); ++channel)
        for (qint64 i = 0; i < range.frameLength(); ++i)
            if (all.channel(channel)[static_cast<std::size_t>(start + i)] != range.channel(channel)[static_cast<std::size_t>(i)])
                return start + i;
    return -1;
}

// The difference between frames [start, end) of the source and what `decoded`
// has `shift` frames later.
double errorDb(const AudioBuffer& source, const AudioBuffer& decoded, qint64 start, qint64 shift, qint64 end)
{
    double signal = 0;
    double error = 0;
    for (qint64 i = std::max(start, -shift); i < std::min({end, source.frameLength(), decoded.frameLength() - shift}); ++i) {
        const double expected = source.channel(0)[static_cast<std::size_t>(i)];
        signal += expected * expected;
        error += std::pow(expected - static_cast<double>(decoded.channel(0)[static_cast<std::size_t>(i + shift)]), 2);
    }
    return 10 * std::log10(error / signal);
}

qint64 bestShift(const AudioBuffer& source, const AudioBuffer& decoded)
{
    constexpr qint64 kMaxDelay = 3'000;
    constexpr qint64 kLook = 4'000;
    const qint64 start = source.frameLength() / 2;
    qint64 best = 0;
    double least = errorDb(source, decoded, start, 0, start + kLook);
    for (qint64 shift = -kMaxDelay; shift < kMaxDelay; ++shift) {
        const double error = errorDb(source, decoded, start, shift, start + kLook);
        if (error < least) {
            least = error;
            best = shift;
        }
    }
    return best;
}

} // namespace

TEST_P(AudioFileFormats, HasTheSourcesFormatAndLength)
{
    const Format format = GetParam();
    AudioFile file(fileOf(format));
    EXPECT_EQ(file.sampleRate(), format.sampleRate);
    EXPECT_EQ(file.channelCount(), format.channels);
    const qint64 frames = AudioFile(sourceOf(format)).length();
    if (format.fidelity == Fidelity::shifted)
        EXPECT_NEAR(static_cast<double>(file.length()), static_cast<double>(frames), 3000); // delay and padding
    else
        EXPECT_NEAR(static_cast<double>(file.length()), static_cast<double>(frames), 24); // half a unit of 1/1000 s
    const qint64 read = test::readAll(file).frameLength();
    if (QString::fromLatin1(format.name).endsWith(u".wma"))
        EXPECT_NEAR(static_cast<double>(read), static_cast<double>(file.length()), 4096); // only a decoder can tell
    else
        EXPECT_EQ(read, file.length());
}

TEST_P(AudioFileFormats, GivesBackTheSource)
{
    const Format format = GetParam();
    const AudioBuffer source = test::readAll(sourceOf(format));
    const AudioBuffer decoded = test::readAll(fileOf(format));
    if (format.fidelity == Fidelity::same) {
        ASSERT_EQ(decoded.frameLength(), source.frameLength());
        EXPECT_EQ(firstDifference(source, 0, decoded), -1);
        return;
    }
    // The noise in the source is at -20 dB and may be lost, and the lowest bit
    // rates lose more; five frames out of step would cost as much.
    const qint64 shift = format.fidelity == Fidelity::shifted ? bestShift(source, decoded) : 0;
    EXPECT_LT(errorDb(source, decoded, format.sampleRate / 10, shift, source.frameLength()), -10) << "shifted by " << shift;
}

TEST_P(AudioFileFormats, ReadsEveryRangeAsInAReadFromTheStart)
{
    const Format format = GetParam();
    const QString path = fileOf(format);
    const AudioBuffer all = test::readAll(path);
    ASSERT_GT(all.frameLength(), 0);
    test::Dice dice(7);
    AudioFile kept(path);
    AudioBuffer beginning(all.format(), 10'000);
    kept.read(beginning); // as a player does, before the first seek
    const int rounds = format.seconds < 20 ? 40 : 16;
    for (int round = 0; round < rounds; ++round) {
        const qint64 start = dice.roll(all.frameLength());
        const qint64 frames = 1 + dice.roll(round % 3 == 0 ? 100 : 9000);
        AudioBuffer range(all.format(), frames);
        const auto check = [&](AudioFile& file) {
            file.seek(start);
            qint64 done = 0;
            const qint64 expected = std::min(frames, all.frameLength() - start);
            const qint64 read = file.read(range, frames);
            ASSERT_EQ(read, expected) << "from " << start;
            ASSERT_EQ(firstDifference(all, start, range), -1) << "from " << start << " for " << frames;
            done += read;
            EXPECT_EQ(file.framePosition(), start + done);
        };
        check(kept);
        if (round % 10 == 0) {
            AudioFile fresh(path);
            check(fresh);
        }
        if (HasFatalFailure())
            return;
    }
    kept.seek(all.frameLength());
    AudioBuffer rest(all.format(), 10);
    EXPECT_EQ(kept.read(rest), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Plain, AudioFileFormats,
    testing::Values(Format{"s16.wav", "-c:a pcm_s16le"}, Format{"u8.wav", "-c:a pcm_u8", Fidelity::inStep},
                    Format{"s24.wav", "-c:a pcm_s24le"}, Format{"s32.wav", "-c:a pcm_s32le"}, Format{"f32.wav", "-c:a pcm_f32le"},
                    Format{"f64.wav", "-c:a pcm_f64le"}, Format{"alaw.wav", "-c:a pcm_alaw", Fidelity::inStep},
                    Format{"mulaw.wav", "-c:a pcm_mulaw", Fidelity::inStep},
                    Format{"six.wav", "-c:a pcm_s24le", Fidelity::same, 48'000, 6}, // WAVE_FORMAT_EXTENSIBLE
                    Format{"mono.wav", "-c:a pcm_s16le", Fidelity::same, 8'000, 1}, Format{"rf64.wav", "-rf64 always"},
                    Format{"fast.wav", "-c:a pcm_s16le", Fidelity::same, 192'000, 2, 0.5}, Format{"s16.w64", ""},
                    Format{"s16.aiff", "-c:a pcm_s16be"}, Format{"s24.aiff", "-c:a pcm_s24be"},
                    Format{"sowt.aiff", "-c:a pcm_s16le"}, Format{"f32.aiff", "-c:a pcm_f32be"},
                    Format{"f64.aiff", "-c:a pcm_f64be"}, Format{"s16.caf", "-c:a pcm_s16be"},
                    Format{"s24.caf", "-c:a pcm_s24le"}, Format{"f32.caf", "-c:a pcm_f32le"}, Format{"s16.au", "-c:a pcm_s16be"},
                    Format{"pcm.mov", "-c:a pcm_s16be"}, Format{"pcm.mkv", "-c:a pcm_s16le"},
                    Format{"pcm.avi", "-c:a pcm_s16le"}));

INSTANTIATE_TEST_SUITE_P(Lossless, AudioFileFormats,
                         testing::Values(Format{"16.flac", ""}, Format{"level0.flac", "-compression_level 0"},
                                         Format{"mono.flac", "", Fidelity::same, 44'100, 1},
                                         Format{"long.flac", "", Fidelity::same, 44'100, 1, 40}, Format{"flac.ogg", "-c:a flac"},
                                         Format{"flac.mkv", "-c:a flac"}, Format{"flac.mp4", "-strict -2 -c:a flac"},
                                         Format{"alac.m4a", "-c:a alac"}, Format{"alac.caf", "-c:a alac"},
                                         Format{"alac.mkv", "-c:a alac"}, Format{"a.tta", ""}, Format{"a.wv", ""}));

INSTANTIATE_TEST_SUITE_P(
    Lossy, AudioFileFormats,
    testing::Values(
        Format{"cbr.mp3", "-b:a 128k", Fidelity::inStep}, Format{"vbr.mp3", "-q:a 4", Fidelity::inStep, 44'100},
        Format{"low.mp3", "-b:a 8k", Fidelity::inStep, 24'000, 1, 20}, Format{"mono.mp3", "-q:a 6", Fidelity::inStep, 22'050, 1},
        Format{"slow.mp3", "-b:a 16k", Fidelity::inStep, 8'000, 1, 10},
        Format{"long.mp3", "-q:a 5", Fidelity::inStep, 44'100, 2, 30},
        Format{"bare.mp3", "-write_xing 0 -q:a 4", Fidelity::shifted, 44'100},
        Format{"bare-cbr.mp3", "-write_xing 0 -id3v2_version 0 -b:a 96k", Fidelity::shifted},
        Format{"a.mp2", "", Fidelity::shifted}, Format{"a.m4a", "-b:a 128k", Fidelity::inStep},
        Format{"44.m4a", "-b:a 96k", Fidelity::inStep, 44'100, 1}, Format{"pns.m4a", "-b:a 24k", Fidelity::inStep, 44'100, 1, 60},
        Format{"a.aac", "", Fidelity::shifted}, Format{"aac.mov", "-c:a aac", Fidelity::inStep},
        Format{"aac.mkv", "-c:a aac", Fidelity::shifted}, Format{"aac.ts", "-c:a aac", Fidelity::shifted},
        Format{"fragmented.mp4", "-c:a aac -movflags frag_keyframe+empty_moov -frag_duration 500000", Fidelity::shifted},
        Format{"mp3.mp4", "-c:a libmp3lame", Fidelity::inStep}, Format{"mp3.avi", "-c:a libmp3lame", Fidelity::shifted},
        Format{"vorbis.ogg", "-c:a libvorbis", Fidelity::inStep}, Format{"vorbis.webm", "-c:a libvorbis", Fidelity::shifted},
        Format{"vorbis.mp4", "-c:a libvorbis", Fidelity::shifted},
        Format{"long.ogg", "-c:a libvorbis -q:a 1", Fidelity::inStep, 44'100, 2, 30}, Format{"a.opus", "", Fidelity::inStep},
        Format{"voice.opus", "-b:a 32k -application voip -frame_duration 60", Fidelity::shifted, 48'000, 1, 65},
        Format{"long.opus", "-b:a 48k", Fidelity::inStep, 48'000, 1, 30}, Format{"opus.webm", "-c:a libopus", Fidelity::inStep},
        Format{"opus.mkv", "-c:a libopus", Fidelity::inStep}, Format{"opus.mp4", "-c:a libopus", Fidelity::shifted},
        Format{"a.ac3", "", Fidelity::shifted}, Format{"long.ac3", "-b:a 96k", Fidelity::shifted, 48'000, 2, 40},
        Format{"a.eac3", "", Fidelity::shifted}, Format{"a.wma", "", Fidelity::shifted, 44'100},
        Format{"adpcm.wav", "-c:a adpcm_ms", Fidelity::shifted}, Format{"ima.aiff", "-c:a adpcm_ima_qt", Fidelity::shifted}));
