#include "understanding/listening/MelFrontEnd.h"

#include <opencv2/core.hpp>
#include <opencv2/core/hal/hal.hpp>
#include <opencv2/core/hal/interface.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tonequill {

namespace {

constexpr int kFftSize = 512;
constexpr int kBins = kFftSize / 2 + 1;
constexpr double kLowestHertz = 125;
constexpr double kHighestHertz = 7500;
constexpr float kLogOffset = 0.001F; // keeps silence finite

double melOf(double hertz)
{
    return 1127.0 * std::log1p(hertz / 700.0);
}

// The bins under one triangle and their weights.
struct Band {
    std::size_t firstBin = 0;
    std::vector<float> weights;
};

std::vector<float> hann()
{
    std::vector<float> window(MelFrontEnd::kFrameSamples);
    for (int i = 0; i < MelFrontEnd::kFrameSamples; ++i)
        window[static_cast<std::size_t>(i)] =
            static_cast<float>(0.5 - 0.5 * std::cos(2 * std::numbers::pi * i / MelFrontEnd::kFrameSamples));
    return window;
}

// Triangles that are linear in mel; the bin at 0 Hz belongs to none.
std::vector<Band> triangles()
{
    std::vector<Band> bands(MelFrontEnd::kBands);
    const double low = melOf(kLowestHertz);
    const double step = (melOf(kHighestHertz) - low) / (MelFrontEnd::kBands + 1);
    for (std::size_t band = 0; band < bands.size(); ++band) {
        for (std::size_t bin = 1; bin < kBins; ++bin) {
            const double place =
                (melOf(double(bin) * MelFrontEnd::kSampleRate / kFftSize) - low) / step - static_cast<double>(band);
            const double weight = std::min(place, 2 - place);
            if (weight <= 0)
                continue;
            if (bands[band].weights.empty())
                bands[band].firstBin = bin;
            bands[band].weights.push_back(static_cast<float>(weight));
        }
    }
    return bands;
}

std::shared_ptr<cv::hal::DFT1D> transform()
{
    bool needsBuffer = false; // to work in place, which isn't done here
    // In 32 bits the noise of the transform would show in quiet bands beside a loud one.
    return cv::hal::DFT1D::create(kFftSize, 1, CV_64F, CV_HAL_DFT_REAL_OUTPUT, &needsBuffer);
}

} // namespace

MelFrontEnd::MelFrontEnd() : m_transform(transform()), m_padded(kFftSize), m_spectrum(kFftSize)
{}

void MelFrontEnd::add(std::span<const float> samples, std::vector<float>& frames)
{
    m_pending.insert(m_pending.end(), samples.begin(), samples.end());
    std::size_t start = 0;
    while (m_pending.size() - start >= kFrameSamples) {
        frames.resize(frames.size() + kBands);
        frame(m_pending.data() + start, frames.data() + frames.size() - kBands);
        start += kHopSamples;
    }
    m_pending.erase(m_pending.begin(), m_pending.begin() + static_cast<std::ptrdiff_t>(start));
}

void MelFrontEnd::frame(const float* samples, float* out)
{
    static const std::vector<float> window = hann();
    static const std::vector<Band> bands = triangles();
    for (std::size_t i = 0; i < kFrameSamples; ++i)
        m_padded[i] = static_cast<double>(samples[i] * window[i]);
    m_transform->apply(reinterpret_cast<const uchar*>(m_padded.data()), reinterpret_cast<uchar*>(m_spectrum.data()));
    // Packed: re 0, re 1, im 1, re 2, im 2, … re 256.
    const double* packed = m_spectrum.data();
    float magnitude[kBins] = {};
    for (int bin = 1; bin < kBins - 1; ++bin) {
        const double real = packed[2 * bin - 1];
        const double imaginary = packed[2 * bin];
        magnitude[bin] = static_cast<float>(std::sqrt(real * real + imaginary * imaginary));
    }
    magnitude[kBins - 1] = static_cast<float>(std::abs(packed[kFftSize - 1]));
    for (const Band& band : bands) {
        float sum = 0;
        for (std::size_t i = 0; i < band.weights.size(); ++i)
            sum += band.weights[i] * magnitude[band.firstBin + i];
        *out++ = std::log(sum + kLogOffset);
    }
}

} // namespace tonequill
