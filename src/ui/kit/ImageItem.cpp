#include "ui/kit/ImageItem.h"

#include <QQuickWindow>
#include <QSGImageNode>

namespace tonequill {

namespace {

constexpr int kLargestInAtlas = 256; // pixels a side: icons, thumbnails and numbers at scale 3

} // namespace

ImageItem::ImageItem(QQuickItem* parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    setSmooth(false); // the pixels of the image are those of the screen
}

QImage ImageItem::blank(const QSize& pixels)
{
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void ImageItem::redraw()
{
    if (isComponentComplete() && window())
        polish();
}

void ImageItem::componentComplete()
{
    QQuickItem::componentComplete();
    redraw();
}

void ImageItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        redraw();
}

void ImageItem::itemChange(ItemChange change, const ItemChangeData& data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        redraw();
}

void ImageItem::updatePolish()
{
    m_scale = window() ? window()->effectiveDevicePixelRatio() : 1;
    const QSize pixels(int(std::ceil(width() * m_scale - 0.01)), int(std::ceil(height() * m_scale - 0.01)));
    m_image = pixels.isEmpty() ? QImage() : render(pixels, m_scale);
    m_textureIsStale = true;
    update();
}

QSGNode* ImageItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*)
{
    auto* node = static_cast<QSGImageNode*>(old);
    if (m_image.isNull()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        m_textureIsStale = true;
    }
    if (m_textureIsStale) {
        QQuickWindow::CreateTextureOptions options = QQuickWindow::TextureHasAlphaChannel;
        // Small pictures share a texture and are drawn in one go; a large one would fill it.
        options.setFlag(QQuickWindow::TextureCanUseAtlas, std::max(m_image.width(), m_image.height()) <= kLargestInAtlas);
        node->setTexture(window()->createTextureFromImage(m_image, options));
        m_textureIsStale = false;
    }
    node->setFiltering(smooth() ? QSGTexture::Linear : QSGTexture::Nearest);
    node->setRect(QRectF(QPointF(), QSizeF(m_image.size()) / m_scale));
    return node;
}

} // namespace tonequill
