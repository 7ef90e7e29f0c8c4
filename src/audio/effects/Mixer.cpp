#include "audio/effects/Mixer.h"

#include "audio/SampleLoops.h"
#include "audio/SampleMemory.h"
#include "audio/Stretches.h"
#include "audio/effects/EffectRenderer.h"

#include <algorithm>
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

// Adds up all pieces and gives the largest magnitude of the sum.
float sum(std::span<const Mixer::Piece> pieces, AudioBuffer& mix, const Progress* progress)
{
    float peak = 0;
    for (qint64 blockStart = 0; blockStart < mix.frameLength(); blockStart += kBlockFrames) {
        if (progress && progress->isCancelled())
            throw Cancelled();
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
            peak = std::max(peak, largestMagnitude(into + blockStart, blockEnd - blockStart));
        }
    }
    return peak;
}

} // namespace

std::optional<AudioBuffer> Mixer::mix(std::span<const Piece> pieces, const Progress* progress)
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
        const float peak = sum(pieces, mix, progress);
        if (peak > kPeakLimit)
            forEachStretch(total, progress, [&](qint64 first, qint64 count) {
                for (int channel = 0; channel < mix.channelCount(); ++channel)
                    for (float& sample : mix.channel(channel).subspan(std::size_t(first), std::size_t(count)))
                        sample *= kPeakLimit / peak;
            });
        return mix;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

} // namespace tonequill
