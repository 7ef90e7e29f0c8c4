#pragma once

#include "understanding/listening/MelFrontEnd.h"

#include <functional>
#include <span>
#include <vector>

namespace tonequill {

// Cuts a stream of 16 kHz mono samples into the patches that a network takes:
// 96 frames every 48, and a last one that ends with the sound where half a hop
// or more would go unheard. Samples that are missing for one patch are zeros.
// One thread.
class PatchStream {
public:
    using Take = std::function<void(std::span<const float> patch)>;

    explicit PatchStream(Take take) : m_take(std::move(take)) {}

    void add(std::span<const float> samples);
    // REQUIRES: nothing is added afterwards.
    void finish();

private:
    MelFrontEnd m_frontEnd;
    std::vector<float> m_frames; // from the start of the patch that comes next
    std::vector<float> m_last;   // the patch before, for the one at the end
    Take m_take;
};

} // namespace tonequill
