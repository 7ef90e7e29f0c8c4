#pragma once

#include "ui/kit/DesignTokens.h"
#include "ui/kit/ImageItem.h"

namespace tonequill {

// The drop shadow of a rounded rectangle that lies `margin` inside this item.
// The rectangle itself stays free, so that nothing shows through a translucent
// surface.
class ShadowImage : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<tonequill::ShadowLayer> layers READ layers WRITE setLayers NOTIFY changed FINAL)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY changed FINAL)
    // How far the layers reach at most, in pixels at scale 1.
    Q_PROPERTY(int margin READ margin NOTIFY changed FINAL)

public:
    explicit ShadowImage(QQuickItem* parent = nullptr) : ImageItem(parent) {}

    const QList<ShadowLayer>& layers() const { return m_layers; }
    void setLayers(const QList<ShadowLayer>& layers);
    double radius() const { return m_radius; }
    void setRadius(double radius);
    int margin() const;

Q_SIGNALS:
    void changed();

private:
    QImage render(const QSize& pixels, double scale) override;

    QList<ShadowLayer> m_layers;
    double m_radius = 0;
};

} // namespace tonequill
