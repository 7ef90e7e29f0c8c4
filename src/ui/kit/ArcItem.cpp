#include "ui/kit/ArcItem.h"

#include <QPainter>

namespace tonequill {

ArcItem::ArcItem(QQuickItem* parent) : ImageItem(parent)
{
    setSmooth(true); // it turns
    connect(this, &ArcItem::changed, this, [this] { redraw(); });
}

QImage ArcItem::render(const QSize& pixels, double scale)
{
    constexpr double kStroke = 2;
    constexpr int kSixteenths = 16; // Qt counts angles in sixteenths of a degree
    QImage image = blank(pixels);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    const QRectF ring = QRectF(0, 0, width(), height()).adjusted(kStroke, kStroke, -kStroke, -kStroke);
    painter.setPen(QPen(m_trackColor, kStroke));
    painter.drawEllipse(ring);
    painter.setPen(QPen(m_color, kStroke, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, 0, 90 * kSixteenths);
    return image;
}

} // namespace tonequill
