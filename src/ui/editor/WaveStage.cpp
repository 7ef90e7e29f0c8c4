#include "ui/editor/WaveStage.h"

#include "base/TimeText.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace tonequill {

namespace {

constexpr double kWheelPixels = 0.5;     // of a wheel's eighths of a degree: 60 pixels a notch
constexpr double kDragScroll = 0.25;     // of the way that a handle is dragged beyond the view
constexpr double kWheelZoom = 1.0 / 480; // a notch of the wheel zooms by 2^(1/4)

constexpr double kFingerReach = 3; // times a mouse's: two fingers first part for a pinch

// How far a press may stray before it is no click any more.
double clickReach(const QMouseEvent& event)
{
    const double reach = QGuiApplication::styleHints()->startDragDistance();
    return event.deviceType() == QInputDevice::DeviceType::TouchScreen ? reach * kFingerReach : reach;
}

double sidewaysOf(const QWheelEvent& wheel)
{
    const QPointF pixels = wheel.pixelDelta();
    const QPointF by = pixels.isNull() ? QPointF(wheel.angleDelta()) * kWheelPixels : pixels;
    return std::abs(by.x()) > std::abs(by.y()) ? by.x() : by.y();
}

} // namespace

static_assert(int(RangeGrip::Edge::none) == WaveStage::NoGrip && int(RangeGrip::Edge::start) == WaveStage::StartGrip &&
              int(RangeGrip::Edge::end) == WaveStage::EndGrip);

WaveStage::WaveStage(QQuickItem* parent) : QQuickItem(parent)
{
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(true);
    setClip(true);
}

void WaveStage::setSound(SoundView* sound)
{
    if (sound == m_sound)
        return;
    m_sound = sound;
    connect(sound, &SoundView::opened, this, &WaveStage::showWhole);
    connect(sound, &SoundView::changed, this, &WaveStage::takeDuration);
    const EditorModel* model = &editor();
    connect(model, &EditorModel::rangeChanged, this, &WaveStage::showRange);
    connect(model, &EditorModel::cursorChanged, this, &WaveStage::cursorMoved);
    connect(model, &EditorModel::playheadChanged, this, &WaveStage::followPlayhead);
    takeDuration();
    Q_EMIT soundChanged();
}

// Where things are

double WaveStage::scrollX() const
{
    return std::round(m_view.scrollX);
}

double WaveStage::startSeconds() const
{
    return m_view.contentWidth() > 0 ? scrollX() / m_view.contentWidth() * m_view.span() : 0;
}

double WaveStage::endSeconds() const
{
    return startSeconds() + m_view.span() / m_view.zoom;
}

double WaveStage::scrollShare() const
{
    return m_view.contentWidth() > 0 ? m_view.scrollX / m_view.contentWidth() : 0;
}

double WaveStage::startX() const
{
    return m_sound ? shown(editor().start()) : 0;
}

double WaveStage::endX() const
{
    return m_sound ? shown(editor().end()) : 0;
}

double WaveStage::cursorX() const
{
    return m_sound && editor().cursor() ? shown(*editor().cursor()) : -1;
}

bool WaveStage::hasPlayhead() const
{
    return m_sound && editor().playhead();
}

double WaveStage::playheadX() const
{
    return hasPlayhead() ? shown(*editor().playhead()) : startX();
}

QString WaveStage::hoverText() const
{
    return TimeText::exactPlace(m_view.secondsAt(m_hoverX));
}

double WaveStage::pillX(double pillWidth, double startX, double endX) const
{
    return RangeGrip::pillX(startX, endX, width(), pillWidth);
}

// Zoom and scroll

void WaveStage::change(const std::function<void(WaveZoom&)>& change)
{
    const WaveZoom before = m_view;
    change(m_view);
    if (m_view == before)
        return;
    Q_EMIT viewChanged();
    Q_EMIT rangeMoved();
    Q_EMIT cursorMoved();
    Q_EMIT playheadMoved();
    Q_EMIT hoverChanged();
}

void WaveStage::takeDuration()
{
    change([this](WaveZoom& view) { view.duration = m_sound->duration(); });
}

void WaveStage::zoomIn()
{
    change([](WaveZoom& view) { view.zoomAtMiddle(WaveZoom::kStepIn); });
}

void WaveStage::zoomOut()
{
    change([](WaveZoom& view) { view.zoomAtMiddle(WaveZoom::kStepOut); });
}

