#include "audio/export/AudioExporter.h"
#include "platform/media/AudioFile.h"
#include "platform/media/AudioFileWriter.h"
#include "support/Cancelling.h"
#include "support/FileSizeLimit.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Signal.h"
#include "support/Sound.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <limits>
#include <thread>

using namespace tonequill;
using namespace Qt::StringLiterals;
using test::Samples;

namespace {

QString write(const QString& name, const std::vector<Samples>& channels, double sampleRate = 48'000)
{
    const QString path = test::scratchPath(name);
    const AudioBuffer buffer = test::bufferOf(channels, sampleRate);
    AudioFileWriter writer(path, buffer.format(), AudioEncoding::wavFloat32);
    writer.write(buffer);
    writer.finish();
    return path;
}

// Another program's view of a file.
QString outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    constexpr int kPatienceMs = 60'000;
    if (!process.waitForFinished(kPatienceMs) || process.exitCode() != 0)
        throw std::runtime_error(program.toStdString() + " failed");
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString probe(const QString& path, const QString& entries)
{
    return outputOf(u"ffprobe"_s, {u"-v"_s, u"error"_s, u"-show_entries"_s, entries, u"-of"_s, u"compact=p=0"_s, path});
}

float peakOf(const AudioBuffer& buffer)
{
    float peak = 0;
    for (int channel = 0; channel < buffer.channelCount(); ++channel)
        peak = std::max(peak, test::peakOf(buffer.channel(channel)));
    return peak;
}

ExportRequest request(const QString& source, double start, double end, ExportPreset preset = ExportPreset::anyEditor)
{
    ExportRequest request;
    request.source = source;
    request.start = start;
    request.end = end;
    request.preset = preset;
    return request;
}

template <typename Function>
QString messageOf(Function function)
{
    try {
        function();
    } catch (const UserError& error) {
        return error.message();
    }
    return u"no error"_s;
}

// Everything in the folder, the hidden files too.
QStringList entriesOf(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

} // namespace

TEST(ExportPreset, SaysWhatItMakes)
{
    EXPECT_THAT(kExportPresets, testing::ElementsAre(ExportPreset::anyEditor, ExportPreset::shortForm, ExportPreset::studio));
    EXPECT_EQ(idOf(ExportPreset::anyEditor), u"anyEditor"_s);
    EXPECT_EQ(titleOf(ExportPreset::anyEditor), u"Any editor"_s);
    EXPECT_EQ(descriptionOf(ExportPreset::anyEditor),
              u"WAV, 48 kHz, 24-bit, peaks at -1 dB. Works in Final Cut, Premiere, DaVinci, CapCut."_s);
    EXPECT_EQ(fileExtensionOf(ExportPreset::anyEditor), u"wav"_s);
    EXPECT_EQ(idOf(ExportPreset::shortForm), u"shortForm"_s);
    EXPECT_EQ(titleOf(ExportPreset::shortForm), u"Short-form video"_s);
    EXPECT_EQ(descriptionOf(ExportPreset::shortForm),
              u"AAC (.m4a), 48 kHz, peaks at -1 dB. Small files for phone editors and uploads."_s);
    EXPECT_EQ(fileExtensionOf(ExportPreset::shortForm), u"m4a"_s);
    EXPECT_EQ(idOf(ExportPreset::studio), u"studio"_s);
    EXPECT_EQ(titleOf(ExportPreset::studio), u"Studio original"_s);
    EXPECT_EQ(descriptionOf(ExportPreset::studio), u"WAV, 48 kHz, 24-bit, original level. No loudness changes."_s);
    EXPECT_EQ(fileExtensionOf(ExportPreset::studio), u"wav"_s);
    for (const ExportPreset preset : kExportPresets)
        EXPECT_EQ(exportPresetFromId(idOf(preset)), preset);
    EXPECT_FALSE(exportPresetFromId(u"AnyEditor"));
}

TEST(ExportError, SaysWhatWentWrong)
{
    EXPECT_EQ(ExportError::emptyRange().message(), u"The selected part is empty."_s);
    EXPECT_EQ(ExportError::bufferFailed().message(), u"Not enough memory to process this sound."_s);
    EXPECT_EQ(ExportError::conversionFailed(u"unsupported format"_s).message(),
              u"Could not convert the audio: unsupported format"_s);
}

TEST(AudioExporter, WritesWavThatEveryProgramReads)
{
    for (const int channels : {1, 2, 6}) {
        std::vector<Samples> tones;
        for (int channel = 0; channel < channels; ++channel)
            tones.push_back(test::sine(300 + 100 * channel, 2, 0.3F, 44'100));
        const QString source = write(u"tones%1.wav"_s.arg(channels), tones, 44'100);
        for (const ExportPreset preset : {ExportPreset::anyEditor, ExportPreset::studio}) {
            const QString path = test::scratchPath(u"plain%1-%2.wav"_s.arg(channels).arg(idOf(preset)));
            const ExportResult result = AudioExporter::exportRange(request(source, 0.5, 1.5, preset), path);
            const int written = std::min(channels, 2);
            EXPECT_EQ(result, (ExportResult{48'000, 48'000, written}));
            EXPECT_EQ(
                probe(path, u"format=format_name:stream=codec_name,sample_rate,channels,bits_per_sample,duration_ts"_s),
                u"codec_name=pcm_s24le|sample_rate=48000|channels=%1|bits_per_sample=24|duration_ts=48000\nformat_name=wav"_s.arg(
                    written));
            EXPECT_EQ(outputOf(u"soxi"_s, {u"-t"_s, path}), u"wav"_s);
            EXPECT_EQ(outputOf(u"soxi"_s, {u"-r"_s, path}), u"48000"_s);
            EXPECT_EQ(outputOf(u"soxi"_s, {u"-c"_s, path}), QString::number(written));
            EXPECT_EQ(outputOf(u"soxi"_s, {u"-b"_s, path}), u"24"_s);
            EXPECT_EQ(outputOf(u"soxi"_s, {u"-s"_s, path}), u"48000"_s);
            EXPECT_EQ(outputOf(u"soxi"_s, {u"-e"_s, path}), u"Signed Integer PCM"_s);
            // Plain RIFF with the header of 44 bytes and nothing behind the samples.
            const QByteArray bytes = test::bytesOfFile(path);
            EXPECT_EQ(bytes.size(), 44 + 48'000 * 3 * written);
            EXPECT_EQ(bytes.first(4), "RIFF");
            EXPECT_EQ(bytes.sliced(8, 8), "WAVEfmt ");
            EXPECT_EQ(bytes.sliced(36, 4), "data");
        }
    }
}

TEST(AudioExporter, WritesAacOfTheLengthOfThePart)
{
    for (const int channels : {1, 2, 6}) {
        std::vector<Samples> noises;
        for (int channel = 0; channel < channels; ++channel)
            noises.push_back(test::noise(4, static_cast<std::uint32_t>(channel), 0.3F, 44'100));
        const QString source = write(u"noises%1.wav"_s.arg(channels), noises, 44'100);
        const QString path = test::scratchPath(u"short%1.m4a"_s.arg(channels));
        const ExportResult result = AudioExporter::exportRange(request(source, 0.25, 3.456, ExportPreset::shortForm), path);
        const int written = std::min(channels, 2);
        const auto frames = std::llround((std::floor(3.456 * 44'100) - std::floor(0.25 * 44'100)) * 48'000 / 44'100);
        EXPECT_EQ(result, (ExportResult{frames, 48'000, written}));
        EXPECT_EQ(probe(path, u"stream=codec_name,profile,sample_rate,channels"_s),
                  u"codec_name=aac|profile=LC|sample_rate=48000|channels=%1"_s.arg(written));
        EXPECT_TRUE(probe(path, u"format=format_name"_s).contains(u"m4a"_s));
        // White noise takes all the bits that it is given.
        const double bitRate = probe(path, u"stream=bit_rate"_s).section(u'=', 1).toDouble();
        EXPECT_NEAR(bitRate, channels == 1 ? 128'000 : 256'000, channels == 1 ? 13'000 : 26'000);
        // What another decoder gives, priming and padding taken off.
        const QString decoded = test::scratchPath(u"decoded%1.wav"_s.arg(channels));
        outputOf(u"ffmpeg"_s, {u"-nostdin"_s, u"-v"_s, u"error"_s, u"-y"_s, u"-i"_s, path, decoded});
        EXPECT_NEAR(double(AudioFile(decoded).length()), double(frames), 1'024);
        EXPECT_NEAR(double(AudioFile(path).length()), double(frames), 1'024);
    }
}

TEST(AudioExporter, KeepsAacInTime)
{
    const Samples noise = test::noise(2, 5, 0.3F);
    const QString source = write(u"intime.wav"_s, {noise});
    const QString path = test::scratchPath(u"intime.m4a"_s);
    AudioExporter::exportRange(request(source, 0, 2, ExportPreset::shortForm), path);
    const AudioBuffer read = test::readAll(path);
    const Samples smooth = test::bandOf(noise, 1'000);
    const Samples back = test::bandOf(read.channel(0).first(noise.size()), 1'000);
    EXPECT_GT(test::correlation(back, smooth), 0.98); // a delay of 10 frames would make it 0.4
}

TEST(AudioExporter, BringsThePeakToOneDecibelBelowFullScale)
{
    for (const float level : {0.06F, 0.3F, 0.89F, 1.0F, 3.0F}) {
        const QString source = write(u"level.wav"_s, {test::noise(1, 1, level), test::noise(1, 2, level / 2)});
        const QString path = test::scratchPath(u"levelled.wav"_s);
        AudioExporter::exportRange(request(source, 0, 1), path);
        EXPECT_NEAR(test::decibels(double(peakOf(test::readAll(path)))), -1, 0.01) << level;
    }
}

TEST(AudioExporter, RaisesByNoMoreThanSixteenTimes)
{
    const auto peakAfter = [](float peak) {
        AudioBuffer buffer = test::bufferOf({{0, peak, 0}});
        AudioExporter::process(buffer, ExportPreset::anyEditor, 0, 0);
        return peakOf(buffer);
    };
    EXPECT_EQ(peakAfter(0), 0);
    EXPECT_EQ(peakAfter(0.0001F), 0.0001F); // silence stays
    EXPECT_EQ(peakAfter(0.001F), 0.016F);
    EXPECT_FLOAT_EQ(peakAfter(0.0557F), 0.8912F);
    EXPECT_FLOAT_EQ(peakAfter(0.1F), 0.8912509F);
    EXPECT_FLOAT_EQ(peakAfter(2), 0.8912509F);
    EXPECT_FLOAT_EQ(peakAfter(-2), 0.8912509F);
}

TEST(AudioExporter, LeavesTheLevelOfStudioAlone)
{
    const Samples tone = test::noise(1, 1, 0.1F);
    const QString source = write(u"quiet.wav"_s, {tone});
    const QString path = test::scratchPath(u"quiet-studio.wav"_s);
    AudioExporter::exportRange(request(source, 0, 1, ExportPreset::studio), path);
    const AudioBuffer read = test::readAll(path);
    ASSERT_EQ(read.frameLength(), 48'000);
    for (std::size_t n = 0; n < tone.size(); ++n) // rounded to 24 bits, not cut
        ASSERT_NEAR(read.channel(0)[n], tone[n], 0.5 / 8'388'608 * 1.0001) << "frame " << n;
}

TEST(AudioExporter, FadesInStraightLines)
{
    for (const ExportPreset preset : {ExportPreset::studio, ExportPreset::anyEditor}) {
        AudioBuffer buffer = test::bufferOf({Samples(1'000, 0.5F), Samples(1'000, 0.25F)}, 1'000);
        AudioExporter::process(buffer, preset, 0.1, 0.2);
        const float scale = preset == ExportPreset::studio ? 1 : 0.8912509F / 0.5F;
        for (int channel = 0; channel < 2; ++channel) {
            const auto samples = buffer.channel(channel);
            const float level = (channel == 0 ? 0.5F : 0.25F) * scale;
            EXPECT_EQ(samples[0], 0);
            EXPECT_FLOAT_EQ(samples[50], level * 0.5F);
            EXPECT_FLOAT_EQ(samples[100], level);
            EXPECT_FLOAT_EQ(samples[799], level);
            EXPECT_FLOAT_EQ(samples[999 - 100], level * 0.5F);
            EXPECT_EQ(samples[999], 0);
        }
    }
}

TEST(AudioExporter, NeverLetsFadesOverlap)
{
    for (const std::size_t frames : {0U, 1U, 2U, 3U, 10U, 101U, 1'000U})
        for (const double fadeIn : {0.0, 0.003, 0.05, 0.5, 100.0, 1e300})
            for (const double fadeOut : {0.0, 0.003, 0.05, 0.5, 100.0}) {
                AudioBuffer buffer = test::bufferOf({Samples(frames, 1)}, 1'000);
                AudioExporter::process(buffer, ExportPreset::studio, fadeIn, fadeOut);
                const auto in = std::min<std::size_t>(frames / 2, static_cast<std::size_t>(std::min(fadeIn * 1'000, 1e6)));
                const auto out = std::min<std::size_t>(frames / 2, static_cast<std::size_t>(fadeOut * 1'000));
                for (std::size_t n = 0; n < frames; ++n) {
                    const bool isIn = n < in;
                    const bool isOut = frames - 1 - n < out;
                    ASSERT_FALSE(isIn && isOut);
                    const float expected = isIn ? float(n) / float(in) : isOut ? float(frames - 1 - n) / float(out) : 1;
                    ASSERT_EQ(buffer.channel(0)[n], expected);
                }
            }
}

TEST(AudioExporter, MeasuresThePeakAfterTheFades)
{
    Samples samples(1'000, 0.1F);
    samples[10] = 1; // inside the fade, where 0.1 is left of it
    AudioBuffer buffer = test::bufferOf({samples}, 1'000);
    AudioExporter::process(buffer, ExportPreset::anyEditor, 0.1, 0);
    EXPECT_FLOAT_EQ(peakOf(buffer), 0.8912509F);
    EXPECT_FLOAT_EQ(buffer.channel(0)[10], 0.8912509F);
    EXPECT_FLOAT_EQ(buffer.channel(0)[500], 0.8912509F);
}

TEST(AudioExporter, DoesNothingToNoSamples)
{
    AudioBuffer none;
    AudioExporter::process(none, ExportPreset::anyEditor, 1, 1);
    AudioBuffer empty({48'000, 2}, 0);
    AudioExporter::process(empty, ExportPreset::anyEditor, 1, 1);
    EXPECT_EQ(empty.frameLength(), 0);
}

TEST(AudioExporter, CutsTheRangeToTheFile)
{
    const QString source = write(u"second.wav"_s, {test::noise(1, 1)});
    const QString path = test::scratchPath(u"cut.wav"_s);
    const auto framesOf = [&](double start, double end) {
        return AudioExporter::exportRange(request(source, start, end), path).frames;
    };
    EXPECT_EQ(framesOf(-5, 0.5), 24'000);
    EXPECT_EQ(framesOf(0.75, 60), 12'000);
    EXPECT_EQ(framesOf(0, std::numeric_limits<double>::infinity()), 48'000);
    EXPECT_EQ(framesOf(0, 1e300), 48'000);
    EXPECT_EQ(framesOf(0, 1.9 / 48'000), 1); // whole frames
}

TEST(AudioExporter, RefusesAnEmptyRangeAndLeavesTheDestination)
{
    const QString source = write(u"second.wav"_s, {test::noise(1, 1)});
    const QString path = test::makeFile(u"kept.wav"_s, "kept");
    const auto messageFor = [&](double start, double end) {
        return messageOf([&] { AudioExporter::exportRange(request(source, start, end), path); });
    };
    const QString empty = u"The selected part is empty."_s;
    EXPECT_EQ(messageFor(0.5, 0.5), empty);
    EXPECT_EQ(messageFor(0.5, 0.4), empty);
    EXPECT_EQ(messageFor(1, 2), empty);
    EXPECT_EQ(messageFor(7, 8), empty);
    EXPECT_EQ(messageFor(-2, -1), empty);
    EXPECT_EQ(messageFor(0, std::numeric_limits<double>::quiet_NaN()), empty);
    EXPECT_EQ(messageOf([&] { AudioExporter::exportRange(request(test::scratchPath(u"nowhere.wav"_s), 0, 1), path); }),
              u"“nowhere.wav” couldn't be opened."_s);
    EXPECT_EQ(test::bytesOfFile(path), "kept");
}

TEST(AudioExporter, ReplacesWhatIsAtTheDestination)
{
    const QTemporaryDir folder;
    const QString source = write(u"second.wav"_s, {test::noise(1, 1)});
    const QString path = folder.filePath(u"old.wav"_s);
    test::makeFile(u"target"_s, "target");
    ASSERT_TRUE(QFile::link(test::scratchPath(u"target"_s), path)); // a link is replaced, not followed
    AudioExporter::exportRange(request(source, 0, 1), path);
    EXPECT_EQ(AudioFile(path).length(), 48'000);
    EXPECT_EQ(test::bytesOfFile(test::scratchPath(u"target"_s)), "target");
    EXPECT_EQ(entriesOf(folder.path()), QStringList{u"old.wav"_s});
}

TEST(AudioExporter, CanReplaceItsOwnSource)
{
    const QString path = write(u"itself.wav"_s, {test::noise(1, 1)}, 44'100);
    EXPECT_EQ(AudioExporter::exportRange(request(path, 0.25, 0.75), path).frames, 24'000);
    EXPECT_EQ(AudioFile(path).length(), 24'000);
}

TEST(AudioExporter, LeavesNothingBehindWhenItCannotWrite)
{
    const QTemporaryDir folder;
    const QString source = write(u"second.wav"_s, {test::noise(1, 1)});
    const QString missing = folder.filePath(u"no/folder/out.wav"_s);
    EXPECT_TRUE(messageOf([&] { AudioExporter::exportRange(request(source, 0, 1), missing); }).contains(u"couldn't be saved"_s));
    // A folder stands where the file should be; it stays, with all that is in it.
    ASSERT_TRUE(QDir(folder.path()).mkpath(u"taken.wav/inside"_s));
    const QString taken = folder.filePath(u"taken.wav"_s);
    const QString message = messageOf([&] { AudioExporter::exportRange(request(source, 0, 1), taken); });
    EXPECT_TRUE(message.startsWith(u"“taken.wav” couldn't be saved"_s)) << message.toStdString();
    EXPECT_EQ(entriesOf(folder.path()), QStringList{u"taken.wav"_s});
    EXPECT_TRUE(QDir(taken).exists(u"inside"_s));
}

TEST(AudioExporter, GivesTheSameBytesFromEveryThread)
{
    const QString source = write(u"threads.wav"_s, {test::noise(2, 1), test::noise(2, 2)}, 44'100);
    const auto bytesFor = [&](int number) {
        QByteArray all;
        for (const ExportPreset preset : kExportPresets) {
            const QString path = test::scratchPath(u"thread%1-%2"_s.arg(number).arg(idOf(preset)));
            AudioExporter::exportRange(request(source, 0.1, 1.9, preset), path);
            all += test::bytesOfFile(path);
        }
        return all;
    };
    const QByteArray first = bytesFor(0);
    std::array<QByteArray, 3> others;
    std::vector<std::thread> threads;
    for (int number = 1; number <= 3; ++number)
        threads.emplace_back([&, number] { others[static_cast<std::size_t>(number - 1)] = bytesFor(number); });
    for (std::thread& thread : threads)
        thread.join();
    for (const QByteArray& other : others)
        EXPECT_EQ(other, first);
}

TEST(AudioExporter, SaysWhenASoundDoesNotFitIntoMemory)
{
    // A sparse file: 146 hours of 8-bit sound, whose frames take 101 GB as they
    // are delivered, next to the 17 GB they are read into.
    const QString path = test::scratchPath(u"hours.wav"_s);
    QByteArray header =
        test::bytesOfFile(test::makeMedia(u"bytes.wav"_s, {u"-f"_s, u"lavfi"_s, u"-i"_s, u"anullsrc=r=8000:cl=mono"_s, u"-t"_s,
                                                           u"0.1"_s, u"-bitexact"_s, u"-c:a"_s, u"pcm_u8"_s}));
    header.truncate(44);
    const quint32 frames = 4'200'000'000U;
    const auto put = [&](qsizetype at, quint32 value) { memcpy(header.data() + at, &value, 4); };
    put(4, frames + 36);
    put(40, frames);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(header);
    ASSERT_TRUE(file.resize(44 + qint64(frames)));
    file.close();
    ASSERT_EQ(AudioFile(path).length(), qint64(frames));
    EXPECT_EQ(messageOf([&] { AudioExporter::exportRange(request(path, 0, 1e9), test::scratchPath(u"never.wav"_s)); }),
              u"Not enough memory to process this sound."_s);
    QFile::remove(path);
}

TEST(AudioExporter, ConvertsToNoFormatThatIsNone)
{
    const auto messageFor = [](AudioFormat to) {
        return messageOf([&] { AudioExporter::convert(test::bufferOf({Samples(10)}), to); });
    };
    const QString refusal = u"Could not convert the audio: unsupported format"_s;
    EXPECT_EQ(messageFor({0, 1}), refusal);
    EXPECT_EQ(messageFor({-48'000, 1}), refusal);
    EXPECT_EQ(messageFor({std::numeric_limits<double>::quiet_NaN(), 1}), refusal);
    EXPECT_EQ(messageFor({48'000, 0}), refusal);
    EXPECT_EQ(messageFor({48'000, 65}), refusal);
}

TEST(AudioExporter, EndsSoonAfterItIsCancelledAndLeavesNothing)
{
    const QTemporaryDir folder;
    const QString source = write(u"long.wav"_s, {test::noise(20, 1, 0.5F, 44'100), test::noise(20, 2, 0.5F, 44'100)}, 44'100);
    for (const ExportPreset preset : {ExportPreset::anyEditor, ExportPreset::shortForm}) {
        const QString path = folder.filePath(u"part"_s);
        const auto exportAll = [&](Progress& progress) {
            AudioExporter::exportRange(request(source, 0, 20, preset), path, &progress);
            QFile::remove(path); // of a run that came to its end
        };
        EXPECT_LE(test::workAfterCancel(exportAll), test::kSoon);
        EXPECT_EQ(entriesOf(folder.path()), QStringList());
    }
}

TEST(AudioExporter, EndsItsFadesAndLevelsSoonAfterItIsCancelled)
{
    AudioBuffer sound = test::stereo(test::noise(180, 1, 0.5F));
    const auto process = [&sound](Progress& progress) {
        AudioExporter::process(sound, ExportPreset::anyEditor, 60, 60, &progress);
    };
    EXPECT_LE(test::workAfterCancel(process), test::kSoon);
}

TEST(AudioExporter, FindsThePeakWhereverItIs)
{
    // Loops go in stretches of some ten thousand frames.
    for (const std::size_t place : {std::size_t(0), std::size_t(65'535), std::size_t(65'536), std::size_t(199'999)}) {
        Samples samples(200'000, 0.1F);
        samples[place] = -0.5F;
        AudioBuffer buffer = test::bufferOf({Samples(200'000, 0.2F), samples});
        AudioExporter::process(buffer, ExportPreset::anyEditor, 0, 0);
        EXPECT_FLOAT_EQ(buffer.channel(1)[place], -0.8912509F) << place;
        EXPECT_FLOAT_EQ(buffer.channel(0)[199'998], 0.8912509F * 0.4F) << place;
    }
}

TEST(AudioExporter, AnOlderFileStaysUntilTheNewOneIsComplete)
{
    const QTemporaryDir folder;
    const QString source = write(u"second.wav"_s, {test::noise(1, 1)});
    const QString path = folder.filePath(u"old.wav"_s);
    const auto putOld = [&] {
        QFile old(path);
        ASSERT_TRUE(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
    };
    putOld();
    {
        const test::FileSizeLimit full(50'000); // of the 144,044 bytes that a second takes
        const QString message = messageOf([&] { AudioExporter::exportRange(request(source, 0, 1), path); });
        EXPECT_TRUE(message.startsWith(u"“old.wav” couldn't be saved: "_s)) << message.toStdString();
    }
    EXPECT_EQ(test::bytesOfFile(path), "old");
    Progress progress;
    progress.cancel();
    EXPECT_THROW(AudioExporter::exportRange(request(source, 0, 1), path, &progress), Cancelled);
    EXPECT_EQ(test::bytesOfFile(path), "old");
    EXPECT_EQ(entriesOf(folder.path()), QStringList{u"old.wav"_s});
    AudioExporter::exportRange(request(source, 0, 1), path);
    EXPECT_EQ(AudioFile(path).length(), 48'000);
}

TEST(AudioExporter, APathWithAZeroInItReplacesNoOtherFile)
{
    const QTemporaryDir folder;
    const QString source = write(u"second.wav"_s, {test::noise(1, 1)});
    QFile notes(folder.filePath(u"notes.txt"_s));
    ASSERT_TRUE(notes.open(QIODevice::WriteOnly) && notes.write("mine") == 4);
    notes.close();
    const QString hostile = folder.filePath(u"notes.txt"_s) + QChar(u'\0') + u"x.wav"_s;
    EXPECT_THROW(AudioExporter::exportRange(request(source, 0, 1), hostile), AudioFileError);
    EXPECT_EQ(test::bytesOfFile(folder.filePath(u"notes.txt"_s)), "mine");
    EXPECT_EQ(entriesOf(folder.path()), QStringList{u"notes.txt"_s});
}
