#pragma once

#include "base/Progress.h"
#include "platform/media/AudioBuffer.h"

#include <memory>
#include <optional>
#include <span>

// Sums rendered pieces onto one timeline of 48,000 Hz and two channels.
namespace tonequill::Mixer {

struct Piece {
    std::shared_ptr<const AudioBuffer> buffer; // in EffectRenderer::format
    double offset = 0;                         // seconds from the start of the mix; below 0 counts as 0
    float gain = 1;                            // linear
};

// One buffer that reaches to the end of the last piece. Where the sum passes
// 0.98, the whole of it is scaled down to that peak: nothing is ever clipped,
// and nothing is raised. None for no pieces, no frames or no memory for them.
// Throws Cancelled. A pure function (bench/EngineMix.cpp); any thread.
std::optional<AudioBuffer> mix(std::span<const Piece> pieces, const Progress* progress = nullptr);

} // namespace tonequill::Mixer