void WaveStage::zoomToSelection()
{
    change([this](WaveZoom& view) { view.zoomTo(editor().start(), editor().end()); });
}

void WaveStage::showWhole()
{
    change([](WaveZoom& view) { view.showWhole(); });
}

void WaveStage::scrollToShare(double share)
{
    change([share](WaveZoom& view) { view.scrollTo(share * view.contentWidth()); });
}

void WaveStage::pinch(double scale, double x)
{
    if (scale <= 0)
        return;
    const double factor = scale / m_pinched;
    const double before = zoom();
    change([factor, x](WaveZoom& view) { view.zoomBy(factor, view.scrollX + x); });
    // A step that is too small for the zoom is kept for the next one; what goes
    // beyond the zoom's ends is forgotten, so that the way back starts at once.
    const bool isAtEnd = factor < 1 ? before <= 1 : before >= WaveZoom::kLargest;
    if (zoom() != before || isAtEnd)
        m_pinched = scale;
}

void WaveStage::showRange()
{
    if (!isDragging())
        change([this](WaveZoom& view) { view.reveal(editor().start(), editor().end()); });
    Q_EMIT rangeMoved();
}

void WaveStage::followPlayhead()
{
    if (const auto& playhead = editor().playhead(); playhead && !isDragging())
        change([&playhead](WaveZoom& view) { view.follow(*playhead); });
    Q_EMIT playheadMoved();
}

void WaveStage::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.width() != oldGeometry.width())
        change([&newGeometry](WaveZoom& view) { view.resize(newGeometry.width()); });
}

void WaveStage::wheelEvent(QWheelEvent* event)
{
    if (event->modifiers() & Qt::ControlModifier) {
        const double factor = std::exp2(event->angleDelta().y() * kWheelZoom);
        change([factor, x = event->position().x()](WaveZoom& view) { view.zoomBy(factor, view.scrollX + x); });
    } else {
        change([by = sidewaysOf(*event)](WaveZoom& view) { view.scrollTo(view.scrollX - by); });
    }
    hover(event->position().x());
    event->accept();
}

// The pointer

void WaveStage::hover(double x)
{
    m_isHovered = true;
    m_hoverX = x;
    m_hoveredEdge = isDragging() ? m_grip.edge : RangeGrip::edgeAt(x, startX(), endX());
    setCursor(m_hoveredEdge == RangeGrip::Edge::none ? Qt::ArrowCursor : Qt::SizeHorCursor);
    Q_EMIT hoverChanged();
}

void WaveStage::hoverMoveEvent(QHoverEvent* event)
{
    hover(event->position().x());
}

void WaveStage::hoverLeaveEvent(QHoverEvent*)
{
    m_isHovered = false;
    m_hoveredEdge = RangeGrip::Edge::none;
    Q_EMIT hoverChanged();
}

void WaveStage::mousePressEvent(QMouseEvent* event)
{
    const double x = event->position().x();
    hover(x);
    m_pressSeconds = m_view.secondsAt(x);
    m_grip.press(x, startX(), endX(), m_sound->isReady() ? RangeGrip::Range::canBeTaken : RangeGrip::Range::cannot);
}

void WaveStage::mouseMoveEvent(QMouseEvent* event)
{
    const double x = event->position().x();
    m_grip.move(x, clickReach(*event));
    const double beyond = x - std::clamp(x, 0.0, width());
    if (isDragging() && beyond != 0) // the wave comes along, the faster the farther
        change([beyond](WaveZoom& view) { view.scrollTo(view.scrollX + beyond * kDragScroll); });
    const double seconds = m_view.secondsAt(m_grip.edgeX(x));
    if (m_grip.edge == RangeGrip::Edge::start)
        editor().dragStart(seconds);
    else if (m_grip.edge == RangeGrip::Edge::end)
        editor().dragEnd(seconds);
    else if (m_grip.isSweep)
        editor().dragRange(m_pressSeconds, seconds);
    hover(x);
}

void WaveStage::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_grip.isClick)
        editor().seek(m_view.secondsAt(event->position().x()));
    endGrip();
}

void WaveStage::mouseUngrabEvent()
{
    endGrip();
}

void WaveStage::endGrip()
{
    if (m_grip.release())
        editor().endDrag();
}

} // namespace tonequill
