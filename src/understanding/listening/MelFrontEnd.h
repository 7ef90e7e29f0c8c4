#pragma once

#include <memory>
#include <span>
#include <vector>

namespace cv::hal {
struct DFT1D;
}

namespace tonequill {

// Turns 16 kHz mono samples into log-mel frames, block by block: periodic Hann
// windows of 25 ms every 10 ms, magnitude of a 512-point FFT, 64 mel bands from
// 125 to 7500 Hz, ln(mel + 0.001). The networks were trained on exactly this.
// The frames don't depend on how the samples are cut into blocks. One thread.
class MelFrontEnd {
public:
    static constexpr int kSampleRate = 16000;
    static constexpr int kFrameSamples = 400;
    static constexpr int kHopSamples = 160;
    static constexpr int kBands = 64;

    MelFrontEnd();
    MelFrontEnd(const MelFrontEnd&) = delete;
    MelFrontEnd& operator=(const MelFrontEnd&) = delete;

    // Takes samples and appends the frames that they complete to `frames`,
    // kBands values each. REQUIRES: finite samples.
    void add(std::span<const float> samples, std::vector<float>& frames);

private:
    void frame(const float* samples, float* out);

    std::shared_ptr<cv::hal::DFT1D> m_transform; // has room of its own: for one frame at a time
    std::vector<float> m_pending;                // samples that later frames still need
    std::vector<double> m_padded;
    std::vector<double> m_spectrum;
};

} // namespace tonequill
