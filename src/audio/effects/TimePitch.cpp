#include "audio/effects/TimePitch.h"

#include "audio/Stretches.h"

#include <rubberband/RubberBandStretcher.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace tonequill {

namespace {

using RubberBand::RubberBandStretcher;

// The finer engine (R3): pitches come out exact to 0.1 cents and transients
// within 4 ms, where the faster one (R2) is off by up to 40 cents and 25 ms. It
// takes two to three times as long (bench/EngineTimePitch.cpp). Formants are shifted
// along, since that is what turns a man's voice into a woman's: the vocal tract
// becomes shorter, too. One thread: what comes out may not depend on how many
// processors there are. Both channels are taken together, which keeps what is in
// the middle in the middle.
constexpr int kOptions = RubberBandStretcher::OptionProcessOffline | RubberBandStretcher::OptionEngineFiner |
                         RubberBandStretcher::OptionThreadingNever | RubberBandStretcher::OptionChannelsTogether |
                         RubberBandStretcher::OptionFormantShifted;

constexpr std::size_t kBlockFrames = 1'024;

// The engine gives nothing at all for less (measured: some 500 frames).
constexpr std::size_t kMinFrames = 4'096;

// How many frames too early the engine places a transient, seen before its last
// step, the resampling. It sounds as soon as the analysis windows reach it, and
// the further these are pulled apart, the earlier that is. Measured from clicks
// for stretches of 1 to 6; what is left is 4 ms (TimePitchTest).
double leadOf(double stretch)
{
    const double excess = std::max(0.0, stretch - 1);
    constexpr double kFramesOfMs = 48;
    return kFramesOfMs * (5.5 * excess + 0.27 * excess * excess);
}

// The source as the engine is given it: with silence before and after.
class PaddedSource {
public:
    PaddedSource(const AudioBuffer& source, std::size_t before, std::size_t after)
        : m_source(source),
          m_before(before),
          m_size(before + static_cast<std::size_t>(source.frameLength()) + after)
    {}

    std::size_t size() const { return m_size; }

    // The next block from `first` on; valid until the next call.
    std::size_t block(std::size_t first, std::array<const float*, 2>& channels)
    {
        const std::size_t count = std::min(kBlockFrames, m_size - first);
        const auto length = static_cast<std::size_t>(m_source.frameLength());
        if (first >= m_before && first + count <= m_before + length) {
            for (std::size_t side = 0; side < 2; ++side)
                channels[side] = m_source.channel(static_cast<int>(side)).data() + (first - m_before);
            return count;
        }
        for (std::size_t side = 0; side < 2; ++side) {
            const auto samples = m_source.channel(static_cast<int>(side));
            for (std::size_t i = 0; i < count; ++i) {
                const std::size_t frame = first + i;
                const bool isInside = frame >= m_before && frame < m_before + length;
                m_block[side][i] = isInside ? samples[frame - m_before] : 0.0F;
            }
            channels[side] = m_block[side].data();
        }
        return count;
    }

private:
    const AudioBuffer& m_source;
    std::size_t m_before;
    std::size_t m_size;
    std::array<std::array<float, kBlockFrames>, 2> m_block = {};
};

// Takes what the engine has ready, without the first frames, into a buffer.
class Output {
public:
    Output(AudioBuffer& out, std::size_t skipped, std::size_t wanted) : m_out(out), m_skipped(skipped), m_wanted(wanted) {}

    // REQUIRES: the engine has one or two channels; one goes to both sides.

    bool isFull() const { return m_written == m_wanted; }

