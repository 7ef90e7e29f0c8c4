#pragma once

#include "ui/kit/DesignTables.h"

#include <QColor>
#include <QFont>
#include <QGradientStops>
#include <QList>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <cmath>
#include <stdexcept>

namespace tonequill {

// One text style; sizes in pixels.
struct TypeStyle {
    Q_GADGET
    QML_VALUE_TYPE(typeStyle)
    Q_PROPERTY(int px MEMBER px FINAL)
    Q_PROPERTY(int line MEMBER line FINAL)
    Q_PROPERTY(int weight MEMBER weight FINAL)
    Q_PROPERTY(double letterSpacing MEMBER letterSpacing FINAL)

public:
    int px = 0;
    int line = 0; // line height
    int weight = 0;
    double letterSpacing = 0;

    // In the family of the application.
    QFont font() const;

    bool operator==(const TypeStyle&) const = default;
};

// One layer of a drop shadow, in pixels.
struct ShadowLayer {
    Q_GADGET
    QML_VALUE_TYPE(shadowLayer)
    Q_PROPERTY(double y MEMBER y FINAL)
    Q_PROPERTY(double blur MEMBER blur FINAL)
    Q_PROPERTY(QColor color MEMBER color FINAL)
    Q_PROPERTY(int margin READ margin FINAL)

public:
    double y = 0;
    double blur = 0;
    QColor color;

    // How far it reaches over the edge of what throws it.
    int margin() const { return int(blur + std::abs(y)); }

    bool operator==(const ShadowLayer&) const = default;
};

// The colours of one theme in one appearance.
struct Palette {
#define TONEQUILL_FIELD(name) QColor name;
    TONEQUILL_COLORS(TONEQUILL_FIELD)
#undef TONEQUILL_FIELD
    QColor windowBase;
    QGradientStops windowStops; // from top left to bottom right, over windowBase
};

struct ShadowSet {
    QList<ShadowLayer> panel, control, popover;
};

struct AppTheme {
    QString id;
    QString name;
    QColor tint, start, end;
    Palette light, dark;
};

struct Measures {
#define TONEQUILL_FIELD(name, group, key) double name = 0;
    TONEQUILL_METRICS(TONEQUILL_FIELD)
#undef TONEQUILL_FIELD
};

struct TypeScale {
    QStringList families;
#define TONEQUILL_FIELD(name) TypeStyle name;
    TONEQUILL_TYPES(TONEQUILL_FIELD)
#undef TONEQUILL_FIELD
};

// tokens.json says something else than the window expects.
struct DesignTokensError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// All that tokens.json decides about the look.
struct DesignTokens {
    Measures measures;
    TypeScale type;
    ShadowSet lightShadows, darkShadows;
    QList<AppTheme> themes; // in the order of the settings; the first is the default

    // Reads strictly: a missing key, an unknown colour or another type throws
    // DesignTokensError, which names the place.
    static DesignTokens parse(const QByteArray& json);
    // The tokens that the program carries.
    static DesignTokens builtIn();
};

// "#RRGGBB" or "rgba(r,g,b,a)"; an invalid colour for anything else.
QColor colorFromText(const QString& text);

} // namespace tonequill
