#include "app/model/Selection.h"

#include <algorithm>

namespace tonequill {

namespace {

qsizetype positionOf(const QList<SoundItem>& items, const QUuid& id)
{
    const auto found = std::find_if(items.begin(), items.end(), [&id](const SoundItem& item) { return item.id == id; });
    return found == items.end() ? -1 : found - items.begin();
}

} // namespace

void Selection::setID(std::optional<QUuid> id)
{
    const bool isNew = id != m_id;
    m_id = id;
    if (!m_id)
        setMulti({});
    else if (!m_multi.contains(*m_id))
        setMulti({*m_id});
    if (isNew)
        Q_EMIT idChanged();
}

const SoundItem* Selection::item() const
{
    return m_id ? m_library.find(*m_id) : nullptr;
}

void Selection::openNewest()
{
    if (!item())
        setID(m_library.items().isEmpty() ? std::nullopt : std::optional(m_library.items().first().id));
}

void Selection::setMulti(QSet<QUuid> multi)
{
    if (multi == m_multi)
        return;
    m_multi = std::move(multi);
    Q_EMIT multiChanged();
}

QList<SoundItem> Selection::items() const
{
    QList<SoundItem> marked;
    std::copy_if(m_library.items().begin(), m_library.items().end(), std::back_inserter(marked),
                 [this](const SoundItem& item) { return m_multi.contains(item.id); });
    return marked;
}

void Selection::click(const SoundItem& item, const QList<SoundItem>& shown, Qt::KeyboardModifiers modifiers)
{
    QSet<QUuid> marked = m_multi;
    if (modifiers & Qt::ControlModifier) {
        if (marked.contains(item.id) && marked.size() >= 2) {
            marked.remove(item.id);
            setMulti(marked);
            if (m_id == item.id) {
                const auto next = std::find_if(shown.begin(), shown.end(),
                                               [&marked](const SoundItem& other) { return marked.contains(other.id); });
                setID(next == shown.end() ? std::nullopt : std::optional(next->id));
            }
        } else {
            marked.insert(item.id);
            setMulti(marked);
            setID(item.id);
        }
        return;
    }
    if (modifiers & Qt::ShiftModifier && m_id) {
        const qsizetype anchor = positionOf(shown, *m_id);
        const qsizetype clicked = positionOf(shown, item.id);
        if (anchor >= 0 && clicked >= 0) {
            marked.clear();
            for (qsizetype i = std::min(anchor, clicked); i <= std::max(anchor, clicked); ++i)
                marked.insert(shown[i].id);
            setMulti(marked); // the open sound stays as the anchor of the next shift-click
            return;
        }
    }
    setMulti({item.id});
    setID(item.id);
}

void Selection::selectAll(const QList<SoundItem>& shown)
{
    QSet<QUuid> all;
    for (const SoundItem& item : shown)
        all.insert(item.id);
    setMulti(all);
    if (!m_id && !shown.isEmpty())
        setID(shown.first().id);
}

void Selection::letGo(const QSet<QUuid>& ids)
{
    if (m_id && ids.contains(*m_id))
        setID(std::nullopt);
    setMulti(QSet<QUuid>(m_multi).subtract(ids));
}

} // namespace tonequill
