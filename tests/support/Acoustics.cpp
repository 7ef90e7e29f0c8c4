#include "support/Acoustics.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tonequill::test {

namespace {

// Levels in dB, from 80 Hz to 12 kHz.
std::vector<double> narrowBands(std::span<const float> samples)
{
    constexpr std::size_t kSize = 65'536;
    const auto power = powerSpectrum(samples.first(kSize), kSize);
    std::vector<double> levels;
    for (double low = 80; low < 12'000;) {
        const double high = std::max(low * std::exp2(1.0 / 24), low + 8);
        const auto first = static_cast<std::ptrdiff_t>(low * kSize / 48'000);
        const auto last = static_cast<std::ptrdiff_t>(high * kSize / 48'000);
        const double sum = std::accumulate(power.begin() + first, power.begin() + last, 0.0);
        levels.push_back(10 * std::log10(sum / static_cast<double>(last - first)));
        low = high;
    }
    return levels;
}

} // namespace

Response responseOf(const std::function<void(std::span<float>, std::span<float>)>& room, float left, float right)
{
    constexpr std::size_t kFrames = 48'000 * 6;
    Response response{Samples(kFrames), Samples(kFrames)};
    response.left[0] = left;
    response.right[0] = right;
    room(response.left, response.right);
    return response;
}

std::span<const float> stretchOf(const Samples& samples, double startSeconds, double seconds)
{
    return std::span(samples).subspan(static_cast<std::size_t>(startSeconds * 48'000),
                                      static_cast<std::size_t>(seconds * 48'000));
}

double echoDensity(std::span<const float> stretch)
{
    const double deviation = std::sqrt(energyOf(stretch) / static_cast<double>(stretch.size()));
    const auto outside =
        std::count_if(stretch.begin(), stretch.end(), [&](float sample) { return std::abs(sample) > deviation; });
    constexpr double kGaussian = 0.3173;
    return static_cast<double>(outside) / static_cast<double>(stretch.size()) / kGaussian;
}

std::vector<double> ringing(const Response& response)
{
    std::vector<double> sums;
    int count = 0;
    for (const Samples* side : {&response.left, &response.right})
        for (const double seconds : {0.3, 0.9, 1.5, 2.1}) {
            const auto levels = narrowBands(stretchOf(*side, seconds, 1.4));
            sums.resize(levels.size());
            for (std::size_t i = 2; i + 2 < levels.size(); ++i)
                sums[i] += levels[i] - (levels[i - 2] + levels[i - 1] + levels[i + 1] + levels[i + 2]) / 4;
            ++count;
        }
    for (double& sum : sums)
        sum /= count;
    return sums;
}

} // namespace tonequill::test
