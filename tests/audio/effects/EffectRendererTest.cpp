#include "audio/effects/EffectRenderer.h"
#include "audio/effects/FeedbackDelay.h"
#include "audio/effects/HallReverb.h"
#include "audio/effects/TimePitch.h"
#include "audio/effects/VoiceDSP.h"
#include "audio/export/AudioExporter.h"
#include "platform/media/AudioFile.h"
#include "platform/media/AudioFileWriter.h"
#include "support/Cancelling.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Signal.h"
#include "support/Sound.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <limits>
#include <thread>

using namespace tonequill;
using namespace Qt::StringLiterals;
using test::Samples;

namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

// Points the temporary folder somewhere else while it lives.
class OwnTempFolder {
public:
    OwnTempFolder() : m_before(qgetenv("TMPDIR")) { qputenv("TMPDIR", m_folder.path().toUtf8()); }
    ~OwnTempFolder() { m_before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", m_before); }
    QString path() const { return m_folder.path(); }
    QStringList names() const { return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot); }

private:
    QTemporaryDir m_folder;
    QByteArray m_before;
};

QString write(const QString& name, const AudioBuffer& buffer)
{
    const QString path = test::scratchPath(name);
    AudioFileWriter writer(path, buffer.format(), AudioEncoding::wavFloat32);
    writer.write(buffer);
    writer.finish();
    return path;
}

// Two seconds of two different noises at 48 kHz.
QString noiseFile()
{
    return write(u"noise.wav"_s, test::bufferOf({test::noise(2, 1, 0.3F), test::noise(2, 2, 0.3F)}));
}

EffectSettings settingsOf(const char* json)
{
    return EffectSettings::fromJson(QByteArray(json)).value();
}

AudioBuffer slice(const AudioBuffer& buffer, std::size_t first, std::size_t count)
{
    const Samples left = test::samplesOf(buffer, 0);
    const Samples right = test::samplesOf(buffer, 1);
    const auto from = static_cast<std::ptrdiff_t>(first);
    const auto to = static_cast<std::ptrdiff_t>(first + count);
    return test::bufferOf({{left.begin() + from, left.begin() + to}, {right.begin() + from, right.begin() + to}});
}

template <typename Function>
std::optional<RenderError::Kind> renderErrorOf(Function function)
{
    try {
        function();
    } catch (const RenderError& error) {
        return error.kind();
    }
    return std::nullopt;
}

} // namespace

TEST(RenderError, SaysWhatWentWrong)
{
    EXPECT_EQ(RenderError::engine(u"render error"_s).message(), u"The audio engine stopped: render error"_s);
    EXPECT_EQ(RenderError::empty().message(), u"There is nothing to render here."_s);
    EXPECT_EQ(RenderError::memory().message(), u"Not enough memory to process this sound."_s);
}

