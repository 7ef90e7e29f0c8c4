#include "audio/analysis/MonoEnvelope.h"

#include "audio/SampleLoops.h"

#include <algorithm>
#include <cmath>
#include <limits>

// This file is compiled with -O3: its loops are written to be vectorised (see
// bench/Analysis.cpp).

namespace tonequill {

namespace {

constexpr float kLargest = std::numeric_limits<float>::max();

// `samples` has one more sample before its start.
qint64 signChanges(const float* samples, qint64 count)
{
    int changes = 0; // a hop is short
    for (qint64 i = 0; i < count; ++i)
        changes += static_cast<int>((samples[i - 1] >= 0) != (samples[i] >= 0));
    return changes;
}

float rootMeanSquare(const float* samples, qint64 count)
{
    const float sum = sumOfSquares(samples, count);
    // The square of a float of a very large or very small magnitude is none.
    if (sum > 1e-30F && sum <= kLargest)
        return std::sqrt(sum / static_cast<float>(count));
    double exact = 0;
    for (qint64 i = 0; i < count; ++i)
        exact += static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
    return static_cast<float>(std::min(std::sqrt(exact / static_cast<double>(count)), static_cast<double>(kLargest)));
}

} // namespace

MonoEnvelope::MonoEnvelope(qint64 hopFrames, int channelCount, qint64 frames)
    : m_hopFrames(hopFrames),
      m_channelCount(channelCount),
      m_mono(static_cast<std::size_t>(hopFrames + 1))
{
    // A guess only: where a header exaggerates, memory comes as it is needed.
    constexpr qint64 kMaxReserved = 100 * 60 * 60 * 2; // two hours
    const auto hops = static_cast<std::size_t>(std::min(frames / hopFrames + 1, kMaxReserved));
    m_rms.reserve(hops);
    m_peak.reserve(hops);
}

void MonoEnvelope::add(std::span<const float* const> channels, qint64 frames)
{
    qint64 first = 0;
    while (first < frames) {
        const qint64 count = std::min(frames - first, m_hopFrames - m_inHop);
        float* __restrict mono = m_mono.data() + 1 + m_inHop;
        const float* left = channels[0] + first;
        if (m_channelCount == 1) {
            std::copy_n(left, count, mono);
        } else if (m_channelCount == 2) {
            const float* right = channels[1] + first;
            for (qint64 i = 0; i < count; ++i)
                mono[i] = (left[i] + right[i]) * 0.5F; // as exact as the division
        } else {
            std::copy_n(left, count, mono);
            for (std::size_t channel = 1; channel < channels.size(); ++channel)
                for (qint64 i = 0; i < count; ++i)
                    mono[i] += channels[channel][first + i];
            for (qint64 i = 0; i < count; ++i)
                mono[i] /= static_cast<float>(m_channelCount);
        }
        m_inHop += count;
        first += count;
        if (m_inHop == m_hopFrames)
            endHop();
    }
}

void MonoEnvelope::endHop()
{
    float* mono = m_mono.data() + 1;
    float peak = largestMagnitude(mono, m_inHop);
    if (!(peak <= kLargest)) { // the sum of the channels has left the range of floats
        for (qint64 i = 0; i < m_inHop; ++i)
            mono[i] = std::clamp(mono[i], -kLargest, kLargest);
        peak = kLargest;
    }
    m_crossings += signChanges(mono, m_inHop);
    m_rms.push_back(rootMeanSquare(mono, m_inHop));
    m_peak.push_back(peak);
    m_mono[0] = mono[m_inHop - 1];
    m_inHop = 0;
}

void MonoEnvelope::finish()
{
    if (m_inHop > 0)
        endHop();
}

} // namespace tonequill
