#include "ui/wave/PlayheadCap.h"

#include <QPainter>

namespace tonequill {

PlayheadCap::PlayheadCap(QQuickItem* parent) : ImageItem(parent)
{
    connect(this, &PlayheadCap::changed, this, [this] { redraw(); });
}

QImage PlayheadCap::render(const QSize& pixels, double scale)
{
    QImage image = blank(pixels);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_color);
    const double middle = width() / 2;
    const double shoulder = height() / 2;
    painter.drawPolygon(QPolygonF({{0, 0}, {width(), 0}, {width(), shoulder}, {middle, height()}, {0, shoulder}}));
    return image;
}

} // namespace tonequill
