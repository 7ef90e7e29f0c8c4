#include "audio/effects/Mixer.h"
#include "audio/effects/EffectRenderer.h"
#include "support/Cancelling.h"
#include "support/Signal.h"

#include <gmock/gmock.h>

#include <limits>

using namespace tonequill;
using test::Samples;

namespace {

Mixer::Piece piece(const Samples& samples, double offset = 0, float gain = 1)
{
    return {std::make_shared<const AudioBuffer>(test::stereo(samples)), offset, gain};
}

AudioBuffer mixed(const std::vector<Mixer::Piece>& pieces)
{
    auto mix = Mixer::mix(pieces);
    if (!mix)
        throw std::runtime_error("nothing was mixed");
    return *std::move(mix);
}

} // namespace

TEST(Mixer, MakesNothingOfNothing)
{
    EXPECT_FALSE(Mixer::mix({}));
    EXPECT_FALSE(Mixer::mix(std::vector{piece({}), piece({})}));
    EXPECT_FALSE(Mixer::mix(std::vector{piece({}, 0.00001)}));
}

TEST(Mixer, GivesNothingWhereTheMixDoesNotFit)
{
    for (const double offset : {1e9, 1e18, 1e300, std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(Mixer::mix(std::vector{piece({0.5F}, offset)})) << offset;
}

TEST(Mixer, PlacesAPieceAtItsOffset)
{
    const AudioBuffer mix = mixed({piece(Samples(100, 0.5F), 1.5)});
    EXPECT_EQ(mix.format(), EffectRenderer::format);
    EXPECT_EQ(mix.frameLength(), 72'100);
    for (int channel = 0; channel < 2; ++channel) {
        EXPECT_EQ(test::peakOf(mix.channel(channel).first(72'000)), 0);
        for (const float sample : mix.channel(channel).last(100))
            EXPECT_EQ(sample, 0.5F);
    }
}

TEST(Mixer, CutsOffsetsToWholeFrames)
{
    EXPECT_EQ(mixed({piece({0.5F}, 2.9999 / 48'000)}).frameLength(), 3);
    EXPECT_EQ(mixed({piece({0.5F}, -7)}).frameLength(), 1);
    EXPECT_EQ(mixed({piece({0.5F}, std::numeric_limits<double>::quiet_NaN())}).frameLength(), 1);
}

TEST(Mixer, AddsUpWhatOverlapsInItsOrder)
{
    const Samples one = test::noise(1.0, 1, 0.2F);
    const Samples two = test::noise(0.7, 2, 0.2F);
    const Samples three = test::noise(0.3, 3, 0.2F);
    const AudioBuffer mix = mixed({piece(one), piece(two, 0.25, 0.5F), piece(three, 0.1, -1)});
    ASSERT_EQ(mix.frameLength(), 48'000);
    for (std::size_t n = 0; n < 48'000; ++n) {
        float sum = one[n];
        if (n >= 12'000 && n < 12'000 + two.size())
            sum += 0.5F * two[n - 12'000];
        if (n >= 4'800 && n < 4'800 + three.size())
            sum += -1.0F * three[n - 4'800];
        ASSERT_EQ(mix.channel(0)[n], sum) << "frame " << n;
    }
}

TEST(Mixer, KeepsTheChannelsApart)
{
    Mixer::Piece both;
    both.buffer = std::make_shared<const AudioBuffer>(test::bufferOf({test::noise(0.2, 1), test::noise(0.2, 2)}));
    EXPECT_TRUE(test::haveEqualSamples(mixed({both}), *both.buffer));
}

TEST(Mixer, IsLinearBelowItsLimit)
{
    const Samples one = test::noise(0.4, 5, 0.25F);
    const Samples two = test::noise(0.4, 6, 0.25F);
    const AudioBuffer sum = mixed({piece(one), piece(two)});
    const AudioBuffer half = mixed({piece(one, 0, 0.5F), piece(two, 0, 0.5F)});
    for (std::size_t n = 0; n < one.size(); ++n)
        ASSERT_EQ(half.channel(0)[n], 0.5F * sum.channel(0)[n]); // halving is exact
}

TEST(Mixer, ScalesTheWholeMixDownToItsLimit)
{
    Samples loud(1'000, 0.5F);
    loud[500] = 1;
    const AudioBuffer mix = mixed({piece(loud), piece(loud)});
    EXPECT_FLOAT_EQ(mix.channel(0)[500], 0.98F);
    EXPECT_FLOAT_EQ(mix.channel(1)[0], 0.49F); // every other sample by the same factor
    EXPECT_FLOAT_EQ(mix.channel(0)[999], 0.49F);
    // One loud channel lowers the other as well.
    Mixer::Piece oneSided;
    oneSided.buffer = std::make_shared<const AudioBuffer>(test::bufferOf({Samples(10, 0.5F), Samples(10, -1.96F)}));
    EXPECT_FLOAT_EQ(mixed({oneSided}).channel(0)[3], 0.25F);
    EXPECT_FLOAT_EQ(mixed({oneSided}).channel(1)[3], -0.98F);
}

TEST(Mixer, LeavesAPeakAtItsLimitAlone)
{
    const Samples atLimit = {0.98F, -0.98F, 0.123456F};
    EXPECT_EQ(test::samplesOf(mixed({piece(atLimit)}), 0), atLimit);
    const Samples quiet = {0.001F};
    EXPECT_EQ(test::samplesOf(mixed({piece(quiet)}), 0), quiet); // and quiet mixes are not raised
}

TEST(Mixer, CountsASilencedPieceForTheLength)
{
    const AudioBuffer mix = mixed({piece(Samples(100, 0.5F)), piece(Samples(100, 0.5F), 1, 0)});
    EXPECT_EQ(mix.frameLength(), 48'100);
    EXPECT_EQ(test::peakOf(mix.channel(0).last(48'000)), 0);
}

TEST(Mixer, EndsSoonAfterItIsCancelled)
{
    const std::vector<Mixer::Piece> pieces(20, piece(test::noise(30, 1)));
    const auto mix = [&pieces](Progress& progress) { Mixer::mix(pieces, &progress); };
    EXPECT_LE(test::workAfterCancel(mix), test::kSoon);
}
