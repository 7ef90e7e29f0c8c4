#include "ui/WindowBackground.h"

#include "ui/ThemeStore.h"

#include <QLinearGradient>
#include <QPainter>

namespace tonequill {

WindowBackground::WindowBackground(QQuickItem* parent) : ImageItem(parent)
{
    connect(&ThemeStore::shared().theme(), &Theme::changed, this, [this] { redraw(); });
}

QImage WindowBackground::render(const QSize& pixels, double)
{
    const Palette& palette = ThemeStore::shared().theme().palette();
    QImage image(pixels, QImage::Format_RGB32);
    image.fill(palette.windowBase);
    QLinearGradient gradient(0, 0, pixels.width(), pixels.height());
    gradient.setStops(palette.windowStops);
    QPainter painter(&image);
    painter.fillRect(image.rect(), gradient);
    return image;
}

} // namespace tonequill
