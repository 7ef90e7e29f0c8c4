#include "platform/playback/DeviceClock.h"

#include "support/Sound.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace std::chrono_literals;

namespace {

constexpr double kRate = 48'000;
constexpr qint64 kBlock = 960; // 20 ms
const DeviceClock::Time kStart(1000s);

} // namespace

TEST(DeviceClock, IsOneBlockBehindWhatWasTaken)
{
    DeviceClock clock(kRate);
    EXPECT_EQ(clock.heardFrame(kStart), 0);
    clock.take(kBlock, kStart);
    EXPECT_EQ(clock.takenFrames(), kBlock);
    EXPECT_EQ(clock.heardFrame(kStart + 10ms), 0);
    EXPECT_NEAR(clock.heardFrame(kStart + 20ms), 0, 1e-3);
    EXPECT_NEAR(clock.heardFrame(kStart + 30ms), kBlock / 2, 1e-3);
}

TEST(DeviceClock, StandsWhenNothingIsTakenAnyMore)
{
    DeviceClock clock(kRate);
    clock.take(kBlock, kStart);
    EXPECT_EQ(clock.heardFrame(kStart + 1h), kBlock);
    clock.take(kBlock, kStart + 2h); // the device is there again
    EXPECT_EQ(clock.heardFrame(kStart + 2h), kBlock) << "what was heard was heard";
    EXPECT_NEAR(clock.heardFrame(kStart + 2h + 30ms), kBlock + kBlock / 2, 1e-3);
}

TEST(DeviceClock, SmoothsTheTrembleOfTheCalls)
{
    constexpr double kTrembleFrames = 0.008 * kRate;
    DeviceClock clock(kRate);
    test::Dice dice(1);
    double worst = 0;
    for (int i = 0; i < 500; ++i) {
        const DeviceClock::Time call = kStart + 20ms * i;
        clock.take(kBlock, call + std::chrono::microseconds(dice.roll(8'000)));
        if (i > 100)
            worst =
                std::max(worst, std::abs(clock.heardFrame(call + 15ms) - double(kBlock * i - kBlock / 4) + kTrembleFrames / 2));
    }
    EXPECT_LT(worst, kTrembleFrames / 4);
}
