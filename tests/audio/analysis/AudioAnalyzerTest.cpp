#include "audio/analysis/AudioAnalyzer.h"

#include "platform/media/AudioFile.h"
#include "support/BadDisk.h"
#include "support/Cancelling.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/WavBytes.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Words = QStringList;

QString floatWav(const std::vector<float>& samples, std::uint32_t sampleRate = 48'000, std::uint16_t channels = 1)
{
    const test::WavBytes wav = {.kind = 3, .channels = channels, .sampleRate = sampleRate, .bits = 32};
    return test::makeFile(u"analysed.wav"_s, wav.with(std::span<const float>(samples)));
}

std::vector<float> tone(double hertz, double seconds, float level, int sampleRate = 48'000)
{
    std::vector<float> samples(static_cast<std::size_t>(seconds * sampleRate));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = level * static_cast<float>(std::sin(2 * M_PI * hertz * (static_cast<double>(i) + 0.5) / sampleRate));
    return samples;
}

AudioAnalysis withPeaks(std::vector<float> peaks)
{
    AudioAnalysis analysis;
    analysis.peak = std::move(peaks);
    return analysis;
}

// An envelope that reaches a tenth of its level at once and half of it `hops` later.
std::vector<float> attackOf(int hops)
{
    std::vector<float> rms(static_cast<std::size_t>(hops), 0.2F);
    rms.push_back(1.0F);
    return rms;
}

} // namespace

TEST(AudioAnalyzer, ReadsEveryKindOfFile)
{
    for (const QString& name : {u"a.wav"_s, u"a.mp3"_s, u"a.m4a"_s, u"a.flac"_s, u"a.ogg"_s, u"a.opus"_s}) {
        const auto analysis = AudioAnalyzer::analyze(test::makeMedia(name, test::wandering(48'000, 2, 2)));
        EXPECT_NEAR(analysis.duration, 2.0, 0.001) << name.toStdString();
        EXPECT_EQ(analysis.sampleRate, 48'000);
        EXPECT_EQ(analysis.hopSeconds, 0.01);
        EXPECT_THAT(analysis.rms, SizeIs(200));
        EXPECT_THAT(analysis.peak, SizeIs(200));
        EXPECT_THAT(analysis.peak, Each(testing::Gt(0.05F))) << name.toStdString();
    }
}

TEST(AudioAnalyzer, MakesHopsOfTenMillisecondsOrSlightlyLess)
{
    const auto hopOf = [](std::uint32_t sampleRate) {
        const AudioAnalysis analysis = AudioAnalyzer::analyze(floatWav(std::vector<float>(1000, 0.5F), sampleRate));
        EXPECT_EQ(analysis.sampleRate, sampleRate);
        EXPECT_EQ(analysis.duration, 1000.0 / sampleRate);
        return analysis.hopSeconds * sampleRate;
    };
    EXPECT_DOUBLE_EQ(hopOf(44'100), 441);
    EXPECT_DOUBLE_EQ(hopOf(48'000), 480);
    EXPECT_DOUBLE_EQ(hopOf(11'025), 110);
    EXPECT_DOUBLE_EQ(hopOf(22'050), 220);
    EXPECT_DOUBLE_EQ(hopOf(768'000), 7'680);
}

TEST(AudioAnalyzer, TakesTheLastHopByItsOwnFrames)
{
    std::vector<float> samples(480 + 120, 0.5F);
    samples.back() = -0.75F;
    const AudioAnalysis analysis = AudioAnalyzer::analyze(floatWav(samples));
    const float last = std::sqrt((119 * 0.25F + 0.75F * 0.75F) / 120);
    EXPECT_THAT(analysis.rms, ElementsAre(0.5F, testing::FloatEq(last)));
    EXPECT_THAT(analysis.peak, ElementsAre(0.5F, 0.75F));
    EXPECT_EQ(analysis.duration, 600.0 / 48'000);
}

TEST(AudioAnalyzer, GivesOneHopForOneFrame)
{
    const AudioAnalysis analysis = AudioAnalyzer::analyze(floatWav({-0.3F}));
    EXPECT_THAT(analysis.rms, ElementsAre(0.3F));
    EXPECT_THAT(analysis.peak, ElementsAre(0.3F));
}

TEST(AudioAnalyzer, FindsNoAttackInSilence)
{
    const AudioAnalysis analysis = AudioAnalyzer::analyze(floatWav(std::vector<float>(4'800)));
    EXPECT_THAT(analysis.rms, SizeIs(10));
    EXPECT_THAT(analysis.rms, Each(0.0F));
    EXPECT_EQ(analysis.descriptors, (Words{u"short"_s, u"hit"_s, u"deep"_s, u"low"_s}));
}

TEST(AudioAnalyzer, CallsAShortHighToneAHit)
{
    EXPECT_EQ(AudioAnalyzer::analyze(floatWav(tone(5'000, 0.5, 0.9F))).descriptors,
              (Words{u"short"_s, u"hit"_s, u"punchy"_s, u"bright"_s}));
}

TEST(AudioAnalyzer, CountsTheFirstNegativeSampleAsACrossing)
{
    // 0.01 s are the least that crossings are divided by: 60 of them are 3000 Hz,
    // which is not above.
    const auto wordsFor = [](int crossings) {
        std::vector<float> samples;
        for (int i = 0; i < crossings; ++i)
            samples.push_back(i % 2 == 0 ? -0.5F : 0.5F);
        return AudioAnalyzer::analyze(floatWav(samples)).descriptors;
    };
    EXPECT_FALSE(wordsFor(60).contains(u"bright"_s));
    EXPECT_TRUE(wordsFor(61).contains(u"bright"_s));
    EXPECT_FALSE(wordsFor(10).contains(u"deep"_s));
    EXPECT_TRUE(wordsFor(9).contains(u"deep"_s));
}

TEST(AudioAnalyzer, MixesTheChannelsAsEquals)
{
    const AudioAnalysis opposite = AudioAnalyzer::analyze(floatWav({0.5F, -0.5F, 0.5F, -0.5F}, 48'000, 2));
    EXPECT_THAT(opposite.rms, ElementsAre(0.0F));
    const AudioAnalysis three = AudioAnalyzer::analyze(floatWav({0.9F, 0.0F, -0.3F}, 48'000, 3));
    EXPECT_THAT(three.peak, ElementsAre(testing::FloatEq(0.2F)));
}

TEST(AudioAnalyzer, SaysSoWhenThereIsNothing)
{
    const QString empty = test::makeFile(u"empty.wav"_s, test::WavBytes{}.withSilence(0));
    try {
        AudioAnalyzer::analyze(empty);
        FAIL() << "an empty file was analysed";
    } catch (const AnalysisError& error) {
        EXPECT_EQ(error.message(), u"This file has no audio to analyze."_s);
    }
    EXPECT_THROW(AudioAnalyzer::analyze(test::scratchPath(u"nowhere.wav"_s)), AudioFileError);
}

TEST(AudioAnalyzer, ReportsItsProgressAndCanBeStopped)
{
    const QString path = floatWav(tone(440, 5, 0.5F));
    Progress progress;
    AudioAnalyzer::analyze(path, &progress);
    EXPECT_EQ(progress.fraction(), 1.0);
    progress.cancel();
    EXPECT_THROW(AudioAnalyzer::analyze(path, &progress), Cancelled);
}

TEST(AudioAnalyzer, TellsTheLength)
{
    const auto first = [](double duration) { return AudioAnalyzer::describe({}, 1'000'000, duration); };
    EXPECT_EQ(first(0.599), (Words{u"short"_s, u"hit"_s, u"bright"_s}));
    EXPECT_EQ(first(0.6), (Words{u"medium"_s, u"bright"_s}));
    EXPECT_EQ(first(2.999), (Words{u"medium"_s, u"bright"_s}));
    EXPECT_EQ(first(3.0), (Words{u"long"_s, u"ambient"_s, u"bright"_s}));
}

TEST(AudioAnalyzer, TellsTheAttack)
{
    constexpr qint64 kMiddling = 2'000; // crossings: 1 kHz for a second
    const auto words = [](int hops, double duration) {
        return AudioAnalyzer::describe(attackOf(hops), static_cast<qint64>(kMiddling * duration), duration);
    };
    EXPECT_EQ(words(0, 1), (Words{u"medium"_s, u"punchy"_s}));
    EXPECT_EQ(words(3, 1), (Words{u"medium"_s, u"punchy"_s}));
    EXPECT_EQ(words(4, 1), (Words{u"medium"_s}));
    EXPECT_EQ(words(19, 1), (Words{u"medium"_s}));
    EXPECT_EQ(words(20, 1), (Words{u"medium"_s, u"swell"_s, u"rise"_s}));
    EXPECT_EQ(words(20, 5), (Words{u"long"_s, u"ambient"_s, u"swell"_s, u"rise"_s}));
    EXPECT_EQ(words(0, 3.999), (Words{u"long"_s, u"ambient"_s, u"punchy"_s}));
    EXPECT_EQ(words(0, 4), (Words{u"long"_s, u"ambient"_s})); // long with a fast attack: neither
    EXPECT_EQ(AudioAnalyzer::describe({0, 0}, kMiddling, 1), (Words{u"medium"_s}));
}

TEST(AudioAnalyzer, MeasuresTheAttackIn32BitFloats)
{
    const float largest = 0.7F;
    const float tenth = 0.1F * largest;
    std::vector<float> rms(21, 0.2F * largest);
    rms.back() = largest;
    rms.front() = tenth; // exactly a tenth counts: 20 hops to the half
    EXPECT_TRUE(AudioAnalyzer::describe(rms, 2'000, 1).contains(u"swell"_s));
    rms.front() = std::nextafter(tenth, 0.0F); // 19
    EXPECT_FALSE(AudioAnalyzer::describe(rms, 2'000, 1).contains(u"swell"_s));
}

TEST(AudioAnalyzer, TellsTheBrightness)
{
    const auto last = [](qint64 crossings, double duration) { return AudioAnalyzer::describe({}, crossings, duration).mid(1); };
    EXPECT_EQ(last(6'001, 1), (Words{u"bright"_s}));
    EXPECT_EQ(last(6'000, 1), Words());
    EXPECT_EQ(last(1'000, 1), Words());
    EXPECT_EQ(last(999, 1), (Words{u"deep"_s, u"low"_s}));
    EXPECT_EQ(AudioAnalyzer::describe({}, 61, 0.0001).last(), u"bright"_s); // never divided by less than 0.01 s
}

TEST(AudioThumbnail, TakesTheRootOfTheLargestPeakOfEachStretch)
{
    EXPECT_THAT(withPeaks({0.25F, 0.01F, 0.04F, 0.0F}).thumbnail(2), ElementsAre(0.5F, 0.2F));
    EXPECT_THAT(withPeaks({0.01F, 0.04F, 0.09F}).thumbnail(2),
                ElementsAre(testing::FloatEq(0.1F), testing::FloatEq(0.3F))); // 1.5 hops a bin, from the integer part on
}

TEST(AudioThumbnail, IsNotRaisedForQuietSoundsAndCappedForHotOnes)
{
    EXPECT_THAT(withPeaks({0.0001F}).thumbnail(1), ElementsAre(testing::FloatEq(0.01F)));
    EXPECT_THAT(withPeaks({4.0F, 1.0F}).thumbnail(2), ElementsAre(1.0F, 1.0F));
}

TEST(AudioThumbnail, RepeatsNeighboursWhenThereAreFewHops)
{
    std::vector<float> peaks;
    for (int i = 0; i < 10; ++i)
        peaks.push_back(static_cast<float>(i * i) / 100);
    const std::vector<float> bins = withPeaks(peaks).thumbnail(48);
    ASSERT_THAT(bins, SizeIs(48));
    for (int i = 0; i < 48; ++i)
        EXPECT_FLOAT_EQ(bins[static_cast<std::size_t>(i)], static_cast<float>(i * 10 / 48) / 10) << i;
}

TEST(AudioThumbnail, IsEmptyWithoutPeaksOrBins)
{
    EXPECT_THAT(withPeaks({}).thumbnail(48), IsEmpty());
    EXPECT_THAT(withPeaks({0.5F}).thumbnail(0), IsEmpty());
}

TEST(AudioThumbnail, HasAllBinsForEveryCombination)
{
    for (int hops = 1; hops < 130; ++hops)
        for (const int bins : {1, 2, 3, 7, 48, 49, 97, 100})
            EXPECT_THAT(withPeaks(std::vector<float>(static_cast<std::size_t>(hops), 0.25F)).thumbnail(bins),
                        testing::AllOf(SizeIs(bins), Each(0.5F)));
}

TEST(AudioAnalyzer, EndsSoonAfterItIsCancelled)
{
    // Many channels make a hop as long as a block.
    for (const std::uint16_t channels : {std::uint16_t(2), std::uint16_t(64)}) {
        const test::WavBytes wav = {.channels = channels};
        const QString path = test::makeFile(u"long.wav"_s, wav.withSilence(std::size_t(20'000'000 / channels)));
        const auto analyze = [&path](Progress& progress) { AudioAnalyzer::analyze(path, &progress); };
        EXPECT_LE(test::workAfterCancel(analyze), test::kSoon) << channels;
    }
}

TEST(AudioAnalyzer, PassesOnThatTheDiskFailed)
{
    const QString path = test::makeFile(u"bad.wav"_s, test::WavBytes{}.withSilence(1'000'000));
    const test::BadDisk disk(path, 1'000'000);
    try {
        AudioAnalyzer::analyze(path);
        FAIL() << "it can't be read";
    } catch (const AudioFileError& error) {
        EXPECT_EQ(error.kind(), AudioFileError::Kind::read);
    }
}

TEST(AudioAnalyzer, TakesEveryFrameForAHopAtTheSlowestRate)
{
    const test::WavBytes wav = {.sampleRate = 80};
    const AudioAnalysis analysis = AudioAnalyzer::analyze(test::makeFile(u"slow.wav"_s, wav.withSilence(160)));
    EXPECT_EQ(analysis.rms.size(), 160U);
    EXPECT_EQ(analysis.hopSeconds, 0.0125);
    EXPECT_EQ(analysis.duration, 2);
}
