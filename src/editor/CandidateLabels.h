#pragma once

#include "audio/analysis/SmartCutter.h"
#include "understanding/listening/HeardLabel.h"

#include <functional>
#include <optional>
#include <vector>

// How what is heard in each proposed part changes their order. Any thread.
namespace tonequill::CandidateLabels {

// The strongest label between two times in seconds; none where nothing is heard.
using Listen = std::function<std::optional<HeardLabel>(double start, double end)>;

// The candidates with their labels, ranked anew: a sound effect moves up by how
// sure it is, voice and music move down. Fewer than two come back as they are.
std::vector<CutCandidate> label(std::vector<CutCandidate> candidates, const Listen& listen);

} // namespace tonequill::CandidateLabels
