#pragma once

#include "ui/kit/ImageItem.h"

#include <QQuickWindow>

namespace tonequill::test {

// A window of the software scene graph that shows one item which draws itself.
class PaintedItem {
public:
    PaintedItem()
    {
        window.resize(200, 100);
        window.setColor(Qt::white);
        window.show();
    }

    // What the window shows of an item.
    QImage shown(QQuickItem& item, double width, double height)
    {
        item.setParentItem(window.contentItem());
        item.setSize({width, height});
        static_cast<ImageItem&>(item).polish();
        return window.grabWindow().copy(0, 0, int(width), int(height));
    }

    static int count(const QImage& image, const QColor& color)
    {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == color;
        }
        return count;
    }

    QQuickWindow window;
};

// One step apart at most: what rounding leaves of a gradient's end.
inline bool isNear(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) <= 1 && std::abs(a.green() - b.green()) <= 1 && std::abs(a.blue() - b.blue()) <= 1;
}

// Items made in C++ are complete from the start only for themselves.
template <typename Item>
struct Complete : Item {
    Complete() { this->componentComplete(); }
};

} // namespace tonequill::test
