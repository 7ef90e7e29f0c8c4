#pragma once

#include "ui/editor/VoicesModel.h"

namespace tonequill {

// The effect controls of the open sound: what each stands at and says. Setting
// one changes the sound at once. One thread.
class EffectsView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the open sound")
    // The slider's position, -2…2: it is logarithmic.
    Q_PROPERTY(double speed READ speed WRITE setSpeed NOTIFY changed FINAL)
    Q_PROPERTY(QString speedText READ speedText NOTIFY changed FINAL)
    Q_PROPERTY(QStringList presetTexts READ presetTexts CONSTANT FINAL)
    Q_PROPERTY(int preset READ preset NOTIFY changed FINAL) // the active one; -1 for none
    Q_PROPERTY(double gain READ gain WRITE setGain NOTIFY changed FINAL)
    Q_PROPERTY(QString gainText READ gainText NOTIFY changed FINAL)
    Q_PROPERTY(double pitch READ pitch WRITE setPitch NOTIFY changed FINAL)
    Q_PROPERTY(QString pitchText READ pitchText NOTIFY changed FINAL)
    Q_PROPERTY(double fadeIn READ fadeIn WRITE setFadeIn NOTIFY changed FINAL)
    Q_PROPERTY(QString fadeInText READ fadeInText NOTIFY changed FINAL)
    Q_PROPERTY(double fadeOut READ fadeOut WRITE setFadeOut NOTIFY changed FINAL)
    Q_PROPERTY(QString fadeOutText READ fadeOutText NOTIFY changed FINAL)
    Q_PROPERTY(double maxFade READ maxFade NOTIFY maxFadeChanged FINAL) // seconds
    Q_PROPERTY(double echo READ echo WRITE setEcho NOTIFY changed FINAL)
    Q_PROPERTY(QString echoText READ echoText NOTIFY changed FINAL)
    Q_PROPERTY(double reverb READ reverb WRITE setReverb NOTIFY changed FINAL)
    Q_PROPERTY(QString reverbText READ reverbText NOTIFY changed FINAL)
    Q_PROPERTY(bool reverse READ reverse WRITE setReverse NOTIFY changed FINAL)
    Q_PROPERTY(bool isNeutral READ isNeutral NOTIFY changed FINAL)
    Q_PROPERTY(tonequill::VoicesModel* voices READ voices CONSTANT FINAL)

public:
    explicit EffectsView(EditorModel& editor);

    double speed() const;
    void setSpeed(double position);
    QString speedText() const;
    static QStringList presetTexts();
    int preset() const;
    Q_INVOKABLE void choosePreset(int index);

    double gain() const { return now().gainDb; }
    void setGain(double gainDb) { set(&EffectSettings::gainDb, gainDb); }
    QString gainText() const;
    double pitch() const { return now().pitch; }
    void setPitch(double semitones) { set(&EffectSettings::pitch, semitones); }
    QString pitchText() const;
    double fadeIn() const { return now().fadeIn; }
    void setFadeIn(double seconds) { set(&EffectSettings::fadeIn, seconds); }
    QString fadeInText() const;
    double fadeOut() const { return now().fadeOut; }
    void setFadeOut(double seconds) { set(&EffectSettings::fadeOut, seconds); }
    QString fadeOutText() const;
    // Half of the range as it will be heard, so that two fades never overlap,
    // within half a second and five.
    double maxFade() const { return m_maxFade; }
    double echo() const { return now().echo; }
    void setEcho(double amount) { set(&EffectSettings::echo, amount); }
    QString echoText() const;
    double reverb() const { return now().reverb; }
    void setReverb(double amount) { set(&EffectSettings::reverb, amount); }
    QString reverbText() const;
    bool reverse() const { return now().reverse; }
    void setReverse(bool reverse) { set(&EffectSettings::reverse, reverse); }
    bool isNeutral() const { return now().isNeutral(); }
    Q_INVOKABLE void reset();
    VoicesModel* voices() { return &m_voices; }

Q_SIGNALS:
    void changed();
    void maxFadeChanged();

private:
    const EffectSettings& now() const { return m_editor.effects(); }
    template <typename T>
    void set(T EffectSettings::*field, T value)
    {
        EffectSettings effects = now();
        effects.*field = value;
        m_editor.setEffects(effects);
    }
    void measureFade();

    EditorModel& m_editor;
    VoicesModel m_voices;
    double m_maxFade = 0;
};

} // namespace tonequill
