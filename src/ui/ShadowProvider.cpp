#include "ui/ShadowProvider.h"

#include "ui/DesignTokens.h"

#include <QPainter>
#include <QPainterPath>

#include <numeric>
#include <vector>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

// A running mean along each row; three passes come within 3 % of a Gaussian.
void blurRows(std::vector<float>& values, int width, int height, int radius)
{
    std::vector<float> sums(std::size_t(width) + 1);
    for (int y = 0; y < height; ++y) {
        float* row = values.data() + std::ptrdiff_t(y) * width;
        std::partial_sum(row, row + width, sums.begin() + 1);
        for (int x = 0; x < width; ++x) {
            const auto from = std::size_t(std::max(0, x - radius));
            const auto to = std::size_t(std::min(width, x + radius + 1));
            row[x] = (sums[to] - sums[from]) / float(2 * radius + 1);
        }
    }
}

std::vector<float> transposed(const std::vector<float>& values, int width, int height)
{
    std::vector<float> result(values.size());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            result[std::size_t(x) * std::size_t(height) + std::size_t(y)] =
                values[std::size_t(y) * std::size_t(width) + std::size_t(x)];
    }
    return result;
}

} // namespace

ShadowProvider::ShadowProvider() : QQuickImageProvider(Image)
{}

QImage ShadowProvider::requestImage(const QString& id, QSize* size, const QSize&)
{
    const QStringList parts = id.split(u'/');
    const ShadowLayer layer{parts.value(1).toDouble(), parts.value(0).toDouble(), QColor(u'#' + parts.value(3))};
    const double radius = parts.value(2).toDouble();
    const int edge = layer.margin();
    const int side = 2 * (2 * edge + int(std::ceil(radius))) + 1;
    const QRectF box(edge, edge, side - 2 * edge, side - 2 * edge);

    QImage shape(side, side, QImage::Format_Alpha8);
    shape.fill(0);
    {
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawRoundedRect(box.translated(0, layer.y), radius, radius);
    }
    std::vector<float> alpha(std::size_t(side) * std::size_t(side));
    for (int row = 0; row < side; ++row) {
        const uchar* line = shape.constScanLine(row);
        std::copy(line, line + side, alpha.begin() + std::ptrdiff_t(row) * side);
    }
    // CSS: the standard deviation is half the blur; three means of this radius have it.
    const int mean = int(std::lround(layer.blur / 2 * 0.94));
    for (int pass = 0; pass < 3 && mean > 0; ++pass) {
        blurRows(alpha, side, side, mean);
        alpha = transposed(alpha, side, side);
        blurRows(alpha, side, side, mean);
        alpha = transposed(alpha, side, side);
    }

    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < side; ++row) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
        for (int x = 0; x < side; ++x) {
            const float cover = alpha[std::size_t(row) * std::size_t(side) + std::size_t(x)] / 255;
            line[x] = qPremultiply(qRgba(layer.color.red(), layer.color.green(), layer.color.blue(),
                                         int(std::lround(cover * float(layer.color.alpha())))));
        }
    }
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(box, radius, radius);
    painter.end();
    if (size)
        *size = image.size();
    return image;
}

} // namespace tonequill
