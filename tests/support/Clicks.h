#pragma once

#include "support/Signal.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace tonequill::test {

// The loudest frame around `expected`: where a click is.
inline double clickNear(std::span<const float> samples, double expectedFrame)
{
    constexpr double kReach = 6'000;
    const auto first = static_cast<std::size_t>(std::max(0.0, expectedFrame - kReach));
    const auto last = std::min(samples.size(), static_cast<std::size_t>(expectedFrame + kReach));
    const auto window = samples.subspan(first, last - first);
    const auto isQuieter = [](float one, float other) { return std::abs(one) < std::abs(other); };
    return static_cast<double>(first) + double(std::max_element(window.begin(), window.end(), isQuieter) - window.begin());
}

// Short bursts of noise in silence, with their places.
struct Clicks {
    explicit Clicks(std::size_t apart)
    {
        const Samples burst = noise(0.002, 3);
        samples.resize(apart * 10);
        for (std::size_t place = apart; place + apart < samples.size(); place += apart + 317) {
            places.push_back(place);
            for (std::size_t i = 0; i < burst.size(); ++i)
                samples[place + i] = burst[i] * std::exp(-static_cast<float>(i) / 30);
        }
    }
    Samples samples;
    std::vector<std::size_t> places;
};

} // namespace tonequill::test
