#include "audio/effects/EffectSettings.h"

#include "base/JsonSyntax.h"

#include <QJsonDocument>
#include <QJsonValue>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

constexpr double kPitchLimit = 24;   // semitones
constexpr double kInaudible = 0.001; // less of an effect is none

constexpr std::array kNumbers = {
    std::pair{u"speed", &EffectSettings::speed},     std::pair{u"pitch", &EffectSettings::pitch},
    std::pair{u"gainDb", &EffectSettings::gainDb},   std::pair{u"fadeIn", &EffectSettings::fadeIn},
    std::pair{u"fadeOut", &EffectSettings::fadeOut}, std::pair{u"echo", &EffectSettings::echo},
    std::pair{u"reverb", &EffectSettings::reverb},
};

QByteArray number(double value)
{
    // The shortest text that reads back as the same number.
    return std::isfinite(value) ? QByteArray::number(value, 'g', QLocale::FloatingPointShortest) : QByteArray("null");
}

bool isAbsent(const QJsonValue& value)
{
    return value.isUndefined() || value.isNull();
}

} // namespace

double EffectSettings::totalPitch() const
{
    return std::clamp(pitch + pitchOffsetOf(voice), -kPitchLimit, kPitchLimit);
}

bool EffectSettings::isNeutral() const
{
    return *this == EffectSettings();
}

bool EffectSettings::needsEngine() const
{
    return std::abs(speed - 1) > kInaudible || std::abs(totalPitch()) > kInaudible || echo > kInaudible || reverb > kInaudible;
}

bool EffectSettings::isRenderable() const
{
    constexpr double kLoudestDb = 100; // beyond 700 a float can't hold it
    return fadeIn >= 0 && fadeOut >= 0 && gainDb <= kLoudestDb;
}

QByteArray EffectSettings::toJson() const
{
    return "{\"speed\":" + number(speed) + ",\"pitch\":" + number(pitch) + ",\"gainDb\":" + number(gainDb) +
           ",\"fadeIn\":" + number(fadeIn) + ",\"fadeOut\":" + number(fadeOut) + ",\"reverse\":" + (reverse ? "true" : "false") +
           ",\"echo\":" + number(echo) + ",\"reverb\":" + number(reverb) + ",\"voice\":\"" + idOf(voice).toUtf8() + "\"}";
}

std::optional<EffectSettings> EffectSettings::fromJson(const QByteArray& json)
{
    if (!isJson(json))
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    return document.isObject() ? fromJson(document.object()) : std::nullopt;
}

std::optional<EffectSettings> EffectSettings::fromJson(const QJsonObject& object)
{
    EffectSettings settings;
    for (const auto& [key, field] : kNumbers) {
        const QJsonValue value = object.value(QStringView(key));
        if (isAbsent(value))
            continue;
        if (!value.isDouble() || !std::isfinite(value.toDouble()))
            return std::nullopt;
        settings.*field = value.toDouble();
    }
    if (const QJsonValue reverse = object.value(u"reverse"); !isAbsent(reverse)) {
        if (!reverse.isBool())
            return std::nullopt;
        settings.reverse = reverse.toBool();
    }
    if (const QJsonValue voice = object.value(u"voice"); !isAbsent(voice)) {
        const auto style = voice.isString() ? voiceStyleFromId(voice.toString()) : std::nullopt;
        if (!style)
            return std::nullopt;
        settings.voice = *style;
    }
    return settings;
}

} // namespace tonequill
