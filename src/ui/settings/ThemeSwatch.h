#pragma once

#include "ui/kit/ImageItem.h"

#include <QColor>

namespace tonequill {

// A theme in small: its gradient, and a bar of its accent.
class ThemeSwatch : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor start MEMBER m_start NOTIFY changed FINAL)
    Q_PROPERTY(QColor end MEMBER m_end NOTIFY changed FINAL)
    Q_PROPERTY(QColor accent MEMBER m_accent NOTIFY changed FINAL)
    Q_PROPERTY(QColor edge MEMBER m_edge NOTIFY changed FINAL) // around the bar
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY changed FINAL)
    Q_PROPERTY(QSizeF bar MEMBER m_bar NOTIFY changed FINAL) // with its edge

public:
    explicit ThemeSwatch(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void changed();

private:
    QImage render(const QSize& pixels, double scale) override;

    QColor m_start, m_end, m_accent, m_edge;
    double m_radius = 0;
    QSizeF m_bar;
};

} // namespace tonequill
