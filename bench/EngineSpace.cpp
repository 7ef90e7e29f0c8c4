// How many times faster than it sounds are the echo and the hall? The bar is 200.

#include "Measure.h"
#include "audio/effects/FeedbackDelay.h"
#include "audio/effects/HallReverb.h"

#include <array>

using namespace tonequill;

int main()
{
    constexpr double kSeconds = 60;
    std::array<std::vector<float>, 2> sides;
    std::uint32_t dice = 1;
    for (auto& side : sides)
        for (int n = 0; n < static_cast<int>(kSeconds * 48'000); ++n) {
            dice = dice * 1'664'525 + 1'013'904'223;
            side.push_back(static_cast<float>(dice >> 8) * 0x1p-24F - 0.5F);
        }
    const auto echo = bench::best(5, [&] {
        auto copy = sides;
        return bench::costOf([&] {
            for (auto& side : copy)
                FeedbackDelay({.delaySeconds = 0.24, .feedback = 0.38, .cutoffHz = 7'000, .wet = 0.55}).process(side);
        });
    });
    const auto hall = bench::best(5, [&] {
        auto copy = sides;
        return bench::costOf([&] { HallReverb(0.7).process(copy[0], copy[1]); });
    });
    const double times = kSeconds / (echo.cpuSeconds + hall.cpuSeconds);
    std::printf("echo %.0f × real time, hall %.0f ×, both %.0f × (bar 200: %s)\n", kSeconds / echo.cpuSeconds,
                kSeconds / hall.cpuSeconds, times, bench::verdict(times >= 200));
    return bench::exitCode();
}
