#pragma once

#include <QColor>
#include <QImage>

#include <functional>
#include <vector>

namespace tonequill {

// Draws columns of one pixel that grow from the middle line, with a height of
// 0…1 each; silence leaves a line of `least` pixels. The ends are blended, so
// that a slope doesn't climb in stairs. REQUIRES: heights.size() <= image.width().
void drawColumns(QImage& image, const std::vector<float>& heights, double least,
                 const std::function<QColor(std::size_t column)>& color);

} // namespace tonequill
