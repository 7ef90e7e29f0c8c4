#pragma once

#include "ui/kit/ImageItem.h"

#include <QColor>

namespace tonequill {

// The still picture of a spinner: a quarter of a ring over a fainter whole one.
class ArcItem : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)
    Q_PROPERTY(QColor trackColor MEMBER m_trackColor NOTIFY changed FINAL)

public:
    explicit ArcItem(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void changed();

private:
    QImage render(const QSize& pixels, double scale) override;

    QColor m_color;
    QColor m_trackColor;
};

} // namespace tonequill
