#include "ui/wave/WaveGeometry.h"

#include "base/TimeText.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tonequill::WaveGeometry {

double View::span() const
{
    return std::max(endSeconds - startSeconds, 0.001);
}

double View::xOf(double seconds) const
{
    return (seconds - startSeconds) / span() * width;
}

double View::secondsAt(double x) const
{
    return startSeconds + x / width * span();
}

double rulerStep(const View& view, double spacing)
{
    constexpr std::array kSteps{0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1,  0.2,  0.5,  1.0,   2.0,
                                5.0,   10.0,  15.0,  30.0, 60.,  120., 300., 600., 900., 1800., 3600.};
    const double wanted = view.span() / view.width * spacing;
    const auto* step = std::find_if(kSteps.begin(), kSteps.end(), [wanted](double each) { return each >= wanted; });
    return step != kSteps.end() ? *step : std::ceil(wanted / kSteps.back()) * kSteps.back();
}

std::vector<Tick> rulerTicks(const View& view, double spacing)
{
    const double step = rulerStep(view, spacing);
    const double half = step / 2;
    std::vector<Tick> ticks;
    // Counted in whole halves, so that no rounding adds up.
    const auto first = std::int64_t(std::ceil(view.startSeconds / half - 1e-6));
    const auto last = std::int64_t(std::floor((view.startSeconds + view.span()) / half + 1e-6));
    for (std::int64_t i = first; i <= last; ++i) {
        const double seconds = double(i) * half;
        ticks.push_back({view.xOf(seconds), i % 2 == 0 ? TimeText::place(seconds, step) : QString()});
    }
    return ticks;
}

std::vector<float> columns(std::span<const float> values, double hopSeconds, const View& view)
{
    std::vector<float> result(std::size_t(std::max(std::ceil(view.width - 0.01), 0.0)), 0.0f);
    if (values.empty())
        return result;
    const double count = double(values.size());
    for (std::size_t column = 0; column < result.size(); ++column) {
        // The stretch of the column, in hops.
        const double from = view.secondsAt(double(column)) / hopSeconds;
        const double to = view.secondsAt(double(column + 1)) / hopSeconds;
        if (to <= 0 || from >= count)
            continue;
        if (to - from < 1) {
            // A value stands for the middle of its hop.
            const double at = std::clamp((from + to) / 2 - 0.5, 0.0, count - 1);
            const auto left = std::size_t(at);
            const std::size_t right = std::min(left + 1, values.size() - 1);
            result[column] = std::lerp(values[left], values[right], float(at - double(left)));
            continue;
        }
        const auto begin = values.begin() + std::ptrdiff_t(std::max(from, 0.0));
        const auto end = values.begin() + std::ptrdiff_t(std::clamp(std::ceil(to), 1.0, count));
        result[column] = begin < end ? *std::max_element(begin, end) : 0;
    }
    return result;
}

} // namespace tonequill::WaveGeometry
