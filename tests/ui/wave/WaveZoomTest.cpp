#include "ui/wave/WaveZoom.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace tonequill;

namespace {

constexpr WaveZoom kTenSeconds{10, 800};

} // namespace

TEST(WaveZoom, ShowsTheWholeSoundAtFirst)
{
    const WaveZoom view = kTenSeconds;
    EXPECT_EQ(view.contentWidth(), 800);
    EXPECT_EQ(view.viewX(0), 0);
    EXPECT_EQ(view.viewX(10), 800);
    EXPECT_EQ(view.secondsAt(400), 5);
    EXPECT_FALSE(view.isScrollable());
}

TEST(WaveZoom, ASoundWithoutLengthCountsAsAMillisecond)
{
    const WaveZoom view{0, 800};
    EXPECT_EQ(view.contentX(0.001), 800);
    EXPECT_EQ(view.secondsAt(400), 0);
}

TEST(WaveZoom, AViewWithoutWidthStaysFinite)
{
    WaveZoom view{10, 0};
    EXPECT_EQ(view.secondsAt(3), 0);
    EXPECT_FALSE(view.zoomBy(2, 0));
    view.zoomTo(1, 2);
    EXPECT_EQ(view.scrollX, 0);
}

TEST(WaveZoom, ThePointUnderThePointerStays)
{
    WaveZoom view = kTenSeconds;
    for (const double factor : {2.0, 1.3, 4.0, 0.7}) {
        const double pointer = 300;
        const double before = view.secondsAt(pointer);
        EXPECT_TRUE(view.zoomBy(factor, view.scrollX + pointer));
        EXPECT_NEAR(view.secondsAt(pointer), before, 1e-9);
    }
}

TEST(WaveZoom, StopsAtSixtyFourAndAtOneWithoutAJump)
{
    WaveZoom view = kTenSeconds;
    EXPECT_TRUE(view.zoomBy(1000, 400));
    EXPECT_EQ(view.zoom, 64);
    const double scroll = view.scrollX;
    EXPECT_FALSE(view.zoomBy(1.5, scroll + 700));
    EXPECT_EQ(view.scrollX, scroll);
    EXPECT_TRUE(view.zoomBy(0.0001, scroll));
    EXPECT_EQ(view.zoom, 1);
    EXPECT_EQ(view.scrollX, 0);
    EXPECT_FALSE(view.zoomBy(0.5, 400));
    EXPECT_EQ(view.scrollX, 0);
}

TEST(WaveZoom, ADifferenceOfAThousandthIsNone)
{
    WaveZoom view = kTenSeconds;
    EXPECT_FALSE(view.zoomBy(1.001, 0));
    EXPECT_EQ(view.zoom, 1);
    EXPECT_TRUE(view.zoomBy(1.0011, 0));
    EXPECT_FALSE(view.zoomBy(std::numeric_limits<double>::quiet_NaN(), 0));
}

TEST(WaveZoom, StepsInAndOutAboutTheMiddle)
{
    WaveZoom view = kTenSeconds;
    view.zoomAtMiddle(WaveZoom::kStepIn);
    EXPECT_DOUBLE_EQ(view.zoom, 1.6);
    EXPECT_DOUBLE_EQ(view.secondsAt(400), 5);
    view.zoomAtMiddle(WaveZoom::kStepOut);
    EXPECT_DOUBLE_EQ(view.zoom, 1);
}

TEST(WaveZoom, TheSelectedPartFillsFourFifthsOfTheView)
{
    WaveZoom view = kTenSeconds;
    view.zoomTo(4, 5);
    EXPECT_DOUBLE_EQ(view.zoom, 8);
    EXPECT_DOUBLE_EQ(view.viewX(4), 80);
    EXPECT_DOUBLE_EQ(view.viewX(5), 720);
}

