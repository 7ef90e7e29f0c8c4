#pragma once

#include "ui/ImageItem.h"

#include <QColor>

#include <memory>
#include <vector>

namespace tonequill {

// The few values of a list row, in 0…1. A cheap value: copies share them.
struct Levels {
    Q_GADGET
    QML_VALUE_TYPE(levels)

public:
    QList<float> values;
    bool operator==(const Levels&) const = default;
};

// The whole envelope of a sound, as it was analysed. A cheap value: copies share it.
struct Envelope {
    Q_GADGET
    QML_VALUE_TYPE(envelope)

public:
    struct Data {
        std::vector<float> peak;
        std::vector<float> rms; // as long as peak
        double hopSeconds = 0.01;
    };
    std::shared_ptr<const Data> data; // null for none
    bool operator==(const Envelope&) const = default;
};

// The small wave of a list row.
class WaveThumbnail : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tonequill::Levels levels READ levels WRITE setLevels NOTIFY levelsChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

public:
    explicit WaveThumbnail(QQuickItem* parent = nullptr) : ImageItem(parent) {}

    const Levels& levels() const { return m_levels; }
    void setLevels(const Levels& levels);
    QColor color() const { return m_color; }
    void setColor(const QColor& color);

Q_SIGNALS:
    void levelsChanged();
    void colorChanged();

private:
    QImage render(const QSize& pixels, double scale) override;

    Levels m_levels;
    QColor m_color;
};

// The large wave: the peak over the RMS, in two tones, over the stretch from
// startSeconds to endSeconds.
class WaveformView : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tonequill::Envelope envelope READ envelope WRITE setEnvelope NOTIFY changed FINAL)
    Q_PROPERTY(double startSeconds READ startSeconds WRITE setStartSeconds NOTIFY changed FINAL)
    Q_PROPERTY(double endSeconds READ endSeconds WRITE setEndSeconds NOTIFY changed FINAL)
    Q_PROPERTY(QColor peakColor READ peakColor WRITE setPeakColor NOTIFY changed FINAL)
    Q_PROPERTY(QColor rmsColor READ rmsColor WRITE setRmsColor NOTIFY changed FINAL)

public:
    explicit WaveformView(QQuickItem* parent = nullptr) : ImageItem(parent) {}

    const Envelope& envelope() const { return m_envelope; }
    void setEnvelope(const Envelope& envelope) { set(m_envelope, envelope); }
    double startSeconds() const { return m_startSeconds; }
    void setStartSeconds(double seconds) { set(m_startSeconds, seconds); }
    double endSeconds() const { return m_endSeconds; }
    void setEndSeconds(double seconds) { set(m_endSeconds, seconds); }
    QColor peakColor() const { return m_peakColor; }
    void setPeakColor(const QColor& color) { set(m_peakColor, color); }
    QColor rmsColor() const { return m_rmsColor; }
    void setRmsColor(const QColor& color) { set(m_rmsColor, color); }

Q_SIGNALS:
    void changed();

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
    QColor m_peakColor;
    QColor m_rmsColor;
};

} // namespace tonequill
