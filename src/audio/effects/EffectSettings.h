#pragma once

#include "audio/effects/VoiceStyle.h"

#include <QByteArray>
#include <QJsonObject>

#include <optional>

namespace tonequill {

// Every effect that a sound or a clip can have. The ranges are those that the
// controls offer; the renderer takes any finite value.
struct EffectSettings {
    double speed = 1;     // playback rate, 0.25…4
    double pitch = 0;     // semitones, -12…12
    double gainDb = 0;    // -24…12
    double fadeIn = 0;    // seconds of rendered time
    double fadeOut = 0;   // seconds of rendered time
    bool reverse = false; // play the range backwards
    double echo = 0;      // amount, 0…1
    double reverb = 0;    // amount, 0…1
    VoiceStyle voice = VoiceStyle::natural;

    bool operator==(const EffectSettings&) const = default;

    // Semitones of pitch and voice together, within -24…24.
    double totalPitch() const;

    // Whether nothing at all is set, exactly: the source can be used as it is.
    bool isNeutral() const;

    // Whether EffectRenderer::runEngine has something to do.
    bool needsEngine() const;

    // Whether EffectRenderer takes them: no fade is shorter than nothing, and the gain
    // is one that samples can bear. What people type is asked for it.
    bool isRenderable() const;

    // One JSON object with all nine keys, in the order of the fields. JSON has
    // no word for a number that is not finite: it is written as null.
    QByteArray toJson() const;

    // None for what is no JSON object by the letter, for a key whose value has the wrong type
    // and for an unknown voice. A missing key, or null, takes the default;
    // unknown keys are left alone.
    static std::optional<EffectSettings> fromJson(const QByteArray& json);
    static std::optional<EffectSettings> fromJson(const QJsonObject& object);
};

} // namespace tonequill
