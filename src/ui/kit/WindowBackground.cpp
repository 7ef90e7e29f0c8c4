#include "ui/kit/WindowBackground.h"

#include "ui/kit/ThemeStore.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRgba64>

#include <array>
#include <vector>

namespace tonequill {

namespace {

constexpr int kRampSteps = 4096; // several for each pixel of the longest diagonal that is drawn

// The colours along the gradient, in 256ths of a step of the screen.
using Ramp = std::vector<std::array<int, 3>>;

// Added before the fraction is cut off, it turns steps into a texture too fine
// to see: on a ground this soft, steps would show as stripes (ordered dithering
// after Bayer, 1973).
constexpr std::array<std::array<int, 4>, 4> kBayer{
    {{8, 136, 40, 168}, {200, 72, 232, 104}, {56, 184, 24, 152}, {248, 120, 216, 88}}};

Ramp rampOf(const Palette& palette)
{
    // Drawn with 16 bits for each channel.
    QImage line(kRampSteps, 1, QImage::Format_RGBA64_Premultiplied);
    line.fill(palette.windowBase);
    QLinearGradient gradient(0, 0, kRampSteps, 0);
    gradient.setStops(palette.windowStops);
    QPainter(&line).fillRect(line.rect(), gradient);
    Ramp ramp(kRampSteps);
    const auto* colors = reinterpret_cast<const QRgba64*>(line.constScanLine(0));
    for (std::size_t i = 0; i < ramp.size(); ++i) {
        const auto units = [](quint16 part) { return int(qint64(part) * 255 * 256 / 65535); };
        ramp[i] = {units(colors[i].red()), units(colors[i].green()), units(colors[i].blue())};
    }
    return ramp;
}

} // namespace

WindowBackground::WindowBackground(QQuickItem* parent) : ImageItem(parent)
{
    connect(&ThemeStore::shared().theme(), &Theme::changed, this, [this] { redraw(); });
}

QImage WindowBackground::render(const QSize& pixels, double)
{
    const Palette& palette = ThemeStore::shared().theme().palette();
    const Ramp ramp = rampOf(palette);
    QImage image(pixels, QImage::Format_RGB32);
    // How far a pixel lies on the way from the top left corner to the bottom
    // right one: its projection on that diagonal.
    const double width = pixels.width();
    const double height = pixels.height();
    const double perUnit = (kRampSteps - 1) / (width * width + height * height);
    for (int y = 0; y < pixels.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const auto& thresholds = kBayer[std::size_t(y) % kBayer.size()];
        for (int x = 0; x < pixels.width(); ++x) {
            const auto& color = ramp[std::size_t((x * width + y * height) * perUnit + 0.5)];
            const int threshold = thresholds[std::size_t(x) % thresholds.size()];
            line[x] = qRgb((color[0] + threshold) >> 8, (color[1] + threshold) >> 8, (color[2] + threshold) >> 8);
        }
    }
    return image;
}

} // namespace tonequill
