#include "ui/wave/WaveformView.h"

#include "ui/wave/WaveColumns.h"
#include "ui/wave/WaveGeometry.h"

#include <algorithm>

namespace tonequill {

namespace {

QColor mixed(const QColor& from, const QColor& to, double share)
{
    const auto part = [share](float a, float b) { return std::lerp(a, b, float(share)); };
    return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()), part(from.blueF(), to.blueF()));
}

} // namespace

void WaveformView::itemChange(ItemChange change, const ItemChangeData& data)
{
    ImageItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged && data.boolValue)
        redraw();
}

void WaveformView::updatePolish()
{
    if (isVisible())
        ImageItem::updatePolish();
}

QImage WaveformView::render(const QSize& pixels, double scale)
{
    QImage image = blank(pixels);
    if (!m_envelope.data)
        return image;
    const WaveGeometry::View view{m_startSeconds, m_endSeconds, double(pixels.width())};
    const Envelope::Data& data = *m_envelope.data;
    const double from = view.xOf(m_rangeStart);
    const double to = view.xOf(m_rangeEnd);
    const auto isInside = [from, to](std::size_t column) { return double(column) + 0.5 >= from && double(column) + 0.5 < to; };
    const auto peaks = data.fine.values.empty() ? WaveGeometry::columns(data.peak, data.hopSeconds, view)
                                                : WaveGeometry::columns(data.fine.values, data.fine.hopSeconds, view);
    if (m_endColor.isValid()) {
        const double length = std::max(to - from, 1.0);
        drawColumns(image, peaks, scale, [&](std::size_t column) {
            const double share = std::clamp((double(column) - from) / length, 0.0, 1.0);
            return isInside(column) ? mixed(m_rangePeakColor, m_endColor, share) : QColor(Qt::transparent);
        });
        return image;
    }
    drawColumns(image, peaks, scale, [&](std::size_t column) { return isInside(column) ? m_rangePeakColor : m_peakColor; });
    auto rms = WaveGeometry::columns(data.rms, data.hopSeconds, view);
    for (std::size_t column = 0; column < rms.size(); ++column)
        rms[column] = std::min(rms[column], peaks[column]); // it is of longer stretches
    drawColumns(image, rms, scale, [&](std::size_t column) { return isInside(column) ? m_rangeRmsColor : m_rmsColor; });
    return image;
}

} // namespace tonequill
