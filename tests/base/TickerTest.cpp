#include "base/Ticker.h"

#include "fakes/FakeClock.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace std::chrono_literals;

TEST(Ticker, TicksSixtyTimesASecondUntilItIsStopped)
{
    test::FakeClock clock;
    int ticks = 0;
    Ticker ticker(clock, [&ticks] { ++ticks; });
    clock.advance(1s);
    EXPECT_EQ(ticks, 0);
    ticker.start();
    clock.advance(160ms);
    EXPECT_EQ(ticks, 10);
    ticker.stop();
    clock.advance(1s);
    EXPECT_EQ(ticks, 10);
}

TEST(Ticker, StartedAgainItTicksNoFaster)
{
    test::FakeClock clock;
    int ticks = 0;
    Ticker ticker(clock, [&ticks] { ++ticks; });
    ticker.start();
    ticker.start();
    clock.advance(160ms);
    EXPECT_EQ(ticks, 10);
}

TEST(Ticker, MayBeStoppedByItsOwnTickAndGo)
{
    test::FakeClock clock;
    int ticks = 0;
    auto ticker = std::make_unique<Ticker>(clock, [&ticks] { ++ticks; });
    std::unique_ptr<Ticker> stopping;
    stopping = std::make_unique<Ticker>(clock, [&stopping] { stopping->stop(); });
    ticker->start();
    stopping->start();
    clock.advance(16ms);
    ticker.reset();
    clock.advance(1s);
    EXPECT_EQ(ticks, 1);
}
