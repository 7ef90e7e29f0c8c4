#include "ui/kit/ShadowImage.h"

#include <QPainter>

#include <numeric>
#include <vector>

namespace tonequill {

namespace {

using Alpha = std::vector<float>;

// A running mean along each row; three passes come within 3 % of a Gaussian.
void blurRows(Alpha& values, int width, int height, int radius)
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

Alpha transposed(const Alpha& values, int width, int height)
{
    Alpha result(values.size());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            result[std::size_t(x) * std::size_t(height) + std::size_t(y)] =
                values[std::size_t(y) * std::size_t(width) + std::size_t(x)];
    }
    return result;
}

// A blurred rounded rectangle that lies `inset` inside an image of `size`, in one colour.
QImage blurred(const QSize& size, double inset, double radius, double blur, const QColor& color)
{
    QImage shape(size, QImage::Format_Alpha8);
    shape.fill(0);
    QPainter painter(&shape);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(shape.rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
    painter.end();

    Alpha alpha(std::size_t(size.width()) * std::size_t(size.height()));
    for (int y = 0; y < size.height(); ++y)
        std::copy_n(shape.constScanLine(y), size.width(), alpha.begin() + std::ptrdiff_t(y) * size.width());
    // In CSS the standard deviation is half the blur; three means of this radius have it.
    const int mean = int(std::lround(blur / 2 * 0.94));
    for (int pass = 0; pass < 3 && mean > 0; ++pass) {
        blurRows(alpha, size.width(), size.height(), mean);
        alpha = transposed(alpha, size.width(), size.height());
        blurRows(alpha, size.height(), size.width(), mean);
        alpha = transposed(alpha, size.height(), size.width());
    }

    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const float* cover = alpha.data() + std::ptrdiff_t(y) * size.width();
        for (int x = 0; x < size.width(); ++x)
            line[x] = qPremultiply(
                qRgba(color.red(), color.green(), color.blue(), int(std::lround(cover[x] / 255 * float(color.alpha())))));
    }
    return image;
}

// Draws `image` over `target`: its corners as they are, its middle row and
// column stretched.
void drawStretched(QPainter& painter, const QImage& image, const QRect& target)
{
    const int halfWidth = image.width() / 2;
    const int halfHeight = image.height() / 2;
    const int sourceX[] = {0, halfWidth, image.width() - halfWidth, image.width()};
    const int sourceY[] = {0, halfHeight, image.height() - halfHeight, image.height()};
    const int targetX[] = {0, halfWidth, target.width() - halfWidth, target.width()};
    const int targetY[] = {0, halfHeight, target.height() - halfHeight, target.height()};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const QRect from(QPoint(sourceX[column], sourceY[row]), QPoint(sourceX[column + 1] - 1, sourceY[row + 1] - 1));
            const QRect to(QPoint(targetX[column], targetY[row]), QPoint(targetX[column + 1] - 1, targetY[row + 1] - 1));
            if (!from.isEmpty() && !to.isEmpty())
                painter.drawImage(to.translated(target.topLeft()), image, from);
        }
    }
}

} // namespace

void ShadowImage::setLayers(const QList<ShadowLayer>& layers)
{
    if (layers == m_layers)
        return;
    m_layers = layers;
    redraw();
    Q_EMIT changed();
}

void ShadowImage::setRadius(double radius)
{
    if (radius == m_radius)
        return;
    m_radius = radius;
    redraw();
    Q_EMIT changed();
}

int ShadowImage::margin() const
{
    int margin = 0;
    for (const ShadowLayer& layer : m_layers)
        margin = std::max(margin, layer.margin());
    return margin;
}

QImage ShadowImage::render(const QSize& pixels, double scale)
{
    if (m_layers.isEmpty())
        return {};
    QImage image = blank(pixels);
    QPainter painter(&image);
    const double inset = margin() * scale;
    for (const ShadowLayer& layer : m_layers) {
        // A side longer than this is the same in its middle, and isn't worth blurring.
        const int longest = 2 * int(std::ceil(inset + (layer.blur + m_radius) * scale)) + 1;
        const QSize size(std::min(pixels.width(), longest), std::min(pixels.height(), longest));
        const QImage shadow = blurred(size, inset, m_radius * scale, layer.blur * scale, layer.color);
        drawStretched(painter, shadow, image.rect().translated(0, int(std::lround(layer.y * scale))));
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(image.rect()).adjusted(inset, inset, -inset, -inset), m_radius * scale, m_radius * scale);
    return image;
}

} // namespace tonequill
