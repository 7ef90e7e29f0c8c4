#include "ui/Theme.h"

#include "ui/ThemeStore.h"

#include <QQmlEngine>

namespace tonequill {

Theme* Theme::create(QQmlEngine*, QJSEngine*)
{
    Theme& theme = ThemeStore::shared().theme();
    QQmlEngine::setObjectOwnership(&theme, QQmlEngine::CppOwnership);
    return &theme;
}

void Theme::show(const Palette& palette, const ShadowSet& shadows, bool isDark)
{
    m_palette = palette;
    m_shadows = shadows;
    m_isDark = isDark;
    Q_EMIT changed();
}

QFont Metrics::bodyFont() const
{
    QFont font;
    font.setFamilies(m_type.families);
    font.setPixelSize(m_type.body.px);
    font.setWeight(QFont::Weight(m_type.body.weight));
    return font;
}

Metrics* Metrics::create(QQmlEngine*, QJSEngine*)
{
    Metrics& metrics = ThemeStore::shared().metrics();
    QQmlEngine::setObjectOwnership(&metrics, QQmlEngine::CppOwnership);
    return &metrics;
}

} // namespace tonequill
