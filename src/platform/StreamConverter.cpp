#include "platform/StreamConverter.h"

#include <array>
#include <cmath>
#include <vector>

namespace tonequill {

namespace {

constexpr std::size_t kMaxConvertedChannels = 64;

// The very high quality of the soxr library: 28 bits, and the whole band up to
// 0.95 of the lower rate's half (21 kHz at 44.1 kHz).
constexpr double kPrecisionBits = 28;
constexpr double kPassband = 0.95;

// The most channels whose usual places the library can mix.
constexpr int kMaxPlacedChannels = 8;

// Where the library's own weights do not serve: one channel would lose 3 dB on
// its way to two, and of many channels nobody knows the places.
std::vector<double> ownWeights(int from, int to)
{
    std::vector<double> weights(static_cast<std::size_t>(from * to));
    for (int in = 0; in < from; ++in)
        for (int out = 0; out < to; ++out)
            if (from == 1 || in % to == out)
                weights[static_cast<std::size_t>(out * from + in)] = from == 1 ? 1.0 : 1.0 / ((from - out + to - 1) / to);
    return weights;
}

} // namespace

StreamConverter::StreamConverter(AudioFormat from, AudioFormat to) : m_to(to), m_result(to, 0)
{
    if (from == to)
        return;
    AVChannelLayout layoutFrom = {};
    AVChannelLayout layoutTo = {};
    av_channel_layout_default(&layoutFrom, from.channelCount);
    av_channel_layout_default(&layoutTo, to.channelCount);
    SwrContext* context = nullptr;
    const int result =
        swr_alloc_set_opts2(&context, &layoutTo, AV_SAMPLE_FMT_FLTP, static_cast<int>(std::lround(to.sampleRate)), &layoutFrom,
                            AV_SAMPLE_FMT_FLTP, static_cast<int>(std::lround(from.sampleRate)), 0, nullptr);
    m_resampler.reset(context);
    if (result < 0)
        throw std::bad_alloc();
    av_opt_set_int(context, "resampler", SWR_ENGINE_SOXR, 0);
    av_opt_set_double(context, "precision", kPrecisionBits, 0);
    av_opt_set_double(context, "cutoff", kPassband, 0);
    av_opt_set_double(context, "rematrix_maxval", 1, 0); // the sum of the weights
    const bool needsOwnWeights =
        from.channelCount != to.channelCount && (from.channelCount == 1 || from.channelCount > kMaxPlacedChannels);
    if (needsOwnWeights) {
        const auto weights = ownWeights(from.channelCount, to.channelCount);
        if (swr_set_matrix(context, weights.data(), from.channelCount) < 0)
            throw std::bad_alloc();
    }
    if (swr_init(context) < 0)
        throw std::bad_alloc();
}

const AudioBuffer& StreamConverter::convert(const AudioBuffer& buffer)
{
    if (!m_resampler)
        return buffer;
    std::array<const uint8_t*, kMaxConvertedChannels> channels = {};
    for (int channel = 0; channel < buffer.channelCount(); ++channel)
        channels[static_cast<std::size_t>(channel)] = reinterpret_cast<const uint8_t*>(buffer.channel(channel).data());
    return take(channels.data(), static_cast<int>(buffer.frameLength()));
}

const AudioBuffer& StreamConverter::finish()
{
    return m_resampler ? take(nullptr, 0) : m_result;
}

const AudioBuffer& StreamConverter::take(const uint8_t** channels, int frames)
{
    constexpr int kSlack = 4096; // what the resampler may hold back beyond its own estimate
    const int capacity = swr_get_out_samples(m_resampler.get(), frames) + kSlack;
    if (m_result.capacityFrames() < capacity)
        m_result = AudioBuffer(m_to, capacity);
    std::array<uint8_t*, kMaxConvertedChannels> into = {};
    for (int channel = 0; channel < m_to.channelCount; ++channel)
        into[static_cast<std::size_t>(channel)] = reinterpret_cast<uint8_t*>(m_result.channelCapacity(channel).data());
    const int got = swr_convert(m_resampler.get(), into.data(), capacity, channels, frames);
    m_result.setFrameLength(std::max(got, 0));
    return m_result;
}

} // namespace tonequill