    void take(const RubberBandStretcher& stretcher)
    {
        for (int ready = stretcher.available(); ready > 0; ready = stretcher.available()) {
            std::array<float*, 2> into = {m_block[0].data(), m_block[1].data()};
            const std::size_t got =
                stretcher.retrieve(into.data(), std::min<std::size_t>(kBlockFrames, static_cast<std::size_t>(ready)));
            const std::size_t dropped = std::min(m_skipped, got);
            m_skipped -= dropped;
            const std::size_t count = std::min(got - dropped, m_wanted - m_written);
            for (std::size_t side = 0; side < 2; ++side)
                std::copy_n(m_block[std::min(side, stretcher.getChannelCount() - 1)].data() + dropped, count,
                            m_out.channel(static_cast<int>(side)).data() + m_written);
            m_written += count;
        }
    }

private:
    AudioBuffer& m_out;
    std::size_t m_skipped;
    std::size_t m_wanted;
    std::size_t m_written = 0;
    std::array<std::array<float, kBlockFrames>, 2> m_block = {};
};

void stretch(PaddedSource source, std::size_t channelCount, double timeRatio, double pitchScale, Output& output,
             Progress* progress)
{
    RubberBandStretcher stretcher(48'000, channelCount, kOptions, timeRatio, pitchScale);
    stretcher.setExpectedInputDuration(source.size());
    stretcher.setMaxProcessSize(kBlockFrames);
    std::array<const float*, 2> channels = {};
    const auto forEachBlock = [&](auto visit) {
        for (std::size_t first = 0; first < source.size() && !output.isFull();) {
            if (progress && progress->isCancelled())
                throw Cancelled();
            const std::size_t count = source.block(first, channels);
            first += count;
            visit(count, first == source.size());
        }
    };
    forEachBlock([&](std::size_t count, bool isFinal) { stretcher.study(channels.data(), count, isFinal); });
    double done = 0;
    forEachBlock([&](std::size_t count, bool isFinal) {
        stretcher.process(channels.data(), count, isFinal);
        output.take(stretcher);
        done += static_cast<double>(count);
        if (progress)
            progress->set(done / static_cast<double>(source.size()));
    });
}

void copy(const AudioBuffer& in, AudioBuffer& out, const Progress* progress)
{
    forEachStretch(std::min(in.frameLength(), out.frameLength()), progress, [&](qint64 first, qint64 count) {
        for (int channel = 0; channel < 2; ++channel)
            std::copy_n(in.channel(channel).begin() + first, count, out.channel(channel).begin() + first);
    });
}

bool hasEqualChannels(const AudioBuffer& buffer, const Progress* progress)
{
    bool areEqual = true;
    forEachStretch(buffer.frameLength(), progress, [&](qint64 first, qint64 count) {
        const float* const left = buffer.channel(0).data() + first;
        areEqual = areEqual && std::equal(left, left + count, buffer.channel(1).data() + first);
    });
    return areEqual;
}

} // namespace

void TimePitch::apply(const AudioBuffer& in, double rate, double semitones, AudioBuffer& out, Progress* progress)
{
    Q_ASSERT(in.channelCount() == 2 && out.channelCount() == 2 && rate >= 0.25 && rate <= 4);
    if (in.frameLength() == 0)
        return;
    if (rate == 1 && semitones == 0) {
        copy(in, out, progress);
        return;
    }
    const double pitchScale = std::exp2(semitones / 12);
    const double lead = leadOf(pitchScale / rate) / pitchScale; // frames of the output
    const auto padding = static_cast<std::size_t>(std::ceil(lead * rate));
    const auto missing = kMinFrames - std::min(kMinFrames, static_cast<std::size_t>(in.frameLength()));
    const auto skipped = static_cast<std::size_t>(std::lround(static_cast<double>(padding) / rate - lead));
    const double wanted = std::round(static_cast<double>(in.frameLength()) / rate + lead);
    Output output(out, skipped, static_cast<std::size_t>(std::min(wanted, static_cast<double>(out.frameLength()))));
    const std::size_t channelCount = hasEqualChannels(in, progress) ? 1 : 2;
    stretch(PaddedSource(in, padding, std::max(padding, missing)), channelCount, 1 / rate, pitchScale, output, progress);
}

} // namespace tonequill
