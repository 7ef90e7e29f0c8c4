#include "understanding/listening/PatchStream.h"

#include "understanding/listening/EventNetwork.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace tonequill;

namespace {

using Patches = std::vector<std::vector<float>>;

// A tone that never repeats, so that no two stretches are alike.
std::vector<float> sweep(std::size_t count)
{
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = static_cast<float>(0.4 * std::sin(1e-5 * double(i) * double(i) + 0.1 * double(i)));
    return samples;
}

Patches cut(const std::vector<float>& samples, std::size_t block)
{
    Patches patches;
    PatchStream stream([&](std::span<const float> patch) { patches.emplace_back(patch.begin(), patch.end()); });
    for (std::size_t i = 0; i < samples.size(); i += block)
        stream.add(std::span(samples).subspan(i, std::min(block, samples.size() - i)));
    stream.finish();
    return patches;
}

constexpr std::size_t samplesOf(std::size_t frames)
{
    return 400 + (frames - 1) * 160;
}

} // namespace

TEST(PatchStream, GivesTheSamePatchesHoweverTheSoundIsCutUp)
{
    const auto samples = sweep(51000);
    const Patches whole = cut(samples, samples.size());
    EXPECT_EQ(whole.size(), 6U); // 317 frames: from 0, 48, 96, 144, 192 and the end
    EXPECT_EQ(cut(samples, 1), whole);
    EXPECT_EQ(cut(samples, 333), whole);
}

TEST(PatchStream, StepsByHalfAPatchAndHearsTheEnd)
{
    const std::pair<std::size_t, std::size_t> cases[] = {{1, 1},   {96, 1},  {98, 1},  {119, 1}, {120, 2},
                                                         {143, 2}, {144, 2}, {167, 2}, {168, 3}, {192, 3}};
    for (const auto& [frames, patches] : cases)
        EXPECT_EQ(cut(sweep(samplesOf(frames)), 1000).size(), patches) << frames;
    // The last patch ends where the sound ends.
    const auto samples = sweep(samplesOf(130));
    const std::vector<float> end(samples.begin() + 34 * 160, samples.end());
    EXPECT_EQ(cut(samples, 1000).back(), cut(end, 1000).front());
}

TEST(PatchStream, FillsAShortSoundWithSilence)
{
    const Patches nothing = cut({}, 1);
    ASSERT_EQ(nothing.size(), 1U);
    ASSERT_EQ(nothing[0].size(), std::size_t(EventNetwork::kPatchValues));
    EXPECT_THAT(nothing[0], testing::Each(testing::FloatEq(std::log(0.001F))));

    auto padded = sweep(3000);
    const Patches brief = cut(padded, 100);
    padded.resize(samplesOf(96));
    EXPECT_EQ(brief, cut(padded, 100));
}
