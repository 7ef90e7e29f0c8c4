#pragma once

#include "ui/kit/DesignTokens.h"

#include <QFont>
#include <QObject>

class QJSEngine;
class QQmlEngine;

namespace tonequill {

// The colours of the window as they are now: `Theme.textPrimary` in QML. What
// they are is decided by ThemeStore.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
#define TONEQUILL_PROPERTY(name) Q_PROPERTY(QColor name READ name NOTIFY changed FINAL)
    TONEQUILL_COLORS(TONEQUILL_PROPERTY)
#undef TONEQUILL_PROPERTY
    Q_PROPERTY(QColor windowBase READ windowBase NOTIFY changed FINAL)
    // A panel as it looks on the window's ground, in the middle and at the right.
    Q_PROPERTY(QColor panelMiddle READ panelMiddle NOTIFY changed FINAL)
    Q_PROPERTY(QColor panelRight READ panelRight NOTIFY changed FINAL)
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed FINAL)
    Q_PROPERTY(QList<tonequill::ShadowLayer> panelShadow READ panelShadow NOTIFY changed FINAL)
    Q_PROPERTY(QList<tonequill::ShadowLayer> controlShadow READ controlShadow NOTIFY changed FINAL)
    Q_PROPERTY(QList<tonequill::ShadowLayer> popoverShadow READ popoverShadow NOTIFY changed FINAL)

public:
    // The one of the process' ThemeStore, which goes on owning it.
    static Theme* create(QQmlEngine* engine, QJSEngine* scripts);

    void show(const Palette& palette, const ShadowSet& shadows, bool isDark);

    const Palette& palette() const
    {
        return m_palette;
    }
#define TONEQUILL_GETTER(name)                                                                                                   \
    QColor name() const                                                                                                          \
    {                                                                                                                            \
        return m_palette.name;                                                                                                   \
    }
    TONEQUILL_COLORS(TONEQUILL_GETTER)
#undef TONEQUILL_GETTER
    QColor windowBase() const
    {
        return m_palette.windowBase;
    }
    QColor panelMiddle() const
    {
        return panelAt(0.45);
    }
    QColor panelRight() const
    {
        return panelAt(0.9);
    }
    bool isDark() const
    {
        return m_isDark;
    }
    QList<ShadowLayer> panelShadow() const
    {
        return m_shadows.panel;
    }
    QList<ShadowLayer> controlShadow() const
    {
        return m_shadows.control;
    }
    QList<ShadowLayer> popoverShadow() const
    {
        return m_shadows.popover;
    }

Q_SIGNALS:
    void changed();

private:
    friend class ThemeStore;
    Theme() = default;
    QColor panelAt(double share) const; // of the way from the ground's top left to its bottom right

    Palette m_palette;
    ShadowSet m_shadows;
    bool m_isDark = false;
};

// The measures of the window: `Metrics.spaceL` in QML, which holds no bare numbers.
class Metrics : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
#define TONEQUILL_PROPERTY(name, group, key) Q_PROPERTY(double name READ name CONSTANT FINAL)
    TONEQUILL_METRICS(TONEQUILL_PROPERTY)
#undef TONEQUILL_PROPERTY
    Q_PROPERTY(QFont bodyFont READ bodyFont CONSTANT FINAL)
#define TONEQUILL_PROPERTY(name) Q_PROPERTY(tonequill::TypeStyle name READ name CONSTANT FINAL)
    TONEQUILL_TYPES(TONEQUILL_PROPERTY)
#undef TONEQUILL_PROPERTY

public:
    // The type of running text, with its fallbacks for other scripts. Controls
    // that take text to edit need it: they start from the system's font.
    QFont bodyFont() const;

    // The one of the process' ThemeStore, which goes on owning it.
    static Metrics* create(QQmlEngine* engine, QJSEngine* scripts);

#define TONEQUILL_GETTER(name, group, key)                                                                                       \
    double name() const                                                                                                          \
    {                                                                                                                            \
        return m_measures.name;                                                                                                  \
    }
    TONEQUILL_METRICS(TONEQUILL_GETTER)
#undef TONEQUILL_GETTER
#define TONEQUILL_GETTER(name)                                                                                                   \
    TypeStyle name() const                                                                                                       \
    {                                                                                                                            \
        return m_type.name;                                                                                                      \
    }
    TONEQUILL_TYPES(TONEQUILL_GETTER)
#undef TONEQUILL_GETTER

private:
    friend class ThemeStore;
    Metrics() = default;

    Measures m_measures;
    TypeScale m_type;
};

} // namespace tonequill
