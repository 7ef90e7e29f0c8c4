#include "audio/analysis/SmartCutter.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>

using namespace tonequill;

namespace {

float amplitude(double db)
{
    return static_cast<float>(std::pow(10, db / 20));
}

// An envelope of 10 ms hops with these levels, its peaks 3 dB above the RMS.
AudioAnalysis envelope(const std::vector<double>& levelsDb)
{
    AudioAnalysis a;
    a.sampleRate = 48'000;
    a.hopSeconds = 0.01;
    a.duration = 0.01 * static_cast<double>(levelsDb.size());
    for (const double level : levelsDb) {
        a.rms.push_back(amplitude(level));
        a.peak.push_back(amplitude(level + 3));
    }
    return a;
}

std::vector<double> levels(int count, double db)
{
    return std::vector<double>(static_cast<std::size_t>(count), db);
}

std::vector<double> operator+(std::vector<double> one, const std::vector<double>& other)
{
    one.insert(one.end(), other.begin(), other.end());
    return one;
}

constexpr double kSilence = -120;

void expectFallback(const AudioAnalysis& a)
{
    const auto list = SmartCutter::candidates(a, 6);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_FALSE(list[0].id.isNull());
    EXPECT_EQ(list[0].start, 0);
    EXPECT_EQ(list[0].end, a.duration);
    EXPECT_EQ(list[0].peakDb, 0);
    EXPECT_EQ(list[0].score, 0);
    EXPECT_TRUE(list[0].isBest);
    EXPECT_FALSE(list[0].isWhole);
    EXPECT_FALSE(list[0].label);
}

int eventsIn(const std::vector<CutCandidate>& list)
{
    return static_cast<int>(std::count_if(list.begin(), list.end(), [](const CutCandidate& part) { return !part.isWhole; }));
}

} // namespace

TEST(SmartCutter, GivesThePlainFullLengthWhereNothingCanBeFound)
{
    expectFallback(envelope({}));
    expectFallback(envelope({0}));
    expectFallback(envelope({0, 0}));
    expectFallback(envelope(levels(300, kSilence)));
    expectFallback(envelope(levels(300, -80.1))); // an RMS of 0.0001 is silence, too
    EXPECT_EQ(SmartCutter::candidates(envelope(levels(300, -79.9)), 6).front().score, 2 * 2.0F - 76.9F);
}

TEST(SmartCutter, OffersOneClickWithoutAWhole)
{
    const auto list = SmartCutter::candidates(envelope(levels(100, kSilence) + levels(1, -6) + levels(100, kSilence)), 6);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_TRUE(list[0].isBest);
    EXPECT_FALSE(list[0].isWhole);
    EXPECT_NEAR(list[0].start, 0.98, 1e-9); // 2 hops of lead
    EXPECT_NEAR(list[0].end, 1.04, 1e-9);   // the tail of 4 hops counts from the last loud one
    EXPECT_NEAR(list[0].peakDb, -3, 1e-4);
    EXPECT_NEAR(list[0].score, 2 * 0.06 - 3 + 0.25 * 40, 1e-4);
}

TEST(SmartCutter, FollowsTheTailFurtherThanTheAttack)
{
    // 3 dB a hop up and down: 30 dB before the peak the part begins, 42 dB after it ends.
    std::vector<double> ramp = levels(40, -90);
    for (int hop = 30; hop > 0; --hop)
        ramp.push_back(-3.0 * hop);
    const auto peakAt = static_cast<double>(ramp.size());
    for (int hop = 0; hop <= 30; ++hop)
        ramp.push_back(-3.0 * hop);
    const auto list = SmartCutter::candidates(envelope(ramp + levels(40, -90)), 6);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_NEAR(list[0].start, (peakAt - 9 - 2) * 0.01, 1e-9); // 9 hops are above -30 dB
    EXPECT_NEAR(list[0].end, (peakAt + 14 + 4) * 0.01, 1e-9);  // 14 hops down are not below -42 dB
}

TEST(SmartCutter, TakesAShortDipInTheTailForPartOfTheEvent)
{
    const auto before = levels(50, kSilence) + levels(20, 0);
    const auto withDip = [&](int hops) {
        return SmartCutter::candidates(envelope(before + levels(hops, kSilence) + levels(3, -41) + levels(60, kSilence)), 6);
    };
    EXPECT_NEAR(withDip(4)[0].end, (50 + 20 + 4 + 3 - 1 + 4) * 0.01, 1e-9);
    EXPECT_NEAR(withDip(5)[0].end, (50 + 20 - 1 + 4) * 0.01, 1e-9);
}

