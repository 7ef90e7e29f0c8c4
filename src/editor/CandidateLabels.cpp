#include "editor/CandidateLabels.h"

#include "understanding/naming/SoundNamer.h"

namespace tonequill::CandidateLabels {

namespace {

// Beside SmartCutter's scores, which are decibels of loudness and standing out.
constexpr double kEffectBonus = 24;
constexpr float kVoiceAndMusicPenalty = 12;
constexpr int kMostCandidates = 7; // six events and the whole

} // namespace

std::vector<CutCandidate> label(std::vector<CutCandidate> candidates, const Listen& listen)
{
    if (candidates.size() < 2)
        return candidates;
    for (CutCandidate& candidate : candidates) {
        const auto heard = listen(candidate.start, candidate.end);
        if (!heard)
            continue;
        candidate.label = SoundNamer::pretty(heard->name);
        if (voiceAndMusic().contains(heard->name))
            candidate.score -= kVoiceAndMusicPenalty;
        else
            candidate.score += float(heard->confidence * kEffectBonus);
    }
    return SmartCutter::ranked(std::move(candidates), kMostCandidates);
}

} // namespace tonequill::CandidateLabels
