#include "ui/editor/KeyMonitor.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

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
    if ((key.modifiers() & kHeld) || !m_sound->isOpen() || isInPopup())
        return false;
    if (key.key() != Qt::Key_Space)
        return takeLetter(key);
    if (!key.isAutoRepeat())
        m_sound->playback()->toggle();
    return true;
}

bool KeyMonitor::takeLetter(const QKeyEvent& key)
{
    if (m_list && m_window->activeFocusItem() == m_list)
        return false;
    PlaybackView& playback = *m_sound->playback();
    const QString letter = key.text().toLower(); // brackets lie on other keys in other countries
    if (letter == u"["_s)
        playback.setStartHere();
    else if (letter == u"]"_s)
        playback.setEndHere();
    else if (letter == u"l"_s && !key.isAutoRepeat())
        playback.setLoop(!playback.loop());
    else
        return false;
    return true;
}

void KeyMonitor::endEditing()
{
    if (textField())
        Q_EMIT editingEnded();
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