TEST(EffectRenderer, ReadsARangeInItsOneFormat)
{
    const AudioBuffer source = test::readAll(noiseFile());
    const AudioBuffer range = EffectRenderer::read(noiseFile(), 0.5, 1.5);
    EXPECT_EQ(range.format(), EffectRenderer::format);
    EXPECT_TRUE(test::haveEqualSamples(range, slice(source, 24'000, 48'000)));

    const QString mono = write(u"mono.wav"_s, test::bufferOf({test::noise(1, 3, 0.5F, 44'100)}, 44'100));
    const AudioBuffer resampled = EffectRenderer::read(mono, 0.25, 0.75);
    EXPECT_EQ(resampled.format(), EffectRenderer::format);
    EXPECT_EQ(resampled.frameLength(), 24'000);
    EXPECT_EQ(test::samplesOf(resampled, 0), test::samplesOf(resampled, 1));

    const QString surround = write(u"surround.wav"_s, test::bufferOf(std::vector<Samples>(6, test::noise(0.5, 4, 1))));
    const AudioBuffer mixed = EffectRenderer::read(surround, 0, 9);
    EXPECT_EQ(mixed.frameLength(), 24'000);
    EXPECT_LE(test::peakOf(mixed.channel(0)), 1.00001F);
}

TEST(EffectRenderer, CutsFramesToWholeOnesAndTheRangeToTheFile)
{
    EXPECT_EQ(EffectRenderer::read(noiseFile(), 0.9999 / 48'000, 3.9999 / 48'000).frameLength(), 3);
    EXPECT_EQ(EffectRenderer::read(noiseFile(), -3, 0.5).frameLength(), 24'000);
    EXPECT_EQ(EffectRenderer::read(noiseFile(), 1.5, 1e12).frameLength(), 24'000);
}

TEST(EffectRenderer, HasNothingToRenderInAnEmptyRange)
{
    const auto kind = [](double start, double end) {
        return renderErrorOf([&] { EffectRenderer::renderBuffer(noiseFile(), start, end, EffectSettings()); });
    };
    EXPECT_EQ(kind(1, 1), RenderError::Kind::empty);
    EXPECT_EQ(kind(1, 0.5), RenderError::Kind::empty);
    EXPECT_EQ(kind(2, 3), RenderError::Kind::empty);
    EXPECT_EQ(kind(50, 51), RenderError::Kind::empty);
    EXPECT_EQ(kind(-2, -1), RenderError::Kind::empty);
    EXPECT_THROW(EffectRenderer::read(test::scratchPath(u"nowhere.wav"_s), 0, 1), AudioFileError);
    EXPECT_THROW(EffectRenderer::read(test::makeFile(u"text.wav"_s, "no sound"), 0, 1), AudioFileError);
}

TEST(EffectRendererDeathTest, StopsTheProgramWhereACallerBreaksItsPromise)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const QString path = noiseFile();
    EXPECT_DEATH(EffectRenderer::read(path, kNoNumber, 1), "a range is finite");
    EXPECT_DEATH(EffectRenderer::read(path, 0, std::numeric_limits<double>::infinity()), "a range is finite");
    AudioBuffer buffer = test::stereo(Samples(10, 0.5F));
    EXPECT_DEATH(EffectRenderer::applyGainAndFades(buffer, settingsOf(R"({"fadeIn":-1})")), "not negative");
    EXPECT_DEATH(EffectRenderer::applyGainAndFades(buffer, settingsOf(R"({"fadeOut":-0.001})")), "not negative");
}

TEST(EffectRenderer, LeavesANeutralRangeAsItIs)
{
    const AudioBuffer source = EffectRenderer::read(noiseFile(), 0, 2);
    EXPECT_TRUE(test::haveEqualSamples(EffectRenderer::renderBuffer(noiseFile(), 0, 2, EffectSettings()), source));
}

TEST(EffectRenderer, ReversesTwiceToTheSame)
{
    const AudioBuffer source = EffectRenderer::read(noiseFile(), 0, 1);
    AudioBuffer buffer = source;
    EffectRenderer::reverse(buffer);
    EXPECT_EQ(buffer.channel(0)[0], source.channel(0)[47'999]);
    EXPECT_EQ(buffer.channel(1)[10], source.channel(1)[47'989]);
    EXPECT_FALSE(test::haveEqualSamples(buffer, source));
    EffectRenderer::reverse(buffer);
    EXPECT_TRUE(test::haveEqualSamples(buffer, source));
    for (const std::size_t frames : {0U, 1U, 2U, 3U}) {
        AudioBuffer small = test::stereo(test::noise(double(frames) / 48'000, 1));
        EffectRenderer::reverse(small);
        EffectRenderer::reverse(small);
        EXPECT_EQ(small.frameLength(), static_cast<qint64>(frames));
    }
}

TEST(EffectRenderer, AppliesTheGainToTheBit)
{
    const AudioBuffer source = EffectRenderer::read(noiseFile(), 0, 1);
    AudioBuffer buffer = source;
    EffectRenderer::applyGainAndFades(buffer, EffectSettings());
    EXPECT_TRUE(test::haveEqualSamples(buffer, source));
    EffectRenderer::applyGainAndFades(buffer, settingsOf(R"({"gainDb":-6})"));
    const auto factor = static_cast<float>(std::pow(10.0, -6.0 / 20));
    for (std::size_t n = 0; n < 48'000; ++n)
        ASSERT_EQ(buffer.channel(1)[n], source.channel(1)[n] * factor);
}

TEST(EffectRenderer, FadesInStraightLines)
{
    AudioBuffer buffer = test::stereo(Samples(4'800, 0.5F));
    EffectRenderer::applyGainAndFades(buffer, settingsOf(R"({"fadeIn":0.01,"fadeOut":0.02})"));
    for (int channel = 0; channel < 2; ++channel) {
        const auto samples = buffer.channel(channel);
        EXPECT_EQ(samples[0], 0);
        EXPECT_EQ(samples[240], 0.25F);
        EXPECT_EQ(samples[480], 0.5F);
        EXPECT_EQ(samples[4'799 - 480], 0.25F);
        EXPECT_EQ(samples[4'799], 0);
    }
}

TEST(EffectRenderer, LetsOverlappingFadesBothApply)
{
    AudioBuffer buffer = test::stereo(Samples(1'000, 1));
    EffectRenderer::applyGainAndFades(buffer, settingsOf(R"({"fadeIn":60,"fadeOut":1e300})"));
    for (std::size_t n = 0; n < 1'000; ++n)
        ASSERT_EQ(buffer.channel(0)[n], (float(n) / 1'000) * (float(999 - n) / 1'000)) << n;
    AudioBuffer empty({48'000, 2}, 0);
    EffectRenderer::applyGainAndFades(empty, settingsOf(R"({"fadeIn":1})"));
}

TEST(EffectRenderer, CutsBehindTheLastAudibleFrame)
{
    const auto kept = [](const std::vector<Samples>& channels) {
        AudioBuffer buffer = test::bufferOf(channels);
        EffectRenderer::trimSilence(buffer);
        return buffer.frameLength();
    };
    const auto withSample = [](std::size_t at, float value) {
        Samples samples(10'000);
        samples[at] = value;
        return samples;
    };
    EXPECT_EQ(kept({withSample(999, 0.0005F), Samples(10'000)}), 1'000 + 480);
    EXPECT_EQ(kept({Samples(10'000), withSample(999, -0.0005F)}), 1'000 + 480);
    EXPECT_EQ(kept({withSample(999, 0.000499F), Samples(10'000)}), 481);
    EXPECT_EQ(kept({withSample(999, 0.5F), withSample(1'999, 0.5F)}), 2'000 + 480);
    EXPECT_EQ(kept({withSample(9'999, 0.5F), Samples(10'000)}), 10'000);
    EXPECT_EQ(kept({withSample(9'700, 0.5F), Samples(10'000)}), 10'000);
    EXPECT_EQ(kept({Samples(10'000), Samples(10'000)}), 481);
    EXPECT_EQ(kept({Samples(100), Samples(100)}), 100);
    EXPECT_EQ(kept({Samples(), Samples()}), 0);
}

TEST(EffectRenderer, RendersSilenceTo481Frames)
{
    for (const char* json : {R"({"speed":2})", R"({"echo":1,"reverb":1})", R"({"pitch":5})"}) {
        const AudioBuffer rendered = EffectRenderer::runEngine(test::stereo(Samples(48'000)), settingsOf(json));
        EXPECT_EQ(rendered.frameLength(), 481) << json;
        EXPECT_EQ(test::peakOf(rendered.channel(0)), 0) << json;
    }
}

TEST(EffectRenderer, KeepsToTheRangeOfSpeeds)
{
    const AudioBuffer source = EffectRenderer::read(noiseFile(), 0, 1);
    const auto at = [&](double speed) {
        EffectSettings settings;
        settings.speed = speed;
        return EffectRenderer::runEngine(source, settings);
    };
    const AudioBuffer slowest = at(0.25);
    EXPECT_TRUE(test::haveEqualSamples(at(0.1), slowest));
    EXPECT_TRUE(test::haveEqualSamples(at(-3), slowest));
    EXPECT_TRUE(test::haveEqualSamples(at(kNoNumber), slowest));
    EXPECT_NEAR(double(slowest.frameLength()), 48'000 * 4, 2'048);
    const AudioBuffer fastest = at(4);
    EXPECT_TRUE(test::haveEqualSamples(at(8), fastest));
    EXPECT_NEAR(double(fastest.frameLength()), 12'000, 481);
}

TEST(EffectRenderer, RunsItsUnitsInTheirOrder)
{
    const AudioBuffer source = EffectRenderer::read(noiseFile(), 0, 1);
    const AudioBuffer rendered =
        EffectRenderer::runEngine(source, settingsOf(R"({"speed":2,"pitch":3,"echo":0.5,"reverb":0.25})"));
    const qint64 target = qint64(3.8 * 48'000 + 24'000) + 2'048;
    AudioBuffer expected({48'000, 2}, target);
    expected.setFrameLength(target);
    TimePitch::apply(source, 2, 3, expected);
    for (int channel = 0; channel < 2; ++channel)
        FeedbackDelay({.delaySeconds = 0.24, .feedback = 0.38, .cutoffHz = 7'000, .wet = 0.5 * 0.55})
            .process(expected.channel(channel));
    HallReverb(0.25 * 0.70).process(expected.channel(0), expected.channel(1));
    EffectRenderer::trimSilence(expected);
    EXPECT_TRUE(test::haveEqualSamples(rendered, expected));
}

TEST(EffectRenderer, LetsEchoAndReverbRingOut)
{
    const AudioBuffer second = EffectRenderer::read(noiseFile(), 0, 1);
    const AudioBuffer both = EffectRenderer::runEngine(second, settingsOf(R"({"echo":1,"reverb":1})"));
    EXPECT_LE(both.frameLength(), qint64((1 + 1.6 + 2.2) * 48'000) + 2'048);
    EXPECT_GT(both.frameLength(), qint64(2.5 * 48'000));
    // Behind the last audible frame 10 ms stay.
    const auto tail = std::max(test::peakOf(both.channel(0).last(480)), test::peakOf(both.channel(1).last(480)));
    EXPECT_LT(tail, 0.0005F);
    const auto frame = static_cast<std::size_t>(both.frameLength()) - 481;
    EXPECT_GE(std::max(std::abs(both.channel(0)[frame]), std::abs(both.channel(1)[frame])), 0.0005F);
    // More than 1 counts as 1, and what is not above 0.001 as nothing.
    EXPECT_TRUE(test::haveEqualSamples(EffectRenderer::runEngine(second, settingsOf(R"({"echo":9,"reverb":1.5})")), both));
    AudioBuffer dry = EffectRenderer::runEngine(second, settingsOf(R"({"echo":0.001,"reverb":-1})"));
    dry.setFrameLength(48'000);
    EXPECT_TRUE(test::haveEqualSamples(dry, second));
}

TEST(EffectRenderer, PlacesEchoesAfterTheSpeedChange)
{
    Samples click(48'000);
    click[0] = 0.9F;
    const AudioBuffer rendered = EffectRenderer::runEngine(test::stereo(click), settingsOf(R"({"echo":1})"));
    const auto samples = rendered.channel(0);
    EXPECT_FLOAT_EQ(samples[0], 0.9F * 0.45F);
    double previous = 1;
    for (std::size_t k = 1; k <= 4; ++k) {
        double sum = 0;
        for (const float sample : samples.subspan(k * 11'520, 200))
            sum += static_cast<double>(sample);
        EXPECT_NEAR(sum / previous, k == 1 ? 0.9 * 0.55 : 0.38, 1e-3);
        previous = sum;
    }
}

TEST(EffectRenderer, ReversesBeforeItEchoes)
{
    const AudioBuffer source = EffectRenderer::read(noiseFile(), 0, 1);
    AudioBuffer expected = source;
    EffectRenderer::reverse(expected);
    expected = EffectRenderer::runEngine(expected, settingsOf(R"({"echo":0.5})"));
    VoiceDSP::apply(VoiceStyle::megaphone, expected);
    EffectRenderer::applyGainAndFades(expected, settingsOf(R"({"gainDb":-3,"fadeIn":0.2,"fadeOut":0.3})"));
    const AudioBuffer rendered = EffectRenderer::renderBuffer(
        noiseFile(), 0, 1,
        settingsOf(R"({"reverse":true,"echo":0.5,"voice":"megaphone","gainDb":-3,"fadeIn":0.2,"fadeOut":0.3})"));
    EXPECT_TRUE(test::haveEqualSamples(rendered, expected));
}

TEST(EffectRenderer, SkipsTheEngineWhereItHasNothingToDo)
{
    // The engine would cut the silence at the end.
    Samples samples = test::noise(1, 1);
    std::fill(samples.begin() + 24'000, samples.end(), 0.0F);
    const QString path = write(u"half.wav"_s, test::stereo(samples));
    const auto framesOf = [&](const char* json) {
        return EffectRenderer::renderBuffer(path, 0, 1, settingsOf(json)).frameLength();
    };
    EXPECT_EQ(framesOf(R"({"voice":"robot"})"), 48'000);
    EXPECT_EQ(framesOf(R"({"speed":1.0005})"), 48'000);
    EXPECT_EQ(framesOf(R"({"gainDb":3,"fadeIn":0.1,"reverse":true})"), 48'000);
    EXPECT_LT(framesOf(R"({"speed":1.01})"), 26'000);
    EXPECT_LT(framesOf(R"({"voice":"man"})"), 26'000);
}

TEST(EffectRenderer, CutsAtTenMinutes)
{
    constexpr qint64 kFrames = 48'000 * 601;
    AudioBuffer buffer({48'000, 2}, kFrames);
    buffer.setFrameLength(kFrames);
    for (int channel = 0; channel < 2; ++channel)
        std::fill(buffer.channel(channel).begin(), buffer.channel(channel).end(), 0.5F);
    EXPECT_EQ(EffectRenderer::runEngine(buffer, settingsOf(R"({"echo":0.5})")).frameLength(), 28'800'000);
}

TEST(EffectRenderer, GivesTheSameBytesFromEveryThread)
{
    const QString path = noiseFile();
    const EffectSettings settings =
        settingsOf(R"({"speed":1.2,"pitch":-2,"echo":0.4,"reverb":0.6,"voice":"telephone","fadeIn":0.1})");
    const AudioBuffer first = EffectRenderer::renderBuffer(path, 0.1, 1.9, settings);
    std::array<AudioBuffer, 3> others;
    std::vector<std::thread> threads;
    for (AudioBuffer& other : others)
        threads.emplace_back([&] { other = EffectRenderer::renderBuffer(path, 0.1, 1.9, settings); });
    for (std::thread& thread : threads)
        thread.join();
    for (const AudioBuffer& other : others)
        EXPECT_TRUE(test::haveEqualSamples(other, first));
}

TEST(EffectRenderer, WritesWhatItRenderedToATemporaryFile)
{
    const OwnTempFolder folder;
    const EffectSettings settings = settingsOf(R"({"echo":0.3,"gainDb":20})"); // beyond full scale
    const QString path = EffectRenderer::render(noiseFile(), 0, 1, settings);
    EXPECT_TRUE(path.startsWith(folder.path() + u"/render-"_s));
    static const QRegularExpression pattern(u"^render-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\.wav$"_s);
    EXPECT_EQ(folder.names().size(), 1);
    EXPECT_TRUE(pattern.match(folder.names().constFirst()).hasMatch()) << path.toStdString();
    const AudioBuffer rendered = EffectRenderer::renderBuffer(noiseFile(), 0, 1, settings);
    EXPECT_GT(test::peakOf(rendered.channel(0)), 1);
    EXPECT_TRUE(test::haveEqualSamples(test::readAll(path), rendered)); // 32-bit floats lose nothing
    const QByteArray header = test::bytesOfFile(path).first(22);
    EXPECT_EQ(header.first(4), "RIFF");
    EXPECT_EQ(header[20], 3); // IEEE float
}

TEST(EffectRenderer, PassesOnThatItCannotWrite)
{
    const OwnTempFolder folder;
    qputenv("TMPDIR", "/proc"); // where nobody can make a file
    EXPECT_THROW(EffectRenderer::render(noiseFile(), 0, 1, EffectSettings()), AudioFileError);
}

TEST(EffectRenderer, NeverWritesToTheCurrentFolder)
{
    const OwnTempFolder folder;
    qputenv("TMPDIR", "/nonexistent/folder");
    const QString path = EffectRenderer::render(noiseFile(), 0, 1, EffectSettings());
    EXPECT_TRUE(path.startsWith(u"/tmp/render-"_s)) << path.toStdString();
    QFile::remove(path);
}

TEST(EffectRenderer, SweepsWhatACrashLeft)
{
    const OwnTempFolder folder;
    const auto make = [&](const QString& name, qint64 ageSeconds) {
        QFile file(folder.path() + u'/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("x");
        file.flush();
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-ageSeconds), QFileDevice::FileModificationTime));
    };
    const QString stray = u"render-0B8C6A3E-5D0F-4B3A-9C44-6A1B2C3D4E5F.wav"_s;
    const QString young = u"render-1B8C6A3E-5D0F-4B3A-9C44-6A1B2C3D4E5F.wav"_s;
    const QString others = u"render-notes.wav"_s;
    const QString longer = u"render-2B8C6A3E-5D0F-4B3A-9C44-6A1B2C3D4E5F.wav.bak"_s;
    make(stray, 4'000);
    make(young, 3'000);
    make(others, 100'000);
    make(longer, 100'000);
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"render-3B8C6A3E-5D0F-4B3A-9C44-6A1B2C3D4E5F.wav"_s));
    EffectRenderer::sweepStrays();
    EXPECT_THAT(folder.names(),
                testing::UnorderedElementsAre(young, others, longer, u"render-3B8C6A3E-5D0F-4B3A-9C44-6A1B2C3D4E5F.wav"_s));
}

TEST(EffectRenderer, StopsWhenItIsCancelled)
{
    Progress progress;
    progress.cancel();
    EXPECT_THROW(EffectRenderer::renderBuffer(noiseFile(), 0, 2, settingsOf(R"({"reverb":1})"), &progress), Cancelled);
    Progress whole;
    EffectRenderer::renderBuffer(noiseFile(), 0, 2, settingsOf(R"({"reverb":1})"), &whole);
    EXPECT_EQ(whole.fraction(), 1);
}

TEST(EffectRenderer, GivesAnExportWhatItRendered)
{
    // The road of a sound with effects to its finished file.
    const OwnTempFolder folder;
    const QString rendered = EffectRenderer::render(noiseFile(), 0, 2, settingsOf(R"({"speed":2})"));
    ExportRequest request;
    request.source = rendered;
    request.end = 60;
    request.fadeIn = 0.004;
    request.fadeOut = 0.01;
    const QString path = test::scratchPath(u"finished.wav"_s);
    const ExportResult result = AudioExporter::exportRange(request, path);
    EXPECT_EQ(result.frames, AudioFile(rendered).length());
    EXPECT_NEAR(double(result.frames), 48'000, 481);
}

TEST(EffectRenderer, EndsSoonAfterItIsCancelled)
{
    const QString path =
        write(u"long.wav"_s, test::bufferOf({test::noise(30, 1, 0.3F, 44'100), test::noise(30, 2, 0.3F, 44'100)}, 44'100));
    const auto read = [&path](Progress& progress) { EffectRenderer::read(path, 0, 30, &progress); };
    EXPECT_LE(test::workAfterCancel(read), test::kSoon);
    const auto render = [&path](Progress& progress) {
        EffectRenderer::renderBuffer(path, 0, 30, settingsOf(R"({"reverb":1,"echo":1,"voice":"robot"})"), &progress);
    };
    EXPECT_LE(test::workAfterCancel(render), test::kSoon);
}

TEST(EffectRenderer, EndsEachStepOfALongSoundSoonAfterItIsCancelled)
{
    AudioBuffer sound = test::stereo(test::noise(180, 1, 0.0001F)); // too soft to be heard: all of it is looked at
    const qint64 frames = sound.frameLength();
    const auto reverse = [&](Progress& progress) { EffectRenderer::reverse(sound, &progress); };
    EXPECT_LE(test::workAfterCancel(reverse), test::kSoon);
    const auto trim = [&](Progress& progress) {
        sound.setFrameLength(frames);
        EffectRenderer::trimSilence(sound, &progress);
    };
    EXPECT_LE(test::workAfterCancel(trim), test::kSoon);
    sound.setFrameLength(frames);
    const EffectSettings loud = settingsOf(R"({"gainDb":1,"fadeIn":90,"fadeOut":90})");
    const auto level = [&](Progress& progress) { EffectRenderer::applyGainAndFades(sound, loud, &progress); };
    EXPECT_LE(test::workAfterCancel(level), test::kSoon);
    const OwnTempFolder folder;
    const auto writeAll = [&](Progress& progress) { QFile::remove(EffectRenderer::writeTemp(sound, &progress)); };
    EXPECT_LE(test::workAfterCancel(writeAll), test::kSoon);
    EXPECT_EQ(folder.names(), QStringList());
}
