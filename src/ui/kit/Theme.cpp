#include "ui/kit/Theme.h"

#include "ui/kit/ThemeStore.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QQmlEngine>

namespace tonequill {

namespace {

constexpr double kLongDiagonal = 1000; // pixels: a single one of them has one colour

} // namespace

Theme* Theme::create(QQmlEngine*, QJSEngine*)
{
    Theme& theme = ThemeStore::shared().theme();
    QQmlEngine::setObjectOwnership(&theme, QQmlEngine::CppOwnership);
    return &theme;
}

QColor Theme::panelAt(double share) const
{
    // The smallest of pictures, drawn as the ground and a panel on it are.
    QImage pixel(1, 1, QImage::Format_RGB32);
    pixel.fill(m_palette.windowBase);
    QLinearGradient gradient(-share * kLongDiagonal, 0, (1 - share) * kLongDiagonal, 0);
    gradient.setStops(m_palette.windowStops);
    QPainter painter(&pixel);
    painter.fillRect(pixel.rect(), gradient);
    painter.fillRect(pixel.rect(), m_palette.panel);
    return pixel.pixelColor(0, 0);
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
