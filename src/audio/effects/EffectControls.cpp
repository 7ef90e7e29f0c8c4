#include "audio/effects/EffectControls.h"

#include "base/NumberText.h"

#include <algorithm>
#include <cmath>

namespace tonequill {

using namespace Qt::StringLiterals;

double EffectControls::speedFromSlider(double position)
{
    return std::round(std::exp2(position) * 100) / 100;
}

double EffectControls::sliderFromSpeed(double speed)
{
    return std::clamp(std::log2(speed), -2.0, 2.0);
}

bool EffectControls::isActivePreset(double preset, double speed)
{
    return std::abs(speed - preset) < 0.001;
}

QString EffectControls::speedText(double speed)
{
    return numberText::shortest(speed, 2) + u'×';
}

QString EffectControls::gainText(double gainDb)
{
    return numberText::withSign(gainDb, 0) + u" dB"_s;
}

QString EffectControls::pitchText(double semitones)
{
    return numberText::withSign(semitones, 0) + u" semitones"_s;
}

QString EffectControls::fadeText(double seconds)
{
    return numberText::fixed(seconds, 2) + u" s"_s;
}

QString EffectControls::amountText(double amount)
{
    return QString::number(std::lround(amount * 100)) + u'%';
}

} // namespace tonequill
