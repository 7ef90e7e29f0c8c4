#include "ui/WaveItems.h"

#include "ui/WaveGeometry.h"

#include <QPainter>

namespace tonequill {

namespace {

// Columns of one pixel that grow from the middle line; silence leaves a line of
// `least` pixels. The ends are blended, so that a slope doesn't climb in stairs.
void drawColumns(QImage& image, const std::vector<float>& heights, const QColor& color, double least)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double middle = image.height() / 2.0;
    for (std::size_t x = 0; x < heights.size(); ++x) {
        const double half = std::max(std::min(double(heights[x]), 1.0) * middle, least / 2);
        painter.fillRect(QRectF(double(x), middle - half, 1, 2 * half), color);
    }
}

} // namespace

void WaveThumbnail::setLevels(const Levels& levels)
{
    if (levels == m_levels)
        return;
    m_levels = levels;
    redraw();
    Q_EMIT levelsChanged();
}

void WaveThumbnail::setColor(const QColor& color)
{
    if (color == m_color)
        return;
    m_color = color;
    redraw();
    Q_EMIT colorChanged();
}

QImage WaveThumbnail::render(const QSize& pixels, double scale)
{
    QImage image = blank(pixels);
    const auto count = std::size_t(m_levels.values.size());
    if (count == 0)
        return image;
    std::vector<float> heights(std::size_t(pixels.width()));
    for (std::size_t x = 0; x < heights.size(); ++x)
        heights[x] = m_levels.values[qsizetype(x * count / heights.size())];
    drawColumns(image, heights, m_color, scale);
    return image;
}

QImage WaveformView::render(const QSize& pixels, double scale)
{
    QImage image = blank(pixels);
    if (!m_envelope.data)
        return image;
    const WaveGeometry::View view{m_startSeconds, m_endSeconds, double(pixels.width())};
    const Envelope::Data& data = *m_envelope.data;
    drawColumns(image, WaveGeometry::columns(data.peak, data.hopSeconds, view), m_peakColor, scale);
    drawColumns(image, WaveGeometry::columns(data.rms, data.hopSeconds, view), m_rmsColor, scale);
    return image;
}

} // namespace tonequill
