#include "ui/kit/DesignTokens.h"

#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

#include <array>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

// The order in which the settings show them.
constexpr std::array kThemeOrder{"aurora"_L1, "sunset"_L1, "ocean"_L1, "forest"_L1, "rose"_L1, "graphite"_L1};

// A place in the document: reads with the right type or says where it failed.
class Place {
public:
    Place(QJsonValue value, QString path) : m_value(std::move(value)), m_path(std::move(path)) {}

    Place operator[](QLatin1StringView key) const
    {
        const Place place(object().value(key), m_path + u'/' + key);
        if (place.m_value.isUndefined())
            place.fail("is missing");
        return place;
    }

    bool has(QLatin1StringView key) const { return object().contains(key); }
    QJsonObject object() const
    {
        if (!m_value.isObject())
            fail("is no object");
        return m_value.toObject();
    }
    double number() const
    {
        if (!m_value.isDouble())
            fail("is no number");
        return m_value.toDouble();
    }
    QString text() const
    {
        if (!m_value.isString())
            fail("is no text");
        return m_value.toString();
    }
    QList<Place> list() const
    {
        if (!m_value.isArray())
            fail("is no list");
        QList<Place> places;
        for (const QJsonValue& value : m_value.toArray())
            places.append(Place(value, m_path + u'/' + QString::number(places.size())));
        return places;
    }
    QColor color() const
    {
        const QColor color = colorFromText(text());
        if (!color.isValid())
            fail("is no colour");
        return color;
    }
    [[noreturn]] void fail(const char* what) const { throw DesignTokensError(m_path.toStdString() + ' ' + what); }

private:
    QJsonValue m_value;
    QString m_path;
};

Palette paletteAt(const Place& place)
{
    QSet<QString> known{u"window"_s, u"regions"_s}; // regions belong to the timeline, which doesn't exist yet
    Palette palette;
#define TONEQUILL_READ(name)                                                                                                     \
    palette.name = place[QLatin1StringView(#name)].color();                                                                      \
    known.insert(QStringLiteral(#name));
    TONEQUILL_COLORS(TONEQUILL_READ)
#undef TONEQUILL_READ
    const QStringList keys = place.object().keys();
    if (std::any_of(keys.begin(), keys.end(), [&known](const QString& key) { return !known.contains(key); }))
        place.fail("holds an unknown colour");

    const Place window = place["window"_L1];
    palette.windowBase = window["base"_L1].color();
    for (const Place& stop : window["stops"_L1].list()) {
        QColor color = stop["color"_L1].color();
        color.setAlphaF(float(stop["opacity"_L1].number()));
        palette.windowStops.append({stop["at"_L1].number(), color});
    }
    return palette;
}

QColor unitColorAt(const Place& place)
{
    const QList<Place> parts = place.list();
    if (parts.size() != 3)
        place.fail("is no colour of three parts");
    return QColor::fromRgbF(float(parts[0].number()), float(parts[1].number()), float(parts[2].number()));
}

// "0 1px 2px rgba(…), 0 8px 24px rgba(…)" or "none".
QList<ShadowLayer> shadowAt(const Place& place)
{
    static const QRegularExpression layer(uR"(0 (\d+)px (\d+)px (rgba\([^)]*\)))"_s);
    QList<ShadowLayer> layers;
    if (place.text() == "none"_L1)
        return layers;
    for (auto matches = layer.globalMatch(place.text()); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        layers.append({match.captured(1).toDouble(), match.captured(2).toDouble(), colorFromText(match.captured(3))});
    }
    if (layers.isEmpty())
        place.fail("is no shadow");
    return layers;
}

ShadowSet shadowsAt(const Place& place)
{
    return {shadowAt(place["panel"_L1]), shadowAt(place["control"_L1]), shadowAt(place["popover"_L1])};
}

TypeStyle typeAt(const Place& place)
{
    return {int(place["px"_L1].number()), int(place["line"_L1].number()), int(place["weight"_L1].number()),
            place.has("letterSpacing"_L1) ? place["letterSpacing"_L1].number() : 0};
}

} // namespace

QFont TypeStyle::font() const
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(std::max(px, 1));
    if (weight > 0)
        font.setWeight(QFont::Weight(weight));
    return font;
}

QColor colorFromText(const QString& text)
{
    static const QRegularExpression hex(u"^#[0-9A-Fa-f]{6}$"_s);
    static const QRegularExpression rgba(uR"(^rgba\((\d+),(\d+),(\d+),(\d*\.?\d+)\)$)"_s);
    if (hex.match(text).hasMatch())
        return QColor(text);
    const QRegularExpressionMatch match = rgba.match(text);
    const double alpha = match.captured(4).toDouble();
    if (!match.hasMatch() || alpha > 1)
        return {};
    QColor color(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
    color.setAlphaF(float(alpha));
    return color;
}

DesignTokens DesignTokens::parse(const QByteArray& json)
{
    const Place root(QJsonDocument::fromJson(json).object(), u"tokens"_s);
    DesignTokens tokens;
#define TONEQUILL_READ(name, group, key) tokens.measures.name = root[QLatin1StringView(#group)][QLatin1StringView(#key)].number();
    TONEQUILL_METRICS(TONEQUILL_READ)
#undef TONEQUILL_READ

    const Place type = root["type"_L1];
    for (const Place& family : type["family"_L1].list())
        tokens.type.families << family.text();
#define TONEQUILL_READ(name) tokens.type.name = typeAt(type["scale"_L1][QLatin1StringView(#name)]);
    TONEQUILL_TYPES(TONEQUILL_READ)
#undef TONEQUILL_READ

    tokens.lightShadows = shadowsAt(root["shadow"_L1]["light"_L1]);
    tokens.darkShadows = shadowsAt(root["shadow"_L1]["dark"_L1]);
    for (const QLatin1StringView id : kThemeOrder) {
        const Place theme = root["themes"_L1][id];
        tokens.themes.append({id, theme["name"_L1].text(), unitColorAt(theme["tint"_L1]), unitColorAt(theme["start"_L1]),
                              unitColorAt(theme["end"_L1]), paletteAt(theme["light"_L1]), paletteAt(theme["dark"_L1])});
    }
    return tokens;
}

DesignTokens DesignTokens::builtIn()
{
    QFile file(u":/design/tokens.json"_s);
    if (!file.open(QFile::ReadOnly))
        throw DesignTokensError("tokens.json isn't part of the program");
    return parse(file.readAll());
}

} // namespace tonequill
