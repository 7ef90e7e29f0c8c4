#include "ui/library/DropGround.h"

#include <QMimeData>

#include <algorithm>

namespace tonequill {

namespace {

// Whether a field to type in lies under a point of the scene.
bool isField(const QQuickItem& item, const QPointF& scene)
{
    if (!item.isVisible() || item.opacity() <= 0)
        return false;
    if (item.flags().testFlag(QQuickItem::ItemAcceptsInputMethod) && item.contains(item.mapFromScene(scene)))
        return true;
    const QList<QQuickItem*> children = item.childItems();
    return std::any_of(children.begin(), children.end(), [&scene](const QQuickItem* child) { return isField(*child, scene); });
}

} // namespace

DropGround::DropGround(QQuickItem* parent) : QQuickItem(parent)
{
    setFlag(ItemAcceptsDrops);
}

bool DropGround::wants(const QDropEvent& event) const
{
    return m_files && m_files->acceptsDrop(event.mimeData()->urls()) && parentItem() &&
           !isField(*parentItem(), mapToScene(event.position()));
}

void DropGround::look(QDropEvent* event)
{
    const bool isWanted = wants(*event);
    setInviting(isWanted && m_files->invitesDrop(event->mimeData()->urls()));
    if (isWanted)
        event->setDropAction(Qt::CopyAction);
    event->setAccepted(isWanted);
}

void DropGround::dragLeaveEvent(QDragLeaveEvent*)
{
    setInviting(false);
}

void DropGround::dropEvent(QDropEvent* event)
{
    look(event);
    setInviting(false);
    if (event->isAccepted())
        m_files->drop(event->mimeData()->urls());
}

void DropGround::setInviting(bool isInviting)
{
    if (isInviting == m_isInviting)
        return;
    m_isInviting = isInviting;
    Q_EMIT isInvitingChanged();
}

} // namespace tonequill
