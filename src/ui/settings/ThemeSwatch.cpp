#include "ui/settings/ThemeSwatch.h"

#include <QLinearGradient>
#include <QPainter>

namespace tonequill {

ThemeSwatch::ThemeSwatch(QQuickItem* parent) : ImageItem(parent)
{
    connect(this, &ThemeSwatch::changed, this, [this] { redraw(); });
}

QImage ThemeSwatch::render(const QSize& pixels, double scale)
{
    QImage image = blank(pixels);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setPen(Qt::NoPen);

    QLinearGradient gradient(0, 0, width(), height());
    gradient.setColorAt(0, m_start);
    gradient.setColorAt(1, m_end);
    painter.setBrush(gradient);
    painter.drawRoundedRect(QRectF(0, 0, width(), height()), m_radius, m_radius);

    // The bar stands as far from the foot as from the sides.
    const double margin = (width() - m_bar.width()) / 2;
    const QRectF bar(QPointF(margin, height() - margin - m_bar.height()), m_bar);
    painter.setPen(QPen(m_edge, 1));
    painter.setBrush(m_accent);
    const double round = m_bar.height() / 2;
    painter.drawRoundedRect(bar.adjusted(0.5, 0.5, -0.5, -0.5), round, round);
    return image;
}

} // namespace tonequill
