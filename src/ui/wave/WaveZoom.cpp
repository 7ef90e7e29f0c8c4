#include "ui/wave/WaveZoom.h"

#include <algorithm>
#include <cmath>

namespace tonequill {

namespace {

constexpr double kNoDifference = 0.001;
constexpr double kShortestPart = 0.05;   // seconds that a zoom shows of a shorter part
constexpr double kRoomAroundPart = 1.25; // so that the part fills 80 % of the view
constexpr double kPageEnd = 30;          // pixels before the edge at which the page turns
constexpr double kPageStart = 0.15;      // of the view, where the playhead then runs on

} // namespace

double WaveZoom::span() const
{
    return std::max(duration, 0.001);
}

double WaveZoom::contentX(double seconds) const
{
    return seconds / span() * contentWidth();
}

double WaveZoom::secondsAt(double viewX) const
{
    return contentWidth() > 0 ? std::clamp((viewX + scrollX) / contentWidth() * span(), 0.0, std::max(duration, 0.0)) : 0;
}

bool WaveZoom::zoomBy(double factor, double contentX)
{
    const double newZoom = std::clamp(zoom * factor, 1.0, kLargest);
    if (!(std::abs(newZoom - zoom) > kNoDifference) || viewport <= 0) // also for a factor that is no number
        return false;
    const double ratio = contentX / contentWidth();
    const double inView = contentX - scrollX;
    zoom = newZoom;
    scrollTo(ratio * contentWidth() - inView);
    return true;
}

void WaveZoom::zoomTo(double startSeconds, double endSeconds)
{
    const double length = std::max(endSeconds - startSeconds, kShortestPart);
    zoom = std::clamp(span() / (length * kRoomAroundPart), 1.0, kLargest);
    scrollTo(contentX((startSeconds + endSeconds) / 2) - viewport / 2);
}

void WaveZoom::showWhole()
{
    zoom = 1;
    scrollX = 0;
}

bool WaveZoom::follow(double seconds)
{
    const double x = contentX(seconds);
    if (x >= scrollX && x <= scrollX + viewport - kPageEnd)
        return false;
    const double before = scrollX;
    scrollTo(x - kPageStart * viewport);
    return scrollX != before;
}

void WaveZoom::reveal(double startSeconds, double endSeconds)
{
    if (viewX(endSeconds) < 0 || viewX(startSeconds) > viewport)
        scrollTo(contentX((startSeconds + endSeconds) / 2) - viewport / 2);
}

void WaveZoom::scrollTo(double x)
{
    scrollX = std::clamp(x, 0.0, std::max(contentWidth() - viewport, 0.0));
}

void WaveZoom::resize(double newViewport)
{
    const double share = viewport > 0 ? scrollX / viewport : 0;
    viewport = newViewport;
    scrollTo(share * viewport);
}

} // namespace tonequill
