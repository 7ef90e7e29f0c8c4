#include "ui/wave/WaveColumns.h"

#include <QPainter>

namespace tonequill {

void drawColumns(QImage& image, const std::vector<float>& heights, double least,
                 const std::function<QColor(std::size_t column)>& color)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double middle = image.height() / 2.0;
    for (std::size_t x = 0; x < heights.size(); ++x) {
        const double half = std::max(std::min(double(heights[x]), 1.0) * middle, least / 2);
        painter.fillRect(QRectF(double(x), middle - half, 1, 2 * half), color(x));
    }
}

} // namespace tonequill
