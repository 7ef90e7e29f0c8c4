#pragma once

#include <QString>

#include <vector>

namespace tonequill::WaveformPeaks {

// Reads `path` into `bins` peaks in 0…1, normalised so that the largest is 1
// (all 0 for silence). Empty for bins < 1 or a file that cannot be read; it
// never throws. Any thread.
std::vector<float> compute(const QString& path, int bins);

} // namespace tonequill::WaveformPeaks
