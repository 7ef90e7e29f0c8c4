#pragma once

#include <QtGlobal>

namespace tonequill {

// Loops over many samples that take several at a time.

// The sum of the squares, good to a millionth of itself.
float sumOfSquares(const float* samples, qint64 count);

// The largest magnitude; 0 for no samples. REQUIRES: every sample is a number.
float largestMagnitude(const float* samples, qint64 count);

} // namespace tonequill