TEST(SmartCutter, PartsEventsAtDeepDipsOnly)
{
    const auto bursts = [](double gapDb) {
        return SmartCutter::candidates(
            envelope(levels(40, kSilence) + levels(20, -6) + levels(20, gapDb) + levels(20, -6) + levels(40, kSilence)), 6);
    };
    EXPECT_EQ(eventsIn(bursts(-6 - 15)), 2);
    EXPECT_EQ(eventsIn(bursts(-6 - 10.01)), 2);
    EXPECT_EQ(eventsIn(bursts(-6 - 9.99)), 1);
    const auto one = bursts(-6 - 5);
    ASSERT_EQ(one.size(), 1U);
    EXPECT_NEAR(one[0].start, 0.38, 1e-9); // the earlier of two equal peaks
    EXPECT_NEAR(one[0].end, 1.03, 1e-9);
}

TEST(SmartCutter, KeepsTheLouderOfTwoMergedPeaks)
{
    // The part is measured from the louder peak, 31 dB over what is before it.
    const auto list =
        SmartCutter::candidates(envelope(levels(40, kSilence) + levels(20, -31.5) + levels(20, 0) + levels(40, kSilence)), 6);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_NEAR(list[0].start, 0.58, 1e-9);
    EXPECT_NEAR(list[0].end, 0.83, 1e-9);
}

TEST(SmartCutter, KeepsPeaksApartByNineHops)
{
    const auto pair = [](int distance) {
        return SmartCutter::candidates(envelope(levels(40, kSilence) + levels(1, -6) + levels(distance - 1, kSilence) +
                                                levels(1, -6) + levels(40, kSilence)),
                                       6);
    };
    EXPECT_EQ(eventsIn(pair(9)), 2);
    const auto near = pair(8); // the earlier one wins, and the later is no peak of its own
    ASSERT_EQ(eventsIn(near), 1);
    EXPECT_NEAR(near[0].start, 0.38, 1e-9);
}

TEST(SmartCutter, TakesALevelToneForOneEventFromItsStart)
{
    const auto list = SmartCutter::candidates(envelope(levels(500, -12)), 6);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].start, 0);
    EXPECT_EQ(list[0].end, 5.0);
    EXPECT_NEAR(list[0].score, 2 * 2 - 9, 1e-4); // two seconds at most count, and it stands out of nothing
}

TEST(SmartCutter, LeavesOutWhatIsFarBelowTheLoudest)
{
    const auto second = [](double db) {
        return eventsIn(SmartCutter::candidates(
            envelope(levels(40, kSilence) + levels(5, 0) + levels(80, kSilence) + levels(5, db) + levels(40, kSilence)), 6));
    };
    EXPECT_EQ(second(-39.9), 2);
    EXPECT_EQ(second(-40.1), 1);
}

TEST(SmartCutter, OffersTheWholeWithoutItsSilentEnds)
{
    const auto list = SmartCutter::candidates(
        envelope(levels(100, kSilence) + levels(10, -6) + levels(200, kSilence) + levels(10, 0) + levels(100, kSilence)), 6);
    ASSERT_EQ(list.size(), 3U);
    const auto whole = std::find_if(list.begin(), list.end(), [](const CutCandidate& part) { return part.isWhole; });
    ASSERT_NE(whole, list.end());
    EXPECT_NEAR(whole->start, 0.98, 1e-9);
    EXPECT_NEAR(whole->end, 3.25, 1e-9); // 6 hops behind the last audible one, exclusive
    EXPECT_NEAR(whole->peakDb, 3, 1e-4);
    EXPECT_NEAR(whole->score, 3 - 6, 1e-4);
    EXPECT_FALSE(whole->isBest);
    EXPECT_NEAR(list[0].start, 3.08, 1e-9); // the louder event is the best
    EXPECT_TRUE(list[0].isBest);
}

TEST(SmartCutter, OffersNoWholeWhereAPartIsNearlyThatLong)
{
    // A burst, a long event and nothing else: 0.9 of 3.6 s is 3.24 s.
    const auto with = [](int hops) {
        const auto list = SmartCutter::candidates(
            envelope(levels(20, kSilence) + levels(3, 0) + levels(397 - hops, kSilence) + levels(hops, 0) + levels(20, kSilence)),
            6);
        return std::any_of(list.begin(), list.end(), [](const CutCandidate& part) { return part.isWhole; });
    };
    EXPECT_TRUE(with(200));
    EXPECT_TRUE(with(350));  // 355 of 407 hops
    EXPECT_FALSE(with(370)); // 375 of 407 hops
}

