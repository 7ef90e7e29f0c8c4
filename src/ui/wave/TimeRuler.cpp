#include "ui/wave/TimeRuler.h"

#include "ui/kit/NumberText.h"
#include "ui/wave/WaveGeometry.h"

#include <QFontMetricsF>
#include <QPainter>

namespace tonequill {

TimeRuler::TimeRuler(QQuickItem* parent) : ImageItem(parent)
{
    connect(this, &TimeRuler::changed, this, [this] { redraw(); });
}

QImage TimeRuler::render(const QSize& pixels, double scale)
{
    constexpr double kLabelSpacing = 72; // room for "0:00.000" and a gap
    constexpr double kLabelGap = 5;      // between a mark and its label
    constexpr double kMajor = 8;         // heights of the marks
    constexpr double kMinor = 4;

    QImage image = blank(pixels);
    QPainter painter(&image);
    painter.scale(scale, scale);
    const QFont font = m_type.font();
    const QFontMetricsF metrics(font);
    for (const auto& tick : WaveGeometry::rulerTicks({m_startSeconds, m_endSeconds, width()}, kLabelSpacing)) {
        const double x = std::round(tick.x * scale) / scale;
        const double length = tick.isMajor() ? kMajor : kMinor;
        painter.fillRect(QRectF(x, height() - length, 1 / scale, length), m_tickColor);
        if (!tick.isMajor() || x + kLabelGap + metrics.horizontalAdvance(tick.label) > width())
            continue;
        painter.setPen(m_textColor);
        DigitCells::draw(painter, tick.label, font, x + kLabelGap, height() / 2);
    }
    return image;
}

} // namespace tonequill
