#include "audio/effects/HallReverb.h"
#include "support/Acoustics.h"

#include <gmock/gmock.h>

#include <numbers>

using namespace tonequill;
using test::Response;
using test::Samples;
using test::stretchOf;

namespace {

Response respond(float left, float right)
{
    return test::responseOf([](auto leftSide, auto rightSide) { HallReverb(1).process(leftSide, rightSide); }, left, right);
}

const Response& hall()
{
    static const Response response = respond(1, 1);
    return response;
}

} // namespace

TEST(HallReverb, DecaysLikeALargeHall)
{
    for (const Samples* side : {&hall().left, &hall().right}) {
        const auto rt60 = [&](double hertz) { return test::decaySeconds(test::bandOf(*side, hertz)); };
        EXPECT_NEAR(rt60(1'000), 2.3, 0.3);
        // Few modes lie in a low band, so that its decay is less even.
        EXPECT_NEAR(rt60(125), 2.4, 0.3);
        EXPECT_NEAR(rt60(500), 2.4, 0.3);
        EXPECT_LT(rt60(4'000), 0.85 * rt60(1'000));
        EXPECT_LT(rt60(8'000), 0.8 * rt60(4'000));
        EXPECT_LT(rt60(16'000), 0.8 * rt60(8'000));
        EXPECT_GT(rt60(16'000), 0.4);
    }
}

TEST(HallReverb, DecaysInAStraightLine)
{
    // From 0.2 s on, the level falls evenly: no plateau, no second slope.
    const Samples band = test::bandOf(hall().left, 1'000);
    const double start = 10 * std::log10(test::energyOf(stretchOf(band, 0.2, 0.1)));
    for (double seconds = 0.3; seconds < 2.2; seconds += 0.1) {
        const double level = 10 * std::log10(test::energyOf(stretchOf(band, seconds, 0.1)));
        EXPECT_NEAR(level - start, -60 * (seconds - 0.2) / 2.33, 3) << "at " << seconds << " s";
    }
}

TEST(HallReverb, HasNoModeThatRingsAboveItsNeighbours)
{
    const auto highest = [](const Response& response) {
        const auto bands = test::ringing(response);
        return *std::max_element(bands.begin(), bands.end());
    };
    EXPECT_LT(highest(hall()), 6);

    // The measure tells: one mode that starts 60 dB below the impulse, but takes
    // twice as long to die away.
    Response withMode = hall();
    for (std::size_t n = 0; n < withMode.left.size(); ++n) {
        const double seconds = double(n) / 48'000;
        const double mode = 0.001 * std::pow(10, -3 * seconds / 4.6) * std::sin(2 * std::numbers::pi * 620 * seconds);
        withMode.left[n] += static_cast<float>(mode);
        withMode.right[n] += static_cast<float>(mode);
    }
    EXPECT_GT(highest(withMode), 6);
}

TEST(HallReverb, BecomesDenseBeforeATenthOfASecond)
{
    const auto densityAt = [](double seconds) { return test::echoDensity(stretchOf(hall().left, seconds, 0.02)); };
    EXPECT_GT(densityAt(0.06), 0.8);
    for (const double seconds : {0.1, 0.2, 0.5, 1.0})
        EXPECT_NEAR(densityAt(seconds), 1, 0.15) << "at " << seconds << " s";
}

TEST(HallReverb, IsWide)
{
    const auto alike = [](const Response& response, double start, double seconds) {
        return std::abs(test::correlation(stretchOf(response.left, start, seconds), stretchOf(response.right, start, seconds)));
    };
    // What is the same on both sides, and what comes from one side only.
    for (const Response& response : {hall(), respond(1, 0), respond(0, 1)}) {
        EXPECT_LT(alike(response, 0, 0.1), 0.2);
        EXPECT_LT(alike(response, 0.1, 2), 0.2);
    }
    for (const double hertz : {500.0, 1'000.0, 2'000.0, 4'000.0, 8'000.0})
        EXPECT_LT(std::abs(test::correlation(test::bandOf(hall().left, hertz), test::bandOf(hall().right, hertz))), 0.2) << hertz;
}

TEST(HallReverb, AnswersFromBothSidesToEither)
{
    const Response fromLeft = respond(1, 0);
    const double balance = 10 * std::log10(test::energyOf(fromLeft.left) / test::energyOf(fromLeft.right));
    EXPECT_GT(balance, 0); // the first reflections come from where the sound is
    EXPECT_LT(balance, 6);
}

TEST(HallReverb, IsAsLoudAsWhatEntersIt)
{
    Samples impulse(hall().left.size());
    impulse[0] = 1;
    const double entering = test::energyOf(test::bandOf(impulse, 1'000));
    for (const Samples* side : {&hall().left, &hall().right})
        EXPECT_NEAR(10 * std::log10(test::energyOf(test::bandOf(*side, 1'000)) / entering), 0, 0.5);
}

TEST(HallReverb, WaitsForTheFirstWalls)
{
    EXPECT_EQ(test::peakOf(stretchOf(hall().left, 0, 0.02)), 0);
    EXPECT_GT(test::peakOf(stretchOf(hall().left, 0.02, 0.005)), 0.001F);
}

TEST(HallReverb, CrossfadesLinearlyBetweenDryAndWet)
{
    const Samples left = test::noise(1, 4);
    const Samples right = test::noise(1, 5);
    const auto through = [&](double wet) {
        Response response{left, right};
        HallReverb(wet).process(response.left, response.right);
        return response;
    };
    const Response wet = through(1);
    const Response part = through(0.7);
    for (std::size_t n = 0; n < left.size(); ++n) {
        ASSERT_NEAR(part.left[n], 0.3F * left[n] + 0.7F * wet.left[n], 1e-5);
        ASSERT_NEAR(part.right[n], 0.3F * right[n] + 0.7F * wet.right[n], 1e-5);
    }
    EXPECT_EQ(through(0).left, left); // to the bit
    EXPECT_EQ(through(0).right, right);
}

TEST(HallReverb, DoesNotDependOnTheSizeOfTheBlocks)
{
    const Samples input = test::noise(0.5, 5);
    Response whole{input, input};
    HallReverb(0.5).process(whole.left, whole.right);
    Response pieces{input, input};
    HallReverb reverb(0.5);
    for (std::size_t first = 0, size = 1; first < input.size(); first += size, size = size % 1'000 + 7) {
        const std::size_t count = std::min(size, input.size() - first);
        reverb.process(std::span(pieces.left).subspan(first, count), std::span(pieces.right).subspan(first, count));
    }
    for (std::size_t n = 0; n < input.size(); ++n)
        ASSERT_EQ(pieces.left[n], whole.left[n]) << "frame " << n;
    EXPECT_EQ(pieces.right, whole.right);
}

TEST(HallReverb, LetsNoDirectCurrentBuildUp)
{
    Response response{Samples(48'000 * 5, 0.5F), Samples(48'000 * 5, 0.5F)};
    HallReverb(1).process(response.left, response.right);
    EXPECT_LT(test::peakOf(stretchOf(response.left, 4, 1)), 1e-3F);
}

TEST(HallReverb, EndsInTrueSilence)
{
    Response response{test::noise(0.1, 6), test::noise(0.1, 7)};
    response.left.resize(48'000 * 30);
    response.right.resize(48'000 * 30);
    HallReverb(0.5).process(response.left, response.right);
    EXPECT_GT(test::peakOf(stretchOf(response.left, 2, 1)), 0);
    EXPECT_EQ(test::peakOf(stretchOf(response.left, 29, 1)), 0);
    EXPECT_EQ(test::peakOf(stretchOf(response.right, 29, 1)), 0);
}

TEST(HallReverb, SoundsAsItDid)
{
    // What the other tests measure leaves room for many halls; this is the one.
    const auto few = [](const Samples& samples) {
        Samples picked;
        for (std::size_t i = 500; i < 60'000; i += 2'477)
            picked.push_back(samples[i]);
        return picked;
    };
    const Response left = respond(1, 0);
    const Response right = respond(0, 1);
    const Samples leftFromLeft = {0.0F,          0.00234269F,   -0.00157263F,  0.00483841F,   -0.00337113F,
                                  0.000431807F,  -0.000589351F, 0.000832877F,  0.000921715F,  0.000634266F,
                                  -0.000584611F, -0.000301713F, -0.000629533F, -4.56764e-05F, 0.000262677F,
                                  -1.23394e-06F, 0.000214994F,  -5.66952e-05F, -0.000223183F, 0.000208865F,
                                  -0.000101188F, -9.17752e-05F, 6.22321e-06F,  -8.45358e-05F, -2.00056e-05F};
    const Samples rightFromLeft = {0.0F,          0.0F,          -0.000709276F, -0.00278303F,  0.000167852F,
                                   0.00106866F,   0.00055188F,   0.00140211F,   0.00209969F,   0.00113067F,
                                   0.000805682F,  0.000453625F,  0.000138398F,  -8.91994e-05F, 0.000312359F,
                                   5.57583e-05F,  -0.00022848F,  -0.000184692F, -0.000118318F, -6.51772e-05F,
                                   -2.41192e-05F, -1.48083e-06F, -5.47881e-05F, 8.96119e-05F,  -0.000102751F};
    const Samples leftFromRight = {0.0F,          0.0F,          0.00213032F,  -0.00204144F,  0.000181031F,
                                   -0.000352192F, -0.000569148F, 0.000370183F, -0.00158313F,  -1.71466e-05F,
                                   -0.000814786F, -0.000218969F, -0.00014389F, -0.000806987F, -0.000672591F,
                                   -1.51361e-05F, -6.19405e-05F, 0.000139338F, -0.000107867F, 0.000237994F,
                                   4.91118e-05F,  5.88026e-06F,  5.84478e-05F, -6.94211e-05F, 8.91952e-05F};
    const Samples rightFromRight = {0.0F,          0.000569963F, 0.00102793F,   0.001023F,     -0.0053891F,
                                    -0.0014233F,   -0.00240977F, -0.000646718F, 0.000335832F,  1.06108e-05F,
                                    -0.000140811F, 0.000355397F, -0.000981137F, 0.000541555F,  -0.000210104F,
                                    -0.000405601F, 0.000111236F, 0.00023154F,   -0.000232806F, 3.81943e-05F,
                                    5.92588e-05F,  0.000243958F, 0.00012544F,   7.25215e-06F,  -1.05798e-05F};
    constexpr float kNear = 2e-7F;
    EXPECT_THAT(few(left.left), testing::Pointwise(testing::FloatNear(kNear), leftFromLeft));
    EXPECT_THAT(few(left.right), testing::Pointwise(testing::FloatNear(kNear), rightFromLeft));
    EXPECT_THAT(few(right.left), testing::Pointwise(testing::FloatNear(kNear), leftFromRight));
    EXPECT_THAT(few(right.right), testing::Pointwise(testing::FloatNear(kNear), rightFromRight));
}
