#pragma once

#include <QQuickItem>

namespace tonequill {

// A stop of the Tab key that isn't a control, such as a list. It knows whether
// the keyboard brought the focus, which is when a ring is shown.
class KeyboardItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool hasVisualFocus READ hasVisualFocus WRITE setHasVisualFocus NOTIFY hasVisualFocusChanged FINAL)

public:
    explicit KeyboardItem(QQuickItem* parent = nullptr) : QQuickItem(parent) { setActiveFocusOnTab(true); }

    bool hasVisualFocus() const { return m_hasVisualFocus; }
    // A key that was used shows the ring, the mouse hides it.
    void setHasVisualFocus(bool hasVisualFocus);

Q_SIGNALS:
    void hasVisualFocusChanged();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool m_hasVisualFocus = false;
};

} // namespace tonequill
