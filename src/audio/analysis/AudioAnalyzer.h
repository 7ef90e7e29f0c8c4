#pragma once

#include "base/Progress.h"
#include "base/UserError.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace tonequill {

// A file that has no frame to analyse.
class AnalysisError : public UserError {
public:
    AnalysisError();
};

// A sound read once into a compact envelope. Amplitudes are linear.
struct AudioAnalysis {
    double duration = 0;     // seconds, from the file's length
    double sampleRate = 0;   // hertz, the file's own
    double hopSeconds = 0;   // about 0.01
    std::vector<float> rms;  // per hop, of the mono mix; the last hop may be shorter
    std::vector<float> peak; // per hop, largest |sample| of the mono mix; as long as rms
    QStringList descriptors; // what describe() says

    // At most `bins` values in 0…1, each the square root of the largest peak of
    // its stretch. Empty without peaks or for bins = 0. REQUIRES: bins >= 0.
    std::vector<float> thumbnail(int bins) const;
};

namespace AudioAnalyzer {

// Reads the whole file once, in blocks; any thread. Throws AnalysisError for a
// file without frames, AudioFileError as it comes, and Cancelled.
AudioAnalysis analyze(const QString& path, Progress* progress = nullptr);

// The words for an envelope: length, attack, brightness, in that order.
// `crossings` counts the sign changes of the mono mix.
QStringList describe(const std::vector<float>& rms, qint64 crossings, double duration);

} // namespace AudioAnalyzer
} // namespace tonequill
