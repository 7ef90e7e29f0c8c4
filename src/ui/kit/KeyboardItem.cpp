#include "ui/kit/KeyboardItem.h"

namespace tonequill {

void KeyboardItem::setHasVisualFocus(bool hasVisualFocus)
{
    if (hasVisualFocus == m_hasVisualFocus)
        return;
    m_hasVisualFocus = hasVisualFocus;
    Q_EMIT hasVisualFocusChanged();
}

void KeyboardItem::focusInEvent(QFocusEvent* event)
{
    QQuickItem::focusInEvent(event);
    const Qt::FocusReason reason = event->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason)
        setHasVisualFocus(true);
}

void KeyboardItem::focusOutEvent(QFocusEvent* event)
{
    QQuickItem::focusOutEvent(event);
    // The window that comes back gives the ring back; another control takes it away.
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        setHasVisualFocus(false);
}

} // namespace tonequill