TEST(SmartCutter, GivesAtMostOneMoreThanAskedFor)
{
    std::vector<double> many;
    for (int burst = 0; burst < 30; ++burst)
        many = many + levels(50, kSilence) + levels(10, -30 + burst);
    for (const int maxCount : {1, 2, 6, 100}) {
        const auto list = SmartCutter::candidates(envelope(many), maxCount);
        EXPECT_LE(list.size(), static_cast<std::size_t>(maxCount) + 1);
        EXPECT_EQ(eventsIn(list), std::min(maxCount, 30));
        EXPECT_EQ(list.size() > 1 && std::any_of(list.begin(), list.end(), [](const auto& part) { return part.isWhole; }),
                  maxCount > 1);
        EXPECT_TRUE(std::is_sorted(list.begin(), list.end(), [](const auto& a, const auto& b) { return a.score > b.score; }));
        for (std::size_t i = 0; i < list.size(); ++i)
            EXPECT_EQ(list[i].isBest, i == 0);
    }
}

TEST(SmartCutter, NeverEndsBehindTheSound)
{
    AudioAnalysis a = envelope(levels(50, kSilence) + levels(20, 0));
    a.duration = 0.6955; // the last hop is incomplete
    EXPECT_EQ(SmartCutter::candidates(a, 6)[0].end, 0.6955);
}

TEST(SmartCutter, SkipsEventsThatAreTooShort)
{
    // The loud last hop of three: 2 hops of lead are all there is.
    const auto list = SmartCutter::candidates(envelope({kSilence, kSilence, 0}), 6);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].score, 0); // the fallback
    EXPECT_EQ(SmartCutter::candidates(envelope({kSilence, kSilence, 0, kSilence}), 6)[0].end, 0.04);
}

TEST(SmartCutter, RanksStablyAndMarksTheBest)
{
    std::vector<CutCandidate> list(4);
    list[0].score = 1;
    list[0].start = 10;
    list[0].isBest = true;
    list[1].score = 5;
    list[1].start = 11;
    list[2].score = 1;
    list[2].start = 12;
    list[3].score = 5;
    list[3].start = 13;
    const auto best = SmartCutter::ranked(list, 3);
    ASSERT_EQ(best.size(), 3U);
    EXPECT_EQ(best[0].start, 11);
    EXPECT_EQ(best[1].start, 13);
    EXPECT_EQ(best[2].start, 10);
    EXPECT_TRUE(best[0].isBest);
    EXPECT_FALSE(best[1].isBest);
    EXPECT_FALSE(best[2].isBest);
    EXPECT_TRUE(SmartCutter::ranked({}, 3).empty());
    EXPECT_TRUE(SmartCutter::ranked(list, 0).empty());
}

TEST(SmartCutter, TakesTheWorstShapesOfAnHour)
{
    // The worst shapes: level tones (every ninth hop a peak that is merged into
    // the first), rising and falling ramps, bursts, and a saw that never dips.
    const auto shaped = [](int count, auto level) {
        std::vector<double> db;
        for (int hop = 0; hop < count; ++hop)
            db.push_back(level(hop));
        return envelope(db);
    };
    const std::vector<std::function<double(int)>> shapes = {
        [](int) { return -10.0; },
        [](int hop) { return -39.0 + hop * 1e-4; },
        [](int hop) { return -1.0 - hop * 1e-4; },
        [](int hop) { return hop % 20 < 2 ? -10.0 : -60.0; },
        [](int hop) { return hop % 11 == 0 ? -10.0 : -15.0; },
    };
    // Quadratic work would take minutes here; what it does take, bench/EngineParts.cpp tells.
    constexpr int kHopsOfAnHour = 360'000;
    for (const auto& shape : shapes) {
        const auto found = SmartCutter::candidates(shaped(kHopsOfAnHour, shape), 6);
        EXPECT_FALSE(found.empty());
        EXPECT_LE(found.size(), 7U); // and the trimmed whole
    }
}

TEST(SmartCutter, BeginsAPartThirtyDecibelsBelowItsPeak)
{
    const auto startAfter = [](double quietDb) {
        const auto list = SmartCutter::candidates(
            envelope(levels(50, kSilence) + levels(5, quietDb) + levels(10, 0) + levels(50, kSilence)), 6);
        return list.front().start;
    };
    EXPECT_NEAR(startAfter(-29.9), 0.48, 1e-9); // the quiet hops belong to it
    EXPECT_NEAR(startAfter(-30.1), 0.53, 1e-9);
}

