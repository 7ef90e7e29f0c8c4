#include "ui/editor/EffectsView.h"

#include "audio/effects/EffectControls.h"

#include <algorithm>

namespace tonequill {

namespace {

constexpr double kShortestMaxFade = 0.5; // seconds
constexpr double kLongestMaxFade = 5;

} // namespace

EffectsView::EffectsView(EditorModel& editor) : m_editor(editor), m_voices(editor)
{
    connect(&editor, &EditorModel::effectsChanged, this, &EffectsView::measureFade);
    connect(&editor, &EditorModel::effectsChanged, this, &EffectsView::changed);
    connect(&editor, &EditorModel::rangeChanged, this, &EffectsView::measureFade);
    measureFade();
}

void EffectsView::measureFade()
{
    const double heard = (m_editor.end() - m_editor.start()) / now().speed;
    const double half = std::clamp(heard / 2, kShortestMaxFade, kLongestMaxFade);
    // A fade that is set already stays within reach of its slider.
    const double maxFade = std::max({half, now().fadeIn, now().fadeOut});
    if (maxFade == m_maxFade)
        return;
    m_maxFade = maxFade;
    Q_EMIT maxFadeChanged();
}

double EffectsView::speed() const
{
    return EffectControls::sliderFromSpeed(now().speed);
}

void EffectsView::setSpeed(double position)
{
    set(&EffectSettings::speed, EffectControls::speedFromSlider(position));
}

QString EffectsView::speedText() const
{
    return EffectControls::speedText(now().speed);
}

QStringList EffectsView::presetTexts()
{
    QStringList texts;
    for (const double preset : EffectControls::kSpeedPresets)
        texts << EffectControls::speedText(preset);
    return texts;
}

int EffectsView::preset() const
{
    const auto& presets = EffectControls::kSpeedPresets;
    const auto* active = std::find_if(presets.begin(), presets.end(),
                                      [this](double each) { return EffectControls::isActivePreset(each, now().speed); });
    return active == presets.end() ? -1 : int(active - presets.begin());
}

void EffectsView::choosePreset(int index)
{
    if (index >= 0 && index < int(EffectControls::kSpeedPresets.size()))
        set(&EffectSettings::speed, EffectControls::kSpeedPresets[std::size_t(index)]);
}

QString EffectsView::gainText() const
{
    return EffectControls::gainText(now().gainDb);
}

QString EffectsView::pitchText() const
{
    return EffectControls::pitchText(now().pitch);
}

QString EffectsView::fadeInText() const
{
    return EffectControls::fadeText(now().fadeIn);
}

QString EffectsView::fadeOutText() const
{
    return EffectControls::fadeText(now().fadeOut);
}

QString EffectsView::echoText() const
{
    return EffectControls::amountText(now().echo);
}

QString EffectsView::reverbText() const
{
    return EffectControls::amountText(now().reverb);
}

void EffectsView::reset()
{
    m_editor.setEffects({});
}

} // namespace tonequill
