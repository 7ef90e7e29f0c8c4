#pragma once

#include "ui/kit/DesignTokens.h"
#include "ui/kit/ImageItem.h"

namespace tonequill {

// The marks and times over a wave.
class TimeRuler : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double startSeconds MEMBER m_startSeconds NOTIFY changed FINAL)
    Q_PROPERTY(double endSeconds MEMBER m_endSeconds NOTIFY changed FINAL)
    Q_PROPERTY(tonequill::TypeStyle type MEMBER m_type NOTIFY changed FINAL)
    Q_PROPERTY(QColor textColor MEMBER m_textColor NOTIFY changed FINAL)
    Q_PROPERTY(QColor tickColor MEMBER m_tickColor NOTIFY changed FINAL)

public:
    explicit TimeRuler(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void changed();

private:
    QImage render(const QSize& pixels, double scale) override;

    double m_startSeconds = 0;
    double m_endSeconds = 0;
    TypeStyle m_type;
    QColor m_textColor;
    QColor m_tickColor;
};

} // namespace tonequill
