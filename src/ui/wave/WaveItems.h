#pragma once

#include "audio/analysis/FinePeaks.h"
#include "ui/kit/ImageItem.h"

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
        FinePeaks fine; // for a close look; empty until they have been read
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

} // namespace tonequill
