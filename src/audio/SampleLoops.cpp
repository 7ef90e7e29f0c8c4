#include "audio/SampleLoops.h"

#include <algorithm>
#include <array>
#include <cmath>

// This file is compiled with -O3: its loops are written to be vectorised (see
// bench/Analysis.cpp).

namespace tonequill {

namespace {

// Working on one number only would make each step wait for the last.
constexpr qint64 kLanes = 16;

} // namespace

float sumOfSquares(const float* samples, qint64 count)
{
    std::array<float, kLanes> lanes = {};
    qint64 i = 0;
    for (; i + kLanes <= count; i += kLanes)
        for (qint64 lane = 0; lane < kLanes; ++lane)
            lanes[static_cast<std::size_t>(lane)] += samples[i + lane] * samples[i + lane];
    float sum = 0;
    for (const float lane : lanes)
        sum += lane;
    for (; i < count; ++i)
        sum += samples[i] * samples[i];
    return sum;
}

float largestMagnitude(const float* samples, qint64 count)
{
    std::array<float, kLanes> lanes = {};
    qint64 i = 0;
    for (; i + kLanes <= count; i += kLanes)
        for (qint64 lane = 0; lane < kLanes; ++lane) {
            const float magnitude = std::abs(samples[i + lane]);
            float& largest = lanes[static_cast<std::size_t>(lane)];
            largest = magnitude > largest ? magnitude : largest;
        }
    float largest = 0;
    for (const float lane : lanes)
        largest = std::max(largest, lane);
    for (; i < count; ++i)
        largest = std::max(largest, std::abs(samples[i]));
    return largest;
}

} // namespace tonequill
