#include "app/model/LibrarySession.h"

#include <algorithm>

namespace tonequill {

LibrarySession::LibrarySession(const LibraryStore& library, Selection& selection, LanguageModel& languageModel, Clock& clock)
    : m_library(library),
      m_selection(selection),
      m_sounds(library.items()),
      m_related(languageModel, clock),
      m_current(selection.id())
{
    for (const SoundItem& item : m_sounds)
        m_ids << item.id;
    connect(&library, &LibraryStore::itemInserted, this, [this](int index) {
        m_ids.insert(index, m_library.items()[index].id);
        find();
    });
    connect(&library, &LibraryStore::itemChanged, this, [this](int index) {
        find();
        if (const int shown = indexOf(m_ids[index]); shown >= 0)
            Q_EMIT recordChanged(shown);
    });
    connect(&library, &LibraryStore::itemRemoved, this, &LibrarySession::removeSound);
    connect(&selection, &Selection::idChanged, this, [this] { setCurrent(m_selection.id()); });
    connect(&m_related, &RelatedWords::wordsChanged, this, &LibrarySession::find);
}

void LibrarySession::setQuery(const QString& query)
{
    if (query == m_query)
        return;
    m_query = query;
    find();
    m_related.setQuery(query, m_searchFoundNothing ? RelatedWords::Found::nothing : RelatedWords::Found::something);
    Q_EMIT queryChanged();
}

void LibrarySession::find()
{
    const QList<SoundItem> found = m_library.search(m_query);
    m_searchFoundNothing = found.isEmpty();
    show(isRelated() ? m_library.containing(m_related.words()) : found);
}

void LibrarySession::show(const QList<SoundItem>& sounds)
{
    // What stays at both ends stays on the screen; the sounds between are exchanged.
    const auto isSame = [](const SoundItem& a, const SoundItem& b) { return a.id == b.id; };
    const auto [oldBegin, newBegin] = std::mismatch(m_sounds.cbegin(), m_sounds.cend(), sounds.cbegin(), sounds.cend(), isSame);
    const auto [oldEnd, newEnd] = std::mismatch(m_sounds.crbegin(), std::reverse_iterator(oldBegin), sounds.crbegin(),
                                                std::reverse_iterator(newBegin), isSame);
    const int first = int(oldBegin - m_sounds.cbegin());
    const int gone = int(oldEnd.base() - oldBegin);
    const int come = int(newEnd.base() - newBegin);
    if (gone > 0) {
        Q_EMIT aboutToRemove(first, gone);
        m_sounds.remove(first, gone);
        Q_EMIT removed();
    }
    if (come > 0)
        Q_EMIT aboutToInsert(first, come);
    m_sounds = sounds; // with the records of today
    if (come > 0)
        Q_EMIT inserted();
    Q_EMIT soundsChanged();
    Q_EMIT currentChanged();
}

void LibrarySession::removeSound(int index)
{
    // The others are found as before. Deleting thousands must not search thousands of times.
    if (const int shown = indexOf(m_ids.takeAt(index)); shown >= 0) {
        Q_EMIT aboutToRemove(shown, 1);
        m_sounds.removeAt(shown);
        Q_EMIT removed();
        if (m_sounds.isEmpty() && !m_query.isEmpty())
            find(); // what is related may show now
    }
    Q_EMIT soundsChanged();
    Q_EMIT currentChanged();
}

const SoundItem* LibrarySession::at(int index) const
{
    return index >= 0 && index < m_sounds.size() ? &m_sounds[index] : nullptr;
}

int LibrarySession::indexOf(const QUuid& id) const
{
    const auto found = std::find_if(m_sounds.begin(), m_sounds.end(), [&id](const SoundItem& sound) { return sound.id == id; });
    return found == m_sounds.end() ? -1 : int(found - m_sounds.begin());
}

void LibrarySession::setCurrent(std::optional<QUuid> id)
{
    m_current = id;
    Q_EMIT currentChanged();
}

void LibrarySession::click(int index, Qt::KeyboardModifiers modifiers)
{
    const SoundItem* sound = at(index);
    if (!sound)
        return;
    const SoundItem clicked = *sound;
    m_selection.click(clicked, m_sounds, modifiers);
    setCurrent(clicked.id);
}

void LibrarySession::moveTo(int index, Qt::KeyboardModifiers modifiers)
{
    if (m_sounds.isEmpty())
        return;
    // The arrows know of Shift alone: what Control adds is the mouse's.
    click(std::clamp(index, 0, int(m_sounds.size()) - 1), modifiers & Qt::ShiftModifier);
}

void LibrarySession::enter()
{
    if (current() < 0)
        moveTo(0, Qt::NoModifier);
}

QList<SoundItem> LibrarySession::selected() const
{
    QList<SoundItem> selected;
    std::copy_if(m_sounds.begin(), m_sounds.end(), std::back_inserter(selected),
                 [this](const SoundItem& sound) { return m_selection.multi().contains(sound.id); });
    return selected;
}

QList<SoundItem> LibrarySession::meantBy(int index) const
{
    const SoundItem* sound = at(index);
    if (!sound)
        return {};
    return m_selection.multi().contains(sound->id) ? selected() : QList<SoundItem>{*sound};
}

} // namespace tonequill
