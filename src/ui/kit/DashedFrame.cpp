#include "ui/kit/DashedFrame.h"

#include <QPainter>

namespace tonequill {

DashedFrame::DashedFrame(QQuickItem* parent) : ImageItem(parent)
{
    connect(this, &DashedFrame::changed, this, [this] { redraw(); });
}

QImage DashedFrame::render(const QSize& pixels, double scale)
{
    constexpr double kDash = 3; // in widths of the pen, as is the gap
    constexpr double kGap = 2.5;
    QImage image = blank(pixels);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    QPen pen(m_color, 1);
    pen.setDashPattern({kDash, kGap});
    painter.setPen(pen);
    painter.setBrush(m_fillColor);
    painter.drawRoundedRect(QRectF(0.5, 0.5, width() - 1, height() - 1), m_radius, m_radius);
    return image;
}

} // namespace tonequill
