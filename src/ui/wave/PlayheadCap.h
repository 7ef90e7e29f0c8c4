#pragma once

#include "ui/kit/ImageItem.h"

#include <QColor>

namespace tonequill {

// The head of a line over a wave: flat above, pointed below.
class PlayheadCap : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)

public:
    explicit PlayheadCap(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void changed();

private:
    QImage render(const QSize& pixels, double scale) override;

    QColor m_color;
};

} // namespace tonequill
