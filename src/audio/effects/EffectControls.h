#pragma once

#include <QString>

#include <array>

// The arithmetic and the texts of the effect controls, the same in the editor
// and in the studio.
namespace tonequill::EffectControls {

inline constexpr std::array kSpeedPresets = {0.5, 0.75, 1.0, 1.5, 2.0};

// The speed slider is logarithmic: it runs over log2(speed), from -2 to 2.
double speedFromSlider(double position);
double sliderFromSpeed(double speed); // REQUIRES: speed > 0.

// Whether the preset button is drawn as pressed.
bool isActivePreset(double preset, double speed);

QString speedText(double speed);     // "1.5×"
QString gainText(double gainDb);     // "-3 dB"
QString pitchText(double semitones); // "+7 semitones"
QString fadeText(double seconds);    // "0.25 s"
QString amountText(double amount);   // "40%"

} // namespace tonequill::EffectControls
