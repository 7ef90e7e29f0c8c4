#pragma once

#include "audio/analysis/AudioAnalyzer.h"

#include <QString>
#include <QUuid>

#include <optional>
#include <vector>

namespace tonequill {

// A part of a sound that is worth cutting out.
struct CutCandidate {
    QUuid id;             // identity for the list
    double start = 0;     // seconds
    double end = 0;       // seconds
    float peakDb = 0;     // highest peak inside, in dBFS
    float score = 0;      // what the list is ranked by
    bool isBest = false;  // the first of a ranked list
    bool isWhole = false; // stands for the whole sound without its silent ends
    std::optional<QString> label;

    bool operator==(const CutCandidate&) const = default;
};

inline size_t qHash(const CutCandidate& candidate, size_t seed = 0)
{
    return qHash(candidate.id, seed);
}

// Proposes parts of a recording from its envelope alone, preferring loud events
// that stand out of their surroundings and last a while. Pure but for the fresh
// ids; linear in the length of the envelope (bench/EngineParts.cpp). Any thread.
namespace SmartCutter {

// The parts, best first: at most maxCount events, and the trimmed whole where
// there are several events and none of them is nearly that long. Where nothing
// stands out, the one item is the plain full length; the list is never empty.
// REQUIRES: maxCount >= 1; a.rms and a.peak are of one length.
std::vector<CutCandidate> candidates(const AudioAnalysis& a, int maxCount);

// The best maxCount of `list` by score, equal ones in their order, the first of
// them marked as the best. REQUIRES: maxCount >= 0.
std::vector<CutCandidate> ranked(std::vector<CutCandidate> list, int maxCount);

} // namespace SmartCutter
} // namespace tonequill
