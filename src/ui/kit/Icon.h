#pragma once

#include "ui/kit/ImageItem.h"

#include <QColor>

namespace tonequill {

// A glyph of resources/icons in one colour. It is square: the smaller of its
// width and height counts.
class Icon : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT
    // The file's name without ".svg"; nothing is shown for an empty one.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

public:
    explicit Icon(QQuickItem* parent = nullptr);

    const QString& name() const { return m_name; }
    void setName(const QString& name);
    QColor color() const { return m_color; }
    void setColor(const QColor& color);

    // Whether there is such a glyph.
    static bool exists(const QString& name);

Q_SIGNALS:
    void nameChanged();
    void colorChanged();

private:
    QImage render(const QSize& pixels, double scale) override;

    QString m_name;
    QColor m_color = Qt::black;
};

} // namespace tonequill
