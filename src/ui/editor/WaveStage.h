#pragma once

#include "editor/RangeGrip.h"
#include "ui/editor/SoundView.h"
#include "ui/wave/WaveZoom.h"

#include <QQuickItem>

namespace tonequill {

// The ground of the editor's wave: which stretch of the open sound it shows,
// where everything lies on it, and what the pointer does. It draws nothing; its
// children do, by its positions. All of them are pixels of the view, from its
// left edge; -1 stands for none.
class WaveStage : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tonequill::SoundView* sound READ sound WRITE setSound NOTIFY soundChanged FINAL REQUIRED)
    Q_PROPERTY(double zoom READ zoom NOTIFY viewChanged FINAL)
    Q_PROPERTY(bool isScrollable READ isScrollable NOTIFY viewChanged FINAL)
    Q_PROPERTY(bool canZoomIn READ canZoomIn NOTIFY viewChanged FINAL)
    // The stretch in seconds, on whole pixels, so that a wave that is scrolled
    // looks the same at every place.
    Q_PROPERTY(double startSeconds READ startSeconds NOTIFY viewChanged FINAL)
    Q_PROPERTY(double endSeconds READ endSeconds NOTIFY viewChanged FINAL)
    Q_PROPERTY(double pixelsPerSecond READ pixelsPerSecond NOTIFY viewChanged FINAL)
    Q_PROPERTY(double scrollX READ scrollX NOTIFY viewChanged FINAL)
    Q_PROPERTY(double scrollShare READ scrollShare NOTIFY viewChanged FINAL)   // of a scroll bar's thumb,
    Q_PROPERTY(double visibleShare READ visibleShare NOTIFY viewChanged FINAL) // and its length
    Q_PROPERTY(double startX READ startX NOTIFY rangeMoved FINAL)
    Q_PROPERTY(double endX READ endX NOTIFY rangeMoved FINAL)
    Q_PROPERTY(double cursorX READ cursorX NOTIFY cursorMoved FINAL)
    Q_PROPERTY(bool hasPlayhead READ hasPlayhead NOTIFY playheadMoved FINAL)
    Q_PROPERTY(double playheadX READ playheadX NOTIFY playheadMoved FINAL)
    Q_PROPERTY(bool isHovered READ isHovered NOTIFY hoverChanged FINAL)
    Q_PROPERTY(double hoverX READ hoverX NOTIFY hoverChanged FINAL)
    Q_PROPERTY(QString hoverText READ hoverText NOTIFY hoverChanged FINAL)
    Q_PROPERTY(Grip hoveredGrip READ hoveredGrip NOTIFY hoverChanged FINAL)

public:
    // The order is RangeGrip::Edge's.
    enum Grip { NoGrip, StartGrip, EndGrip };
    Q_ENUM(Grip)

    explicit WaveStage(QQuickItem* parent = nullptr);

    SoundView* sound() const { return m_sound; }
    void setSound(SoundView* sound);
    double zoom() const { return m_view.zoom; }
    bool isScrollable() const { return m_view.isScrollable(); }
    bool canZoomIn() const { return m_view.zoom < WaveZoom::kLargest; }
    double startSeconds() const;
    double endSeconds() const;
    double pixelsPerSecond() const { return m_view.contentX(1); }
    double scrollX() const;
    double scrollShare() const;
    double visibleShare() const { return 1 / m_view.zoom; }
    double startX() const;
    double endX() const;
    double cursorX() const;
    bool hasPlayhead() const;
    double playheadX() const;
    bool isHovered() const { return m_isHovered; }
    double hoverX() const { return m_hoverX; }
    QString hoverText() const;
    Grip hoveredGrip() const { return Grip(int(m_hoveredEdge)); }

    Q_INVOKABLE void zoomIn();
    Q_INVOKABLE void zoomOut();
    Q_INVOKABLE void zoomToSelection();
    Q_INVOKABLE void showWhole();
    Q_INVOKABLE void scrollToShare(double share);
    // A pinch: `scale` since it began, at a place of the view.
    Q_INVOKABLE void beginPinch() { m_pinched = 1; }
    Q_INVOKABLE void pinch(double scale, double x);
    // Where a pill of that width tells the range's length.
    Q_INVOKABLE double pillX(double pillWidth, double startX, double endX) const;

Q_SIGNALS:
    void soundChanged();
    void viewChanged();
    void rangeMoved();
    void cursorMoved();
    void playheadMoved();
    void hoverChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void hoverMoveEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    EditorModel& editor() const { return m_sound->editor(); }
    double shown(double seconds) const { return m_view.contentX(seconds) - scrollX(); }
    void change(const std::function<void(WaveZoom&)>& change);
    void takeDuration();
    void showRange();
    void followPlayhead();
    void hover(double x);
    bool isDragging() const { return m_grip.edge != RangeGrip::Edge::none || m_grip.isSweep; }
    void endGrip();

    SoundView* m_sound = nullptr;
    WaveZoom m_view;
    double m_pinched = 1; // the scale that the zoom has followed
    double m_pressSeconds = 0;
    bool m_isHovered = false;
    double m_hoverX = 0;
    RangeGrip::Edge m_hoveredEdge = RangeGrip::Edge::none;
    RangeGrip m_grip;
};

} // namespace tonequill
