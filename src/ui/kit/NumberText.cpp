#include "ui/kit/NumberText.h"

#include <QFontMetricsF>
#include <QPainter>

namespace tonequill {

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

void DigitCells::draw(QPainter& painter, const QString& text, const QFont& font, double left, double middle)
{
    const DigitCells cells = of(text, font);
    const QFontMetricsF metrics(font);
    const double cell = metrics.horizontalAdvance(u'0');
    const double baseline = std::round(middle + (metrics.ascent() - metrics.descent()) / 2);
    painter.setFont(font);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const double inset = text[i].isDigit() ? (cell - metrics.horizontalAdvance(text[i])) / 2 : 0;
        painter.drawText(QPointF(left + cells.positions[std::size_t(i)] + inset, baseline), QString(text[i]));
    }
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
    setImplicitSize(std::ceil(DigitCells::of(m_text, m_type.font()).width), m_type.line);
    redraw();
}

QImage NumberText::render(const QSize& pixels, double scale)
{
    QImage image = blank(pixels);
    QPainter painter(&image);
    painter.scale(scale, scale);
    painter.setPen(m_color);
    const QFont font = m_type.font();
    const double left = m_alignRight ? width() - DigitCells::of(m_text, font).width : 0;
    DigitCells::draw(painter, m_text, font, left, height() / 2);
    return image;
}

} // namespace tonequill
