#pragma once

#include "ui/kit/ImageItem.h"

namespace tonequill {

// The ground of every window: the theme's base colour under its diagonal gradient.
class WindowBackground : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit WindowBackground(QQuickItem* parent = nullptr);

private:
    QImage render(const QSize& pixels, double scale) override;
};

} // namespace tonequill
