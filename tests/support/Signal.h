#pragma once

#include "platform/media/AudioBuffer.h"

#include <complex>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace tonequill::test {

using Samples = std::vector<float>;

// --- Signals -----------------------------------------------------------------

Samples sine(double hertz, double seconds, float amplitude = 0.5F, double sampleRate = 48'000);

// White noise of a fixed seed, within ±amplitude.
Samples noise(double seconds, std::uint32_t seed, float amplitude = 0.5F, double sampleRate = 48'000);

// One channel for each argument; all of one length.
AudioBuffer bufferOf(const std::vector<Samples>& channels, double sampleRate = 48'000);
inline AudioBuffer stereo(const Samples& both)
{
    return bufferOf({both, both});
}
Samples samplesOf(const AudioBuffer& buffer, int channel);

bool haveEqualSamples(const AudioBuffer& one, const AudioBuffer& other);

// --- Measures ----------------------------------------------------------------

float peakOf(std::span<const float> samples);
double energyOf(std::span<const float> samples);
double decibels(double amplitude);

// −1…1, at zero lag. REQUIRES: equal lengths.
double correlation(std::span<const float> one, std::span<const float> other);

// Hertz of a steady tone, by its zero crossings between the first and the last.
double frequencyOf(std::span<const float> samples, double sampleRate = 48'000);

// The amplitude of one frequency.
double amplitudeAt(std::span<const float> samples, double hertz, double sampleRate = 48'000);

// --- Spectra -----------------------------------------------------------------

// In place; the size is a power of two. The inverse is not scaled.
enum class Direction { forward, inverse };
void fft(std::vector<std::complex<double>>& values, Direction direction = Direction::forward);

// |spectrum|², zero-padded to `size` bins; size / 2 + 1 of them.
std::vector<double> powerSpectrum(std::span<const float> samples, std::size_t size);

// Only what lies around a frequency, without any shift in time: half of the
// amplitude is left half an octave away, nothing a whole one away. The soft
// borders keep the filter from ringing longer than a room.
Samples bandOf(std::span<const float> samples, double centreHertz, double sampleRate = 48'000);

// --- Rooms -------------------------------------------------------------------

// RT60 in seconds from an impulse response, by Schroeder's backward integration
// and a straight line from −5 to −35 dB (T30 of ISO 3382-1).
double decaySeconds(std::span<const float> response, double sampleRate = 48'000);

} // namespace tonequill::test
