#pragma once

#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace tonequill {

// An item that shows a picture which it draws itself, at exactly the pixels of
// the screen: crisp at every scale, and the same with and without OpenGL, whose
// absence rules out geometry of our own. It draws in the window's thread, once
// for each change, just before the next frame.
//
// Its heirs write tonequill::ImageItem: the type registration takes the name of
// a base as it stands, and QML's tools would lose it without the namespace.
class ImageItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit ImageItem(QQuickItem* parent = nullptr);

    // The picture as it was last drawn; null before the first frame.
    const QImage& image() const { return m_image; }

protected:
    // Asks for render() before the next frame.
    void redraw();

    // Draws the item into an image of `pixels`, which are `scale` times the
    // item's size. REQUIRES: pixels is not empty.
    virtual QImage render(const QSize& pixels, double scale) = 0;

    // A transparent image of that size.
    static QImage blank(const QSize& pixels);

    void componentComplete() override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;

private:
    QImage m_image;
    double m_scale = 1;
    bool m_textureIsStale = false;
};

} // namespace tonequill
