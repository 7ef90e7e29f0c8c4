#include "understanding/MelFrontEnd.h"

#include <opencv2/core.hpp>

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

} // namespace

MelFrontEnd::MelFrontEnd() : m_window(kFrameSamples), m_bands(kBands), m_padded(kFftSize), m_spectrum(kFftSize)
{
    for (int i = 0; i < kFrameSamples; ++i)
        m_window[static_cast<std::size_t>(i)] =
            static_cast<float>(0.5 - 0.5 * std::cos(2 * std::numbers::pi * i / kFrameSamples));

    // Triangles that are linear in mel; the bin at 0 Hz belongs to none.
    const double low = melOf(kLowestHertz);
    const double step = (melOf(kHighestHertz) - low) / (kBands + 1);
    for (int band = 0; band < kBands; ++band) {
        Band& made = m_bands[static_cast<std::size_t>(band)];
        for (int bin = 1; bin < kBins; ++bin) {
            const double place = (melOf(double(bin) * kSampleRate / kFftSize) - low) / step - band;
            const double weight = std::min(place, 2 - place);
            if (weight <= 0)
                continue;
            if (made.weights.empty())
                made.firstBin = bin;
            made.weights.push_back(static_cast<float>(weight));
        }
    }
}

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
    for (std::size_t i = 0; i < kFrameSamples; ++i)
        m_padded[i] = static_cast<double>(samples[i] * m_window[i]);
    // In 32 bits the noise of the transform would show in quiet bands beside a loud one.
    const cv::Mat input(1, kFftSize, CV_64F, m_padded.data());
    cv::Mat output(1, kFftSize, CV_64F, m_spectrum.data());
    cv::dft(input, output);
    // Packed: re 0, re 1, im 1, re 2, im 2, … re 256.
    const auto* packed = output.ptr<double>();
    float magnitude[kBins] = {};
    for (int bin = 1; bin < kBins - 1; ++bin) {
        const double real = packed[2 * bin - 1];
        const double imaginary = packed[2 * bin];
        magnitude[bin] = static_cast<float>(std::sqrt(real * real + imaginary * imaginary));
    }
    magnitude[kBins - 1] = static_cast<float>(std::abs(packed[kFftSize - 1]));
    for (const Band& band : m_bands) {
        float sum = 0;
        for (std::size_t i = 0; i < band.weights.size(); ++i)
            sum += band.weights[i] * magnitude[static_cast<std::size_t>(band.firstBin) + i];
        *out++ = std::log(sum + kLogOffset);
    }
}

} // namespace tonequill
