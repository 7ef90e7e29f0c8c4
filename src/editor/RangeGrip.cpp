#include "editor/RangeGrip.h"

#include <algorithm>
#include <cmath>

namespace tonequill {

namespace {

constexpr double kPillGap = 9; // between the pill and the range's edge

} // namespace

RangeGrip::Edge RangeGrip::edgeAt(double x, double startX, double endX)
{
    const double toStart = std::abs(x - startX);
    const double toEnd = std::abs(x - endX);
    if (std::min(toStart, toEnd) > kHit / 2)
        return Edge::none;
    if (toStart == toEnd)
        return x < startX ? Edge::start : Edge::end;
    return toStart < toEnd ? Edge::start : Edge::end;
}

void RangeGrip::press(double x, double startX, double endX, Range range)
{
    m_pressX = x;
    edge = range == Range::canBeTaken ? edgeAt(x, startX, endX) : Edge::none;
    isClick = edge == Edge::none;
    isSweep = false;
    m_maySweep = isClick && range == Range::canBeTaken;
    m_offset = edge == Edge::start ? x - startX : edge == Edge::end ? x - endX : 0;
}

void RangeGrip::move(double x, double clickReach)
{
    if (std::abs(x - m_pressX) < clickReach)
        return;
    isClick = false;
    isSweep = m_maySweep;
}

bool RangeGrip::release()
{
    const bool hasChanged = edge != Edge::none || isSweep;
    edge = Edge::none;
    isClick = isSweep = m_maySweep = false;
    return hasChanged;
}

double RangeGrip::pillX(double startX, double endX, double viewWidth, double pillWidth)
{
    // What of the range is in the view counts.
    const double left = std::clamp(startX, 0.0, viewWidth);
    const double right = std::clamp(endX, 0.0, viewWidth);
    double x = right - kPillGap - pillWidth;
    if (x < left + kPillGap) // beside the range, after it if there is room
        x = right + kPillGap + pillWidth <= viewWidth ? right + kPillGap : left - kPillGap - pillWidth;
    return std::clamp(x, 0.0, std::max(viewWidth - pillWidth, 0.0));
}

} // namespace tonequill
