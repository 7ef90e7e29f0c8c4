#include "audio/effects/EffectControls.h"

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
    return QString::asprintf("%.2g", speed) + u'×';
}

QString EffectControls::gainText(double gainDb)
{
    return QString::asprintf("%+.0f dB", gainDb);
}

QString EffectControls::pitchText(double semitones)
{
    return QString::asprintf("%+.0f semitones", semitones);
}

QString EffectControls::fadeText(double seconds)
{
    return QString::asprintf("%.2f s", seconds);
}

QString EffectControls::amountText(double amount)
{
    return QString::number(std::lround(amount * 100)) + u'%';
}

} // namespace tonequill
