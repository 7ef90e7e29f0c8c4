// How long does it take to find the best parts of an hour? The bar is 10 ms, for
// whatever the hour contains.

#include "Measure.h"
#include "audio/analysis/SmartCutter.h"

#include <cmath>

using namespace tonequill;

int main()
{
    constexpr int kHops = 360'000;
    struct Shape {
        const char* name;
        double (*levelDb)(int hop);
    };
    static std::uint32_t dice = 1;
    const std::vector<Shape> shapes = {
        {"claps in a room", [](int hop) { return hop % 200 < 20 ? -10.0 - hop % 200 : -55.0; }},
        {"a level tone", [](int) { return -10.0; }},
        {"slowly rising", [](int hop) { return -39 + hop * 1e-4; }},
        {"slowly falling", [](int hop) { return -1 - hop * 1e-4; }},
        {"40,000 events", [](int hop) { return hop % 9 == 0 ? -10.0 : -25.0; }},
        {"noise",
         [](int) {
             dice = dice * 1'664'525 + 1'013'904'223;
             return -40.0 + (dice >> 8) * 40.0 / (1 << 24);
         }},
    };
    for (const Shape& shape : shapes) {
        AudioAnalysis a;
        a.hopSeconds = 0.01;
        a.duration = kHops * 0.01;
        for (int hop = 0; hop < kHops; ++hop) {
            a.rms.push_back(static_cast<float>(std::pow(10, shape.levelDb(hop) / 20)));
            a.peak.push_back(a.rms.back() * 1.4F);
        }
        std::size_t found = 0;
        const auto cost = bench::best(9, [&] { return bench::costOf([&] { found = SmartCutter::candidates(a, 6).size(); }); });
        std::printf("%-16s %6.2f ms, %zu proposed (bar 10 ms: %s)\n", shape.name, cost.cpuSeconds * 1e3, found,
                    bench::verdict(cost.cpuSeconds <= 0.010));
    }
    return bench::exitCode();
}
