#include "ui/kit/ThemeStore.h"

#include "platform/process/Defaults.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

const QString kTheme = u"theme"_s;
const QString kAppearance = u"appearance"_s;

ThemeStore* s_shared = nullptr;

} // namespace

QString appearanceText(Appearance appearance)
{
    return appearanceLabel(appearance).toLower();
}

std::optional<Appearance> appearanceFromText(QStringView text)
{
    for (const Appearance appearance : kAppearances) {
        if (appearanceText(appearance) == text)
            return appearance;
    }
    return std::nullopt;
}

QString appearanceLabel(Appearance appearance)
{
    switch (appearance) {
    case Appearance::system:
        return u"System"_s;
    case Appearance::light:
        return u"Light"_s;
    case Appearance::dark:
        return u"Dark"_s;
    }
    Q_UNREACHABLE();
}

ThemeStore::ThemeStore(Defaults& defaults)
    : m_defaults(defaults),
      m_tokens(DesignTokens::builtIn()),
      m_themeID(defaults.text(kTheme).value_or(m_tokens.themes.first().id)),
      m_appearance(appearanceFromText(defaults.text(kAppearance).value_or(QString())).value_or(Appearance::system))
{
    Q_ASSERT(!s_shared);
    s_shared = this;
    m_metrics.m_measures = m_tokens.measures;
    m_metrics.m_type = m_tokens.type;
    show();
}

ThemeStore::~ThemeStore()
{
    s_shared = nullptr;
}

ThemeStore& ThemeStore::shared()
{
    Q_ASSERT(s_shared);
    return *s_shared;
}

void ThemeStore::setThemeID(const QString& id)
{
    m_themeID = id;
    m_defaults.setText(kTheme, id);
    show();
}

void ThemeStore::setAppearance(Appearance appearance)
{
    m_appearance = appearance;
    m_defaults.setText(kAppearance, appearanceText(appearance));
    show();
}

void ThemeStore::setSystemIsDark(bool isDark)
{
    if (isDark == m_systemIsDark)
        return;
    m_systemIsDark = isDark;
    show();
}

void ThemeStore::show()
{
    const auto& themes = m_tokens.themes;
    auto theme = std::find_if(themes.begin(), themes.end(), [this](const AppTheme& each) { return each.id == m_themeID; });
    if (theme == themes.end())
        theme = themes.begin();
    const bool isDark = m_appearance == Appearance::system ? m_systemIsDark : m_appearance == Appearance::dark;
    m_theme.show(isDark ? theme->dark : theme->light, isDark ? m_tokens.darkShadows : m_tokens.lightShadows, isDark);
    Q_EMIT changed();
}

void ThemeStore::applyFont() const
{
    QGuiApplication::setFont(m_metrics.bodyFont());
}

} // namespace tonequill