TEST(WaveZoom, ATinyPartIsShownAsFiveHundredths)
{
    WaveZoom tiny{1, 800};
    tiny.zoomTo(0.5, 0.51);
    WaveZoom small{1, 800};
    small.zoomTo(0.48, 0.53);
    EXPECT_NEAR(tiny.zoom, small.zoom, 1e-9);
    EXPECT_DOUBLE_EQ(tiny.zoom, 16);
    EXPECT_DOUBLE_EQ(tiny.viewX(0.505), 400);
}

TEST(WaveZoom, ThePartIsNotZoomedBeyondTheLimits)
{
    WaveZoom view{1000, 800};
    view.zoomTo(500, 500.1);
    EXPECT_EQ(view.zoom, 64);
    EXPECT_NEAR(view.viewX(500.05), 400, 1e-6);
    view.zoomTo(0, 1000);
    EXPECT_EQ(view.zoom, 1);
    EXPECT_EQ(view.scrollX, 0);
}

TEST(WaveZoom, APartAtTheVeryStartDoesNotScrollBeforeIt)
{
    WaveZoom view = kTenSeconds;
    view.zoomTo(0, 1);
    EXPECT_EQ(view.scrollX, 0);
    view.showWhole();
    EXPECT_EQ(view.zoom, 1);
}

TEST(WaveZoom, TheViewFollowsThePlayheadByPages)
{
    WaveZoom view = kTenSeconds;
    view.zoomBy(10, 0);
    EXPECT_FALSE(view.follow(0.5));
    EXPECT_FALSE(view.follow(0.9625)); // 770 of 800: the last place before the page turns
    EXPECT_TRUE(view.follow(0.97));
    EXPECT_DOUBLE_EQ(view.viewX(0.97), 0.15 * 800);
    EXPECT_FALSE(view.follow(1.2));
    EXPECT_TRUE(view.follow(0.1)); // a loop has begun anew, left of the view
    EXPECT_EQ(view.scrollX, 0);
}

TEST(WaveZoom, NothingScrollsWhileTheWholeIsShown)
{
    WaveZoom view = kTenSeconds;
    EXPECT_FALSE(view.follow(9.99));
    EXPECT_EQ(view.scrollX, 0);
}

TEST(WaveZoom, ScrollsWithinTheContent)
{
    WaveZoom view = kTenSeconds;
    view.zoomBy(2, 0);
    view.scrollTo(-5);
    EXPECT_EQ(view.scrollX, 0);
    view.scrollTo(5000);
    EXPECT_EQ(view.scrollX, 800);
    EXPECT_EQ(view.secondsAt(900), 10);
    EXPECT_EQ(view.secondsAt(-900), 0);
}

TEST(WaveZoom, AChangeOfTheWindowKeepsWhatIsShown)
{
    WaveZoom view = kTenSeconds;
    view.zoomBy(4, 1000);
    view.scrollTo(1200);
    const double left = view.secondsAt(0);
    view.resize(500);
    EXPECT_DOUBLE_EQ(view.secondsAt(0), left);
    EXPECT_EQ(view.zoom, 4);
}

TEST(WaveZoom, APartOutsideOfTheViewIsBroughtToItsMiddle)
{
    WaveZoom view = kTenSeconds;
    view.zoomBy(10, 0);
    view.reveal(0.5, 3); // a piece of it is there
    EXPECT_EQ(view.scrollX, 0);
    view.reveal(6, 6.2);
    EXPECT_DOUBLE_EQ(view.viewX(6.1), 400);
    view.reveal(0.1, 0.2);
    EXPECT_EQ(view.scrollX, 0);
}

TEST(WaveZoom, ThePageTurnsThirtyPointsBeforeTheEdge)
{
    WaveZoom view = kTenSeconds;
    view.zoomBy(10, 0); // 800 points are a second
    EXPECT_FALSE(WaveZoom(view).follow(769.9 / 800));
    EXPECT_TRUE(WaveZoom(view).follow(770.1 / 800));
}
