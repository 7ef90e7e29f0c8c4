#pragma once

#include "support/Signal.h"

namespace tonequill::test {

// What a room of two channels makes of an impulse.
struct Response {
    Samples left;
    Samples right;
};

// Puts an impulse of this height on each side into a room, which works in place,
// and listens for six seconds.
Response responseOf(const std::function<void(std::span<float>, std::span<float>)>& room, float left, float right);

std::span<const float> stretchOf(const Samples& samples, double startSeconds, double seconds);

// How much a stretch of a decay is like noise: the share of samples outside one
// standard deviation, against that of Gaussian noise (the normalised echo density
// of Abel and Huang). Near 0 for single echoes, 1 for a diffuse decay.
double echoDensity(std::span<const float> stretch);

// How far each of many narrow bands stands above the four around it, in dB, on
// average over both sides and four stretches of the decay. In a diffuse decay
// this goes up and down at random from one stretch to the next; a mode that rings
// stays. The bands are a 24th of an octave wide, but at least 8 Hz, so that each
// holds several modes.
std::vector<double> ringing(const Response& response);

} // namespace tonequill::test
