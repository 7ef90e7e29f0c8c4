#include "audio/analysis/FinePeaks.h"

#include "platform/media/AudioFile.h"
#include "support/Cancelling.h"
#include "support/MediaFactory.h"
#include "support/WavBytes.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

QString floatWav(const std::vector<float>& samples, std::uint16_t channels = 1)
{
    const test::WavBytes wav = {.kind = 3, .channels = channels, .bits = 32};
    return test::makeFile(u"fine.wav"_s, wav.with(std::span<const float>(samples)));
}

} // namespace

TEST(FinePeaks, HaveEveryFrameOfAShortSound)
{
    const FinePeaks fine = FinePeaks::read(floatWav({0.5F, -0.5F, -1.0F, 0.0F, 0.25F, 0.75F}, 2), {});
    EXPECT_THAT(fine.values, testing::ElementsAre(0.0F, 0.5F, 0.5F)); // of the mono mix
    EXPECT_EQ(fine.hopSeconds, 1.0 / 48'000);
}

TEST(FinePeaks, AreHardlyMoreThanTheMost)
{
    std::vector<float> samples(2 * FinePeaks::kMost + 100, 0.1F);
    samples[3] = 0.9F;
    const FinePeaks fine = FinePeaks::read(floatWav(samples), {});
    EXPECT_EQ(fine.values.size(), FinePeaks::kMost + 50U);
    EXPECT_EQ(fine.hopSeconds, 2.0 / 48'000);
    EXPECT_EQ(fine.values[0], 0.1F);
    EXPECT_EQ(fine.values[1], 0.9F);
}

TEST(FinePeaks, EndSoonAfterTheyAreCancelled)
{
    const QString path = test::makeFile(u"long.wav"_s, test::WavBytes{.channels = 2}.withSilence(20'000'000));
    EXPECT_LE(test::workAfterCancel([&path](Progress& progress) { FinePeaks::read(path, progress); }), test::kSoon);
    EXPECT_THROW(FinePeaks::read(test::scratchPath(u"nowhere.wav"_s), {}), AudioFileError);
}
