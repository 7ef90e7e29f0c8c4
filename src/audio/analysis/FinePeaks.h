#pragma once

#include "base/Progress.h"

#include <QString>

#include <vector>

namespace tonequill {

// The peaks of a sound close enough together that a wave has its true shape at
// the largest zoom. Amplitudes are linear, of the mono mix.
struct FinePeaks {
    // 64 widths of a large window, at two device pixels each.
    static constexpr int kMost = 1 << 17;

    std::vector<float> values; // at most about kMost
    double hopSeconds = 0;

    // Reads the whole file; any thread. Throws AudioFileError, Cancelled.
    static FinePeaks read(const QString& path, const Progress& progress);
};

} // namespace tonequill
