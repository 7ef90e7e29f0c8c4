#include "ui/editor/KeyMonitor.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QQuickWindow>

namespace tonequill {

KeyMonitor::~KeyMonitor()
{
    watch(nullptr);
}

void KeyMonitor::itemChange(ItemChange change, const ItemChangeData& data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange)
        watch(data.window);
}

void KeyMonitor::watch(QQuickWindow* window)
{
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (m_window)
        m_window->installEventFilter(this);
}

bool KeyMonitor::eventFilter(QObject* object, QEvent* event)
{
    if (object != m_window || !m_sound)
        return QQuickItem::eventFilter(object, event);
    if (event->type() == QEvent::KeyPress)
        return takeKey(*static_cast<QKeyEvent*>(event));
    if (event->type() == QEvent::MouseButtonPress) {
        QQuickItem* field = textField();
        if (field && !field->contains(field->mapFromScene(static_cast<QMouseEvent*>(event)->position())))
            Q_EMIT editingEnded();
    }
    return false;
}

bool KeyMonitor::takeKey(const QKeyEvent& key)
{
    if (textField()) // Escape is the field's own: it knows what to put back
        return false;
    constexpr auto kHeld = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (key.key() != Qt::Key_Space || (key.modifiers() & kHeld) || !m_sound->isOpen() || isInPopup())
        return false;
    if (!key.isAutoRepeat())
        m_sound->playback()->toggle();
    return true;
}

QQuickItem* KeyMonitor::textField() const
{
    QQuickItem* item = m_window ? m_window->activeFocusItem() : nullptr;
    return item && item->flags().testFlag(ItemAcceptsInputMethod) ? item : nullptr;
}

bool KeyMonitor::isInPopup() const
{
    for (const QQuickItem* item = m_window->activeFocusItem(); item; item = item->parentItem()) {
        if (item->inherits("QQuickPopupItem"))
            return true;
    }
    return false;
}

} // namespace tonequill
