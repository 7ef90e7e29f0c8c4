#include "ui/wave/WaveItems.h"

#include "ui/wave/WaveColumns.h"

namespace tonequill {

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
    drawColumns(image, heights, scale, [this](std::size_t) { return m_color; });
    return image;
}

} // namespace tonequill
