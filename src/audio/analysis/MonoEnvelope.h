#pragma once

#include <QtGlobal>

#include <span>
#include <vector>

namespace tonequill {

// Gathers the envelope of the mono mix from blocks of deinterleaved frames, hop
// by hop; hops run on across block borders. Amplitudes are linear.
class MonoEnvelope {
public:
    // `frames` is what will probably be added.
    // REQUIRES: hopFrames >= 1, channelCount >= 1, frames >= 0.
    MonoEnvelope(qint64 hopFrames, int channelCount, qint64 frames);

    // REQUIRES: channels.size() == channelCount.
    void add(std::span<const float* const> channels, qint64 frames);

    // Ends the last, incomplete hop by the frames that are in it.
    void finish();

    const std::vector<float>& rms() const { return m_rms; }
    const std::vector<float>& peak() const { return m_peak; }
    std::vector<float>& rms() { return m_rms; }
    std::vector<float>& peak() { return m_peak; }

    // How often the mono mix went from below 0 to 0 or above, or back.
    qint64 crossings() const { return m_crossings; }

private:
    void endHop();

    qint64 m_hopFrames;
    int m_channelCount;
    std::vector<float> m_mono; // of one hop at most, after the sample before it
    qint64 m_inHop = 0;
    qint64 m_crossings = 0;
    std::vector<float> m_rms;
    std::vector<float> m_peak;
};

} // namespace tonequill
