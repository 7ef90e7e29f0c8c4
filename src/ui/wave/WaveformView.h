#pragma once

#include "ui/wave/WaveItems.h"

namespace tonequill {

// The large wave over the stretch from startSeconds to endSeconds: the peak over
// the RMS, in two tones of its own inside the range. With an endColor it is what
// has been played: the range alone, in one tone that runs from rangePeakColor to
// endColor. Nothing is drawn while it is hidden.
class WaveformView : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tonequill::Envelope envelope READ envelope WRITE setEnvelope NOTIFY changed FINAL)
    Q_PROPERTY(double startSeconds READ startSeconds WRITE setStartSeconds NOTIFY changed FINAL)
    Q_PROPERTY(double endSeconds READ endSeconds WRITE setEndSeconds NOTIFY changed FINAL)
    Q_PROPERTY(double rangeStart READ rangeStart WRITE setRangeStart NOTIFY changed FINAL) // seconds
    Q_PROPERTY(double rangeEnd READ rangeEnd WRITE setRangeEnd NOTIFY changed FINAL)
    Q_PROPERTY(QColor peakColor READ peakColor WRITE setPeakColor NOTIFY changed FINAL)
    Q_PROPERTY(QColor rmsColor READ rmsColor WRITE setRmsColor NOTIFY changed FINAL)
    Q_PROPERTY(QColor rangePeakColor READ rangePeakColor WRITE setRangePeakColor NOTIFY changed FINAL)
    Q_PROPERTY(QColor rangeRmsColor READ rangeRmsColor WRITE setRangeRmsColor NOTIFY changed FINAL)
    Q_PROPERTY(QColor endColor READ endColor WRITE setEndColor NOTIFY changed FINAL)

public:
    explicit WaveformView(QQuickItem* parent = nullptr) : ImageItem(parent) {}

    const Envelope& envelope() const { return m_envelope; }
    void setEnvelope(const Envelope& envelope) { set(m_envelope, envelope); }
    double startSeconds() const { return m_startSeconds; }
    void setStartSeconds(double seconds) { set(m_startSeconds, seconds); }
    double endSeconds() const { return m_endSeconds; }
    void setEndSeconds(double seconds) { set(m_endSeconds, seconds); }
    double rangeStart() const { return m_rangeStart; }
    void setRangeStart(double seconds) { set(m_rangeStart, seconds); }
    double rangeEnd() const { return m_rangeEnd; }
    void setRangeEnd(double seconds) { set(m_rangeEnd, seconds); }
    QColor peakColor() const { return m_peakColor; }
    void setPeakColor(const QColor& color) { set(m_peakColor, color); }
    QColor rmsColor() const { return m_rmsColor; }
    void setRmsColor(const QColor& color) { set(m_rmsColor, color); }
    QColor rangePeakColor() const { return m_rangePeakColor; }
    void setRangePeakColor(const QColor& color) { set(m_rangePeakColor, color); }
    QColor rangeRmsColor() const { return m_rangeRmsColor; }
    void setRangeRmsColor(const QColor& color) { set(m_rangeRmsColor, color); }
    QColor endColor() const { return m_endColor; }
    void setEndColor(const QColor& color) { set(m_endColor, color); }

Q_SIGNALS:
    void changed();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void updatePolish() override;

private:
    template <typename T>
    void set(T& field, const T& value)
    {
        if (field == value)
            return;
        field = value;
        redraw();
        Q_EMIT changed();
    }
    QImage render(const QSize& pixels, double scale) override;

    Envelope m_envelope;
    double m_startSeconds = 0;
    double m_endSeconds = 0;
    double m_rangeStart = 0;
    double m_rangeEnd = 0;
    QColor m_peakColor;
    QColor m_rmsColor;
    QColor m_rangePeakColor;
    QColor m_rangeRmsColor;
    QColor m_endColor;
};

} // namespace tonequill
