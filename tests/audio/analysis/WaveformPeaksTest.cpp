#include "audio/analysis/WaveformPeaks.h"

#include "support/BadDisk.h"
#include "support/Cancelling.h"
#include "support/MediaFactory.h"
#include "support/WavBytes.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

QString floatWav(const std::vector<float>& samples, std::uint16_t channels = 1)
{
    const test::WavBytes wav = {.kind = 3, .channels = channels, .bits = 32};
    return test::makeFile(u"drawn.wav"_s, wav.with(std::span<const float>(samples)));
}

} // namespace

TEST(WaveformPeaks, TakesTheLoudestChannelOfEachFrame)
{
    EXPECT_THAT(WaveformPeaks::compute(floatWav({0.1F, -0.5F, 0.25F, 0.0F, -0.05F, 0.1F, 0.0F, 0.0F}, 2), 2),
                ElementsAre(1.0F, 0.2F));
}

TEST(WaveformPeaks, AlwaysReachesOne)
{
    EXPECT_THAT(WaveformPeaks::compute(floatWav({0.002F, -0.001F}), 2), ElementsAre(1.0F, 0.5F));
    EXPECT_THAT(WaveformPeaks::compute(floatWav({8.0F, -2.0F}), 2), ElementsAre(1.0F, 0.25F));
}

TEST(WaveformPeaks, DrawsSilenceAsZeros)
{
    EXPECT_THAT(WaveformPeaks::compute(floatWav(std::vector<float>(100)), 7), testing::AllOf(SizeIs(7), Each(0.0F)));
}

TEST(WaveformPeaks, PutsEachFrameIntoTheBinOfItsPlace)
{
    std::vector<float> samples(40'000, 0.25F); // more than two blocks
    samples[29'999] = 0.5F;
    samples[30'000] = 1.0F;
    const std::vector<float> peaks = WaveformPeaks::compute(floatWav(samples), 4);
    EXPECT_THAT(peaks, ElementsAre(0.25F, 0.25F, 0.5F, 1.0F));
}

TEST(WaveformPeaks, LeavesBinsWithoutFramesAtZero)
{
    EXPECT_THAT(WaveformPeaks::compute(floatWav({0.5F, 0.5F}), 5), ElementsAre(1.0F, 0.0F, 1.0F, 0.0F, 0.0F));
}

TEST(WaveformPeaks, IsEmptyWithoutBinsOrFile)
{
    EXPECT_THAT(WaveformPeaks::compute(floatWav({0.5F}), 0), IsEmpty());
    EXPECT_THAT(WaveformPeaks::compute(floatWav({0.5F}), -3), IsEmpty());
    EXPECT_THAT(WaveformPeaks::compute(test::scratchPath(u"nowhere.wav"_s), 10), IsEmpty());
    EXPECT_THAT(WaveformPeaks::compute(test::makeFile(u"text.wav"_s, "no sound"), 10), IsEmpty());
    EXPECT_THAT(WaveformPeaks::compute(test::makeFile(u"none.wav"_s, test::WavBytes{}.withSilence(0)), 10), IsEmpty());
}

TEST(WaveformPeaks, ReadsCompressedFiles)
{
    EXPECT_THAT(WaveformPeaks::compute(test::makeMedia(u"w.mp3"_s, test::wandering(44'100, 2, 1)), 20),
                testing::AllOf(SizeIs(20), Each(testing::Gt(0.5F)), testing::Contains(1.0F)));
}

TEST(WaveformPeaks, EndsSoonAfterItIsCancelled)
{
    const QString path = test::makeFile(u"long.wav"_s, test::WavBytes{.channels = 2}.withSilence(20'000'000));
    const auto draw = [&path](Progress& progress) { WaveformPeaks::compute(path, 1'000, &progress); };
    EXPECT_LE(test::workAfterCancel(draw), test::kSoon);
}

TEST(WaveformPeaks, DrawsWhatWasReadBeforeTheDiskFailed)
{
    std::vector<float> samples(100'000, 0.25F);
    samples[10] = 0.5F;
    const QString path = floatWav(samples);
    const test::BadDisk disk(path, 60'000 * sizeof(float)); // not all of the fourth block can be read
    const std::vector<float> peaks = WaveformPeaks::compute(path, 4);
    ASSERT_THAT(peaks, SizeIs(4));
    EXPECT_EQ(peaks[0], 1.0F);
    EXPECT_EQ(peaks[1], 0.5F);
    EXPECT_EQ(peaks[3], 0.0F);
}

TEST(WaveformPeaks, DrawsNothingOfAFileWhoseStartCannotBeRead)
{
    const QString path = floatWav(std::vector<float>(100'000, 0.25F));
    const test::BadDisk disk(path, 0);
    EXPECT_THAT(WaveformPeaks::compute(path, 4), IsEmpty());
}
