#pragma once

#include "ui/kit/ImageItem.h"

#include <QColor>

namespace tonequill {

// A rounded rectangle with a dashed border: what moves by dragging.
class DashedFrame : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)
    Q_PROPERTY(QColor fillColor MEMBER m_fillColor NOTIFY changed FINAL)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY changed FINAL)

public:
    explicit DashedFrame(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void changed();

private:
    QImage render(const QSize& pixels, double scale) override;

    QColor m_color;
    QColor m_fillColor = Qt::transparent;
    double m_radius = 0;
};

} // namespace tonequill
