#include "understanding/listening/PatchStream.h"

#include "understanding/listening/EventNetwork.h"

namespace tonequill {

namespace {

constexpr std::size_t kBands = MelFrontEnd::kBands;
constexpr std::size_t kPatchValues = EventNetwork::kPatchValues;
constexpr std::size_t kHopFrames = 48;
constexpr std::size_t kHopValues = kHopFrames * kBands;
constexpr std::size_t kPatchSamples =
    MelFrontEnd::kFrameSamples + (EventNetwork::kPatchFrames - 1) * std::size_t(MelFrontEnd::kHopSamples);

} // namespace

void PatchStream::add(std::span<const float> samples)
{
    m_frontEnd.add(samples, m_frames);
    while (m_frames.size() >= kPatchValues) {
        m_last.assign(m_frames.begin(), m_frames.begin() + std::ptrdiff_t(kPatchValues));
        m_take(m_last);
        m_frames.erase(m_frames.begin(), m_frames.begin() + std::ptrdiff_t(kHopValues));
    }
}

void PatchStream::finish()
{
    if (m_last.empty()) {
        const std::vector<float> silence(kPatchSamples, 0.0F);
        m_frontEnd.add(silence, m_frames);
        m_frames.resize(kPatchValues);
        m_take(m_frames);
        return;
    }
    // m_frames begins one hop after m_last; its first half is known to it.
    const std::size_t unheard = m_frames.size() - (kPatchValues - kHopValues);
    if (unheard < kHopValues / 2)
        return;
    std::vector<float> patch(m_last.begin() + std::ptrdiff_t(unheard), m_last.begin() + std::ptrdiff_t(kHopValues));
    patch.insert(patch.end(), m_frames.begin(), m_frames.end());
    m_take(patch);
}

} // namespace tonequill
