#include "ui/kit/Icon.h"

#include <QCache>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

QString pathOf(const QString& name)
{
    return u":/icons/%1.svg"_s.arg(name);
}

// The glyph in black at that size. Kept, because a list shows the same few over
// and over and parsing is the costly step; 256 are more than all sizes of all glyphs in use.
QImage shape(const QString& name, int side)
{
    static QCache<std::pair<QString, int>, QImage> shapes(256);
    const std::pair key(name, side);
    if (const QImage* known = shapes.object(key))
        return *known;
    auto* image = new QImage(side, side, QImage::Format_ARGB32_Premultiplied);
    image->fill(Qt::transparent);
    QSvgRenderer renderer(pathOf(name));
    QPainter painter(image);
    renderer.render(&painter);
    painter.end();
    const QImage result = *image;
    shapes.insert(key, image);
    return result;
}

} // namespace

Icon::Icon(QQuickItem* parent) : ImageItem(parent)
{}

bool Icon::exists(const QString& name)
{
    return QFile::exists(pathOf(name));
}

void Icon::setName(const QString& name)
{
    if (name == m_name)
        return;
    m_name = name;
    redraw();
    Q_EMIT nameChanged();
}

void Icon::setColor(const QColor& color)
{
    if (color == m_color)
        return;
    m_color = color;
    redraw();
    Q_EMIT colorChanged();
}

QImage Icon::render(const QSize& pixels, double)
{
    if (m_name.isEmpty())
        return {};
    QImage image = shape(m_name, std::min(pixels.width(), pixels.height()));
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), m_color);
    return image;
}

} // namespace tonequill
