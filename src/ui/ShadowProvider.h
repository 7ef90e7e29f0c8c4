#pragma once

#include <QQuickImageProvider>

namespace tonequill {

// Draws one layer of a drop shadow for a BorderImage: "image://shadow/BLUR/Y/
// RADIUS/AARRGGBB", measures in pixels. The shadow lies around a rounded
// rectangle, blurred and moved down by Y, and leaves the rectangle itself free,
// so that it never shows through a translucent surface. The picture reaches
// ShadowLayer::margin over the rectangle; twice that and the radius is what a
// BorderImage must not stretch.
class ShadowProvider : public QQuickImageProvider {
public:
    ShadowProvider();
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace tonequill
