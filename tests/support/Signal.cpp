#include "support/Signal.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace tonequill::test {

Samples sine(double hertz, double seconds, float amplitude, double sampleRate)
{
    Samples samples(static_cast<std::size_t>(std::lround(seconds * sampleRate)));
    for (std::size_t n = 0; n < samples.size(); ++n)
        samples[n] = amplitude * static_cast<float>(std::sin(2 * std::numbers::pi * hertz * static_cast<double>(n) / sampleRate));
    return samples;
}

Samples noise(double seconds, std::uint32_t seed, float amplitude, double sampleRate)
{
    Samples samples(static_cast<std::size_t>(std::lround(seconds * sampleRate)));
    std::uint64_t state = seed;
    for (float& sample : samples) {
        state = state * 6'364'136'223'846'793'005U + 1'442'695'040'888'963'407U; // Knuth's MMIX generator
        sample = amplitude * (static_cast<float>(state >> 40) * 0x1p-23F - 1);
    }
    return samples;
}

AudioBuffer bufferOf(const std::vector<Samples>& channels, double sampleRate)
{
    const auto frames = static_cast<qint64>(channels.front().size());
    AudioBuffer buffer({sampleRate, static_cast<int>(channels.size())}, frames);
    buffer.setFrameLength(frames);
    for (int channel = 0; channel < buffer.channelCount(); ++channel)
        std::copy_n(channels[static_cast<std::size_t>(channel)].begin(), frames, buffer.channel(channel).begin());
    return buffer;
}

Samples samplesOf(const AudioBuffer& buffer, int channel)
{
    const auto samples = buffer.channel(channel);
    return {samples.begin(), samples.end()};
}

bool haveEqualSamples(const AudioBuffer& one, const AudioBuffer& other)
{
    if (one.format() != other.format() || one.frameLength() != other.frameLength())
        return false;
    const auto isSame = [](float a, float b) { return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b); };
    for (int channel = 0; channel < one.channelCount(); ++channel)
        if (!std::ranges::equal(one.channel(channel), other.channel(channel), isSame))
            return false;
    return true;
}

float peakOf(std::span<const float> samples)
{
    float peak = 0;
    for (const float sample : samples)
        peak = std::max(peak, std::abs(sample));
    return peak;
}

double energyOf(std::span<const float> samples)
{
    double energy = 0;
    for (const float sample : samples)
        energy += static_cast<double>(sample) * static_cast<double>(sample);
    return energy;
}

double decibels(double amplitude)
{
    return 20 * std::log10(amplitude);
}

double correlation(std::span<const float> one, std::span<const float> other)
{
    double product = 0;
    for (std::size_t n = 0; n < one.size(); ++n)
        product += static_cast<double>(one[n]) * static_cast<double>(other[n]);
    return product / std::sqrt(energyOf(one) * energyOf(other));
}

double frequencyOf(std::span<const float> samples, double sampleRate)
{
    double first = -1;
    double last = 0;
    int periods = -1;
    for (std::size_t n = 1; n < samples.size(); ++n)
        if (samples[n - 1] < 0 && samples[n] >= 0) {
            last = static_cast<double>(n) - static_cast<double>(samples[n] / (samples[n] - samples[n - 1]));
            if (periods++ < 0)
                first = last;
        }
    return periods * sampleRate / (last - first);
}

double amplitudeAt(std::span<const float> samples, double hertz, double sampleRate)
{
    std::complex<double> sum;
    for (std::size_t n = 0; n < samples.size(); ++n)
        sum += static_cast<double>(samples[n]) *
               std::polar(1.0, -2 * std::numbers::pi * hertz * static_cast<double>(n) / sampleRate);
    return 2 * std::abs(sum) / static_cast<double>(samples.size());
}

void fft(std::vector<std::complex<double>>& values, Direction direction)
{
    const std::size_t size = values.size();
    for (std::size_t i = 1, reversed = 0; i < size; ++i) {
        std::size_t bit = size >> 1;
        for (; (reversed & bit) != 0; bit >>= 1)
            reversed ^= bit;
        reversed ^= bit;
        if (i < reversed)
            std::swap(values[i], values[reversed]);
    }
    const double sign = direction == Direction::forward ? -1 : 1;
    for (std::size_t length = 2; length <= size; length *= 2) {
        std::vector<std::complex<double>> turns(length / 2);
        for (std::size_t k = 0; k < turns.size(); ++k)
            turns[k] = std::polar(1.0, sign * 2 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(length));
        for (std::size_t start = 0; start < size; start += length)
            for (std::size_t k = 0; k < length / 2; ++k) {
                const auto even = values[start + k];
                const auto odd = values[start + k + length / 2] * turns[k];
                values[start + k] = even + odd;
                values[start + k + length / 2] = even - odd;
            }
    }
}

std::vector<double> powerSpectrum(std::span<const float> samples, std::size_t size)
{
    std::vector<std::complex<double>> values(size);
    std::copy_n(samples.begin(), std::min(size, samples.size()), values.begin());
    fft(values);
    std::vector<double> power(size / 2 + 1);
    std::transform(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(power.size()), power.begin(),
                   [](const std::complex<double>& value) { return std::norm(value); });
    return power;
}

Samples bandOf(std::span<const float> samples, double centreHertz, double sampleRate)
{
    const std::size_t size = std::bit_ceil(samples.size());
    std::vector<std::complex<double>> values(size);
    std::copy(samples.begin(), samples.end(), values.begin());
    fft(values);
    for (std::size_t k = 0; k < size; ++k) {
        const double hertz = static_cast<double>(std::min(k, size - k)) * sampleRate / static_cast<double>(size);
        const double octaves = std::clamp(std::log2(std::max(hertz, 1.0) / centreHertz), -1.0, 1.0);
        values[k] *= std::pow(std::cos(octaves * std::numbers::pi / 2), 2);
    }
    fft(values, Direction::inverse);
    Samples band(samples.size());
    std::transform(
        values.begin(), values.begin() + static_cast<std::ptrdiff_t>(band.size()), band.begin(),
        [size](const std::complex<double>& value) { return static_cast<float>(value.real() / static_cast<double>(size)); });
    return band;
}

double decaySeconds(std::span<const float> response, double sampleRate)
{
    std::vector<double> remaining(response.size());
    double sum = 0;
    for (std::size_t n = response.size(); n-- > 0;)
        remaining[n] = sum += static_cast<double>(response[n]) * static_cast<double>(response[n]);
    double count = 0, sumX = 0, sumY = 0, sumXX = 0, sumXY = 0;
    for (std::size_t n = 0; n < remaining.size(); ++n) {
        const double level = 10 * std::log10(remaining[n] / remaining[0]);
        if (level > -5)
            continue;
        if (level < -35)
            break;
        const double seconds = static_cast<double>(n) / sampleRate;
        ++count;
        sumX += seconds;
        sumY += level;
        sumXX += seconds * seconds;
        sumXY += seconds * level;
    }
    return -60 * (count * sumXX - sumX * sumX) / (count * sumXY - sumX * sumY);
}

} // namespace tonequill::test
