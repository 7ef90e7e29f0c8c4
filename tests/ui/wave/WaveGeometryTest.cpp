#include "ui/wave/WaveGeometry.h"

#include "support/Printing.h"

#include <QStringList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tonequill;
using namespace tonequill::WaveGeometry;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

QString labels(const std::vector<Tick>& ticks)
{
    QStringList texts;
    for (const Tick& tick : ticks)
        texts << (tick.isMajor() ? tick.label : u"'"_s);
    return texts.join(u' ');
}

} // namespace

TEST(WaveGeometry, TimeAndPlaceAreEachOthersInverse)
{
    const View view{2, 6, 800};
    EXPECT_EQ(view.xOf(2), 0);
    EXPECT_EQ(view.xOf(3), 200);
    EXPECT_EQ(view.xOf(1), -200);
    EXPECT_DOUBLE_EQ(view.secondsAt(view.xOf(4.321)), 4.321);
}

TEST(WaveGeometry, AnEmptyStretchCountsAsAMillisecond)
{
    EXPECT_EQ((View{0, 0, 100}.span()), 0.001);
    EXPECT_EQ((View{3, 1, 100}.span()), 0.001);
}

TEST(WaveGeometry, TheRulerHasRoomForItsLabels)
{
    for (const double seconds : {0.03, 0.4, 7.0, 61.0, 600.0, 7200.0, 400000.0}) {
        for (const double width : {200.0, 566.0, 828.0, 4000.0}) {
            const View view{0, seconds, width};
            EXPECT_GE(view.xOf(rulerStep(view, 72)), 71.999) << seconds << " s on " << width;
        }
    }
}

TEST(WaveGeometry, ARulerOfSevenSecondsCountsSeconds)
{
    const auto ticks = rulerTicks({0, 6.98, 828}, 72);
    EXPECT_EQ(labels(ticks), u"0:00 ' 0:01 ' 0:02 ' 0:03 ' 0:04 ' 0:05 ' 0:06 '"_s);
    EXPECT_NEAR(ticks[2].x, 828 / 6.98, 1e-9);
}

TEST(WaveGeometry, AZoomedRulerStartsAtTheFirstMarkInView)
{
    const auto ticks = rulerTicks({1.03, 1.58, 400}, 72);
    EXPECT_EQ(labels(ticks), u"' 0:01.1 ' 0:01.2 ' 0:01.3 ' 0:01.4 ' 0:01.5 '"_s);
    EXPECT_GE(ticks.front().x, 0);
    EXPECT_LE(ticks.back().x, 400);
}

TEST(WaveGeometry, AColumnShowsTheLargestValueThatFallsIntoIt)
{
    const std::vector<float> values{0.1f, 0.9f, 0.2f, 0.3f, 0.4f, 0.0f, 0.0f, 0.7f};
    EXPECT_THAT(columns(values, 0.5, {0, 4, 4}), ElementsAre(0.9f, 0.3f, 0.4f, 0.7f));
}

TEST(WaveGeometry, AValueWiderThanAColumnIsJoinedToItsNeighbours)
{
    const std::vector<float> values{0.0f, 1.0f};
    const auto result = columns(values, 1, {0, 2, 8});
    ASSERT_EQ(result.size(), 8u);
    EXPECT_EQ(result[0], 0);
    EXPECT_EQ(result[7], 1);
    EXPECT_TRUE(std::is_sorted(result.begin(), result.end()));
    EXPECT_NEAR(result[3], 0.375, 1e-6);
}

TEST(WaveGeometry, NothingIsShownBesideTheSound)
{
    const std::vector<float> values{0.5f, 0.5f};
    EXPECT_THAT(columns(values, 1, {-2, 4, 6}), ElementsAre(0, 0, 0.5f, 0.5f, 0, 0));
    EXPECT_THAT(columns({}, 1, {0, 4, 3}), ElementsAre(0, 0, 0));
}
