#pragma once

#include "base/Progress.h"

#include <QString>

#include <vector>

namespace tonequill::WaveformPeaks {

// Reads `path` into `bins` peaks in 0…1, normalised so that the largest is 1
// (all 0 for silence). Empty for bins < 1 or a file that cannot be read. Throws
// Cancelled and nothing else. Any thread.
std::vector<float> compute(const QString& path, int bins, const Progress* progress = nullptr);

} // namespace tonequill::WaveformPeaks
