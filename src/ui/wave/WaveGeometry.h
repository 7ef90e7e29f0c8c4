#pragma once

#include <QString>

#include <cstdint>
#include <span>
#include <vector>

// Where things lie on a wave and its ruler. Pure functions; times are seconds,
// positions are pixels of whatever scale `width` is in.
namespace tonequill::WaveGeometry {

// A stretch of a sound laid over a width. REQUIRES: width > 0.
struct View {
    double startSeconds = 0;
    double endSeconds = 0; // a stretch of less than a millisecond counts as one
    double width = 0;

    double span() const;
    double xOf(double seconds) const;
    double secondsAt(double x) const;
};

// One mark of the ruler; a minor one has no label.
struct Tick {
    double x = 0;
    QString label;
    bool isMajor() const { return !label.isEmpty(); }
};

// Seconds between two labels: the smallest of 1, 2, 5 times a power of ten (and
// of the clock's 15, 30 seconds and minutes) that leaves them `spacing` apart.
double rulerStep(const View& view, double spacing);

// The marks inside the view: a label every step, and a minor mark half-way.
std::vector<Tick> rulerTicks(const View& view, double spacing);

// What each pixel column of `width` shows of `values`, one for each `hopSeconds`:
// the largest value that falls into the column, or, where a value is wider than
// a column, the line between its neighbours. REQUIRES: hopSeconds > 0.
std::vector<float> columns(std::span<const float> values, double hopSeconds, const View& view);

} // namespace tonequill::WaveGeometry
