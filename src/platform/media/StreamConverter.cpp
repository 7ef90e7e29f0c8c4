#include "platform/media/StreamConverter.h"

#include "platform/media/ffmpeg/Ffmpeg.h"

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

struct StreamConverter::Resampler {
    Resampler(AudioFormat from, AudioFormat to);

    // What so many more frames give; no channels for what was held back.
    void take(const uint8_t** channels, int frames, AudioBuffer& result);

    ffmpeg::Resampler context;
};

StreamConverter::Resampler::Resampler(AudioFormat from, AudioFormat to)
{
    AVChannelLayout layoutFrom = {};
    AVChannelLayout layoutTo = {};
    av_channel_layout_default(&layoutFrom, from.channelCount);
    av_channel_layout_default(&layoutTo, to.channelCount);
    SwrContext* made = nullptr;
    const int result =
        swr_alloc_set_opts2(&made, &layoutTo, AV_SAMPLE_FMT_FLTP, static_cast<int>(std::lround(to.sampleRate)), &layoutFrom,
                            AV_SAMPLE_FMT_FLTP, static_cast<int>(std::lround(from.sampleRate)), 0, nullptr);
    context.reset(made);
    if (result < 0)
        throw std::bad_alloc();
    av_opt_set_int(made, "resampler", SWR_ENGINE_SOXR, 0);
    av_opt_set_double(made, "precision", kPrecisionBits, 0);
    av_opt_set_double(made, "cutoff", kPassband, 0);
    av_opt_set_double(made, "rematrix_maxval", 1, 0); // the sum of the weights
    const bool needsOwnWeights =
        from.channelCount != to.channelCount && (from.channelCount == 1 || from.channelCount > kMaxPlacedChannels);
    if (needsOwnWeights) {
        const auto weights = ownWeights(from.channelCount, to.channelCount);
        if (swr_set_matrix(made, weights.data(), from.channelCount) < 0)
            throw std::bad_alloc();
    }
    if (swr_init(made) < 0)
        throw std::bad_alloc();
}

void StreamConverter::Resampler::take(const uint8_t** channels, int frames, AudioBuffer& result)
{
    constexpr int kSlack = 4096; // what the resampler may hold back beyond its own estimate
    const int capacity = swr_get_out_samples(context.get(), frames) + kSlack;
    if (result.capacityFrames() < capacity)
        result = AudioBuffer(result.format(), capacity);
    std::array<uint8_t*, kMaxConvertedChannels> into = {};
    for (int channel = 0; channel < result.channelCount(); ++channel)
        into[static_cast<std::size_t>(channel)] = reinterpret_cast<uint8_t*>(result.channelCapacity(channel).data());
    const int got = swr_convert(context.get(), into.data(), capacity, channels, frames);
    result.setFrameLength(std::max(got, 0));
}

StreamConverter::StreamConverter(AudioFormat from, AudioFormat to)
    : m_result(to, 0),
      m_resampler(from == to ? nullptr : std::make_unique<Resampler>(from, to))
{}

StreamConverter::~StreamConverter() = default;
StreamConverter::StreamConverter(StreamConverter&&) noexcept = default;
StreamConverter& StreamConverter::operator=(StreamConverter&&) noexcept = default;

const AudioBuffer& StreamConverter::convert(const AudioBuffer& buffer)
{
    if (!m_resampler)
        return buffer;
    std::array<const uint8_t*, kMaxConvertedChannels> channels = {};
    for (int channel = 0; channel < buffer.channelCount(); ++channel)
        channels[static_cast<std::size_t>(channel)] = reinterpret_cast<const uint8_t*>(buffer.channel(channel).data());
    m_resampler->take(channels.data(), static_cast<int>(buffer.frameLength()), m_result);
    return m_result;
}

const AudioBuffer& StreamConverter::finish()
{
    if (m_resampler)
        m_resampler->take(nullptr, 0, m_result);
    return m_result;
}

} // namespace tonequill
