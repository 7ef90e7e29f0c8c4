#include "ui/TextItems.h"

#include "ui/WaveGeometry.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

QFont fontOf(const TypeStyle& type)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(std::max(type.px, 1));
    if (type.weight > 0)
        font.setWeight(QFont::Weight(type.weight));
    return font;
}

// Draws from `left`, with the line's middle at `middle`, in the painter's units.
void drawCells(QPainter& painter, const QString& text, const QFont& font, double left, double middle)
{
    const DigitCells cells = DigitCells::of(text, font);
    const QFontMetricsF metrics(font);
    const double cell = metrics.horizontalAdvance(u'0');
    const double baseline = std::round(middle + (metrics.ascent() - metrics.descent()) / 2);
    painter.setFont(font);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const double inset = text[i].isDigit() ? (cell - metrics.horizontalAdvance(text[i])) / 2 : 0;
        painter.drawText(QPointF(left + cells.positions[std::size_t(i)] + inset, baseline), QString(text[i]));
    }
}

} // namespace

DigitCells DigitCells::of(const QString& text, const QFont& font)
{
    const QFontMetricsF metrics(font);
    const double cell = metrics.horizontalAdvance(u'0');
    DigitCells cells;
    for (const QChar character : text) {
        cells.positions.push_back(cells.width);
        cells.width += character.isDigit() ? cell : metrics.horizontalAdvance(character);
    }
    return cells;
}

void NumberText::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    measure();
    Q_EMIT textChanged();
}

void NumberText::setType(const TypeStyle& type)
{
    if (type == m_type)
        return;
    m_type = type;
    measure();
    Q_EMIT typeChanged();
}

void NumberText::setColor(const QColor& color)
{
    if (color == m_color)
        return;
    m_color = color;
    redraw();
    Q_EMIT colorChanged();
}

void NumberText::setAlignRight(bool alignRight)
{
    if (alignRight == m_alignRight)
        return;
    m_alignRight = alignRight;
    redraw();
    Q_EMIT alignRightChanged();
}

void NumberText::measure()
{
    setImplicitSize(std::ceil(DigitCells::of(m_text, fontOf(m_type)).width), m_type.line);
    redraw();
}

QImage NumberText::render(const QSize& pixels, double scale)
{
    QImage image = blank(pixels);
    QPainter painter(&image);
    painter.scale(scale, scale);
    painter.setPen(m_color);
    const QFont font = fontOf(m_type);
    const double left = m_alignRight ? width() - DigitCells::of(m_text, font).width : 0;
    drawCells(painter, m_text, font, left, height() / 2);
    return image;
}

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
    const QFont font = fontOf(m_type);
    const QFontMetricsF metrics(font);
    for (const auto& tick : WaveGeometry::rulerTicks({m_startSeconds, m_endSeconds, width()}, kLabelSpacing)) {
        const double x = std::round(tick.x * scale) / scale;
        const double length = tick.isMajor() ? kMajor : kMinor;
        painter.fillRect(QRectF(x, height() - length, 1 / scale, length), m_tickColor);
        if (!tick.isMajor() || x + kLabelGap + metrics.horizontalAdvance(tick.label) > width())
            continue;
        painter.setPen(m_textColor);
        drawCells(painter, tick.label, font, x + kLabelGap, height() / 2);
    }
    return image;
}

} // namespace tonequill
