#pragma once

#include "ui/kit/Theme.h"

#include <QObject>

#include <array>
#include <optional>

namespace tonequill {

class Defaults;

// Whether the window is light or dark.
enum class Appearance { system, light, dark };

inline constexpr std::array kAppearances{Appearance::system, Appearance::light, Appearance::dark};

// The stored text ("system"), and back; none for an unknown text.
QString appearanceText(Appearance appearance);
std::optional<Appearance> appearanceFromText(QStringView text);
// As the settings show it ("System").
QString appearanceLabel(Appearance appearance);

// The chosen theme and appearance, kept in the defaults under "theme" and
// "appearance". One for each process, made before the first window; QML takes
// its Theme and Metrics from it. One thread.
class ThemeStore : public QObject {
    Q_OBJECT

public:
    explicit ThemeStore(Defaults& defaults);
    ~ThemeStore() override;

    // REQUIRES: one exists.
    static ThemeStore& shared();

    const QList<AppTheme>& all() const { return m_tokens.themes; }

    // An id that isn't among all() is kept, and looks like the first one.
    const QString& themeID() const { return m_themeID; }
    void setThemeID(const QString& id);
    Appearance appearance() const { return m_appearance; }
    void setAppearance(Appearance appearance);

    // What `system` means now.
    bool systemIsDark() const { return m_systemIsDark; }
    void setSystemIsDark(bool isDark);

    Theme& theme() { return m_theme; }
    Metrics& metrics() { return m_metrics; }
    // Sets the window's type on the application, with its fallbacks for other scripts.
    void applyFont() const;

Q_SIGNALS:
    void changed();

private:
    void show();

    Defaults& m_defaults;
    DesignTokens m_tokens;
    Theme m_theme;
    Metrics m_metrics;
    QString m_themeID;
    Appearance m_appearance;
    bool m_systemIsDark = false;
};

} // namespace tonequill