TEST(SmartCutter, TrimsTheWholeWhereItIsThirtyFiveDecibelsBelowThePeak)
{
    const auto startAfter = [](double quietDb) {
        const auto list = SmartCutter::candidates(envelope(levels(100, kSilence) + levels(30, quietDb) + levels(10, 0) +
                                                           levels(200, kSilence) + levels(10, 0) + levels(100, kSilence)),
                                                  6);
        const auto whole = std::find_if(list.begin(), list.end(), [](const CutCandidate& part) { return part.isWhole; });
        return whole == list.end() ? -1.0 : whole->start;
    };
    EXPECT_NEAR(startAfter(-34.9), 0.98, 1e-9);
    EXPECT_NEAR(startAfter(-35.1), 1.28, 1e-9);
}

TEST(SmartCutter, OffersNoWholeFromNineTenthsOn)
{
    const auto isOffered = [](int hops) {
        const auto list = SmartCutter::candidates(
            envelope(levels(20, kSilence) + levels(3, 0) + levels(397 - hops, kSilence) + levels(hops, 0) + levels(20, kSilence)),
            6);
        return std::any_of(list.begin(), list.end(), [](const CutCandidate& part) { return part.isWhole; });
    };
    EXPECT_TRUE(isOffered(361));  // 366 of 407 hops, 0.899 of them
    EXPECT_FALSE(isOffered(362)); // 0.902
}

TEST(SmartCutter, TakesAPartOfFourHops)
{
    const auto list = SmartCutter::candidates(envelope({kSilence, kSilence, 0, kSilence}), 6);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_NEAR(list[0].score, 2 * 0.04 + 3 + 0.25 * 40, 1e-4); // that of the fallback is 0
}

TEST(SmartCutter, PartsEventsAtADipOfExactlyTenDecibels)
{
    const float tenDown = amplitude(-10);
    ASSERT_EQ(20 * std::log10(tenDown), -10.0F); // so that the test asks what it is to ask
    AudioAnalysis a = envelope(levels(40, kSilence) + levels(20, 0) + levels(20, -10) + levels(20, 0) + levels(40, kSilence));
    EXPECT_EQ(eventsIn(SmartCutter::candidates(a, 6)), 2);
    std::replace(a.rms.begin(), a.rms.end(), tenDown, std::nextafter(tenDown, 1.0F));
    EXPECT_EQ(eventsIn(SmartCutter::candidates(a, 6)), 1);
}

TEST(SmartCutter, CountsAPeakOfNothingAsAHundredDecibelsDown)
{
    const auto withPeaks = [](float peak) {
        AudioAnalysis a =
            envelope(levels(50, kSilence) + levels(10, 0) + levels(100, kSilence) + levels(10, 0) + levels(50, kSilence));
        std::fill(a.peak.begin(), a.peak.end(), peak);
        return SmartCutter::candidates(a, 6);
    };
    const auto whole = [](const std::vector<CutCandidate>& list) {
        return *std::find_if(list.begin(), list.end(), [](const CutCandidate& part) { return part.isWhole; });
    };
    EXPECT_NEAR(withPeaks(0.000011F)[0].peakDb, -99.172, 1e-3);
    EXPECT_EQ(withPeaks(0.00001F)[0].peakDb, -100);
    EXPECT_EQ(withPeaks(0.000005F)[0].peakDb, -100);
    EXPECT_EQ(withPeaks(0)[0].peakDb, -100);
    EXPECT_NEAR(whole(withPeaks(0.000011F)).peakDb, -99.172, 1e-3);
    EXPECT_NEAR(whole(withPeaks(0.000011F)).score, -105.172, 1e-3);
    EXPECT_EQ(whole(withPeaks(0.000005F)).peakDb, -100);
    EXPECT_NEAR(whole(withPeaks(0.000005F)).score, -106, 1e-4);
    EXPECT_NEAR(whole(withPeaks(0)).score, -106, 1e-4);
}

TEST(SmartCutter, TakesAnRmsOfATenThousandthForSilence)
{
    AudioAnalysis a = envelope(levels(300, 0));
    std::fill(a.rms.begin(), a.rms.end(), 0.0001F);
    expectFallback(a);
    a.rms[100] = std::nextafter(0.0001F, 1.0F);
    EXPECT_NE(SmartCutter::candidates(a, 6)[0].score, 0);
}

TEST(SmartCutter, TakesTheLargestNumbersToAskFor)
{
    const AudioAnalysis a =
        envelope(levels(50, kSilence) + levels(10, 0) + levels(100, kSilence) + levels(10, 0) + levels(50, kSilence));
    EXPECT_EQ(SmartCutter::candidates(a, std::numeric_limits<int>::max()).size(), 3U);
}
