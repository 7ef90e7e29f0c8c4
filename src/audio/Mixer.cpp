#include "audio/Mixer.h"

#include "audio/EffectRenderer.h"
#include "audio/SampleMemory.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

// This file is compiled with -O3: its loops are written to be vectorised.

namespace tonequill {

namespace {

constexpr float kPeakLimit = 0.98F; // -0.18 dBFS

// Frames that are mixed at a time: both channels of that many stay in the
// processor's cache while all pieces are added to them.
constexpr qint64 kBlockFrames = 8'192;

// No machine has the memory for more, and sums of frames stay in range.
constexpr double kMaxFrames = 0x1p48;

qint64 startFrame(const Mixer::Piece& piece)
{
    const double frames = std::max(0.0, piece.offset) * EffectRenderer::format.sampleRate; // 0 for what is no number
    return static_cast<qint64>(std::min(frames, kMaxFrames));
}

void add(const float* __restrict from, float gain, float* __restrict into, qint64 count)
{
    for (qint64 i = 0; i < count; ++i)
        into[i] += gain * from[i];
}

float largestMagnitude(const float* samples, qint64 count, float largest)
{
    constexpr qint64 kLanes = 16; // one running maximum would make each comparison wait for the last
    std::array<float, kLanes> lanes;
    lanes.fill(largest);
    qint64 i = 0;
    for (; i + kLanes <= count; i += kLanes)
        for (qint64 lane = 0; lane < kLanes; ++lane) {
            const float magnitude = std::abs(samples[i + lane]);
            float& soFar = lanes[static_cast<std::size_t>(lane)];
            soFar = magnitude > soFar ? magnitude : soFar;
        }
    for (; i < count; ++i)
        lanes[0] = std::max(lanes[0], std::abs(samples[i]));
    return *std::max_element(lanes.begin(), lanes.end());
}

// Adds up all pieces and gives the largest magnitude of the sum.
float sum(std::span<const Mixer::Piece> pieces, AudioBuffer& mix)
{
    float peak = 0;
    for (qint64 blockStart = 0; blockStart < mix.frameLength(); blockStart += kBlockFrames) {
        const qint64 blockEnd = std::min(blockStart + kBlockFrames, mix.frameLength());
        for (int channel = 0; channel < mix.channelCount(); ++channel) {
            float* const into = mix.channel(channel).data();
            for (const Mixer::Piece& piece : pieces) {
                const qint64 start = startFrame(piece);
                const qint64 first = std::max(start, blockStart);
                const qint64 last = std::min(start + piece.buffer->frameLength(), blockEnd);
                if (first < last)
                    add(piece.buffer->channel(channel).data() + (first - start), piece.gain, into + first, last - first);
            }
            peak = largestMagnitude(into + blockStart, blockEnd - blockStart, peak);
        }
    }
    return peak;
}

} // namespace

std::optional<AudioBuffer> Mixer::mix(std::span<const Piece> pieces)
{
    qint64 total = 0;
    for (const Piece& piece : pieces) {
        Q_ASSERT(piece.buffer && piece.buffer->format() == EffectRenderer::format);
        total = std::max(total, startFrame(piece) + piece.buffer->frameLength());
    }
    if (total < 1)
        return std::nullopt;
    try {
        AudioBuffer mix = allocateFrames(EffectRenderer::format, total);
        mix.setFrameLength(total);
        const float peak = sum(pieces, mix);
        if (peak > kPeakLimit)
            for (int channel = 0; channel < mix.channelCount(); ++channel)
                for (float& sample : mix.channel(channel))
                    sample *= kPeakLimit / peak;
        return mix;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

} // namespace tonequill
