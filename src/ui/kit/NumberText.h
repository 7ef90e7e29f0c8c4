#pragma once

#include "ui/kit/DesignTokens.h"
#include "ui/kit/ImageItem.h"

#include <QFont>

class QPainter;

namespace tonequill {

// Where each character of a text stands when every digit takes a cell as wide
// as "0", and how wide the whole is. Other characters keep their own width.
struct DigitCells {
    std::vector<double> positions; // of each UTF-16 unit's left edge
    double width = 0;
    static DigitCells of(const QString& text, const QFont& font);

    // Draws a text so, from `left` and with the line's middle at `middle`, in the
    // painter's units and with its pen.
    static void draw(QPainter& painter, const QString& text, const QFont& font, double left, double middle);
};

// A number that changes or stands in a column: its digits keep their places.
class NumberText : public tonequill::ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    Q_PROPERTY(tonequill::TypeStyle type READ type WRITE setType NOTIFY typeChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)
    Q_PROPERTY(bool alignRight READ alignRight WRITE setAlignRight NOTIFY alignRightChanged FINAL)

public:
    explicit NumberText(QQuickItem* parent = nullptr) : ImageItem(parent) {}

    const QString& text() const { return m_text; }
    void setText(const QString& text);
    const TypeStyle& type() const { return m_type; }
    void setType(const TypeStyle& type);
    QColor color() const { return m_color; }
    void setColor(const QColor& color);
    bool alignRight() const { return m_alignRight; }
    void setAlignRight(bool alignRight);

Q_SIGNALS:
    void textChanged();
    void typeChanged();
    void colorChanged();
    void alignRightChanged();

private:
    void measure();
    QImage render(const QSize& pixels, double scale) override;

    QString m_text;
    TypeStyle m_type;
    QColor m_color;
    bool m_alignRight = false;
};

} // namespace tonequill
