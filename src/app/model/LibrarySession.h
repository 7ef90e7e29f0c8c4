#pragma once

#include "app/model/Selection.h"
#include "understanding/naming/RelatedWords.h"

#include <optional>

namespace tonequill {

// What the library's list shows and what its pointer and keys mean: a search
// that follows the library, the sound that the keys move, and which sounds an
// action on one of them means. What a click does to the selection is Selection's
// rule; which sounds it can reach is decided here: only ones that are shown. An
// index counts the sounds that are shown. One thread; what is borrowed outlives it.
class LibrarySession : public QObject {
    Q_OBJECT

public:
    LibrarySession(const LibraryStore& library, Selection& selection, LanguageModel& languageModel, Clock& clock);

    const QString& query() const { return m_query; }
    void setQuery(const QString& query);

    // The sounds that the query means, best first; without one all of them, newest
    // first. Where it means none, a language model may relate words to it: then the
    // sounds that contain one of these. With the records as the library has them.
    const QList<SoundItem>& sounds() const { return m_sounds; }
    int indexOf(const QUuid& id) const; // -1: not shown
    bool isRelated() const { return m_searchFoundNothing && !m_related.words().isEmpty(); }
    const QStringList& relatedWords() const { return m_related.words(); }

    // The sound that the keys move: the open one, or the one that was clicked last. -1 for none.
    int current() const { return m_current ? indexOf(*m_current) : -1; }
    // An index beside the list does nothing.
    void click(int index, Qt::KeyboardModifiers modifiers);
    // Moves to the sound, or to the nearest one; extends the selection with Shift.
    void moveTo(int index, Qt::KeyboardModifiers modifiers);
    // To the list from elsewhere: to the first sound, unless the open one is shown.
    void enter();
    void selectAll() { m_selection.selectAll(m_sounds); }

    // The marked ones among those that are shown.
    QList<SoundItem> selected() const;
    // What an action on a sound means: all that are selected if it is one of
    // several, else it alone; none beside the list.
    QList<SoundItem> meantBy(int index) const;

Q_SIGNALS:
    void queryChanged();
    // Around every change of sounds(), one stretch at a time.
    void aboutToRemove(int first, int count);
    void removed();
    void aboutToInsert(int first, int count);
    void inserted();
    void recordChanged(int index);
    void soundsChanged(); // and isRelated()
    void currentChanged();

private:
    const SoundItem* at(int index) const;
    void find();
    void show(const QList<SoundItem>& sounds);
    void removeSound(int index);
    void setCurrent(std::optional<QUuid> id);

    const LibraryStore& m_library;
    Selection& m_selection;
    // Copies, because a sound must still be told while it goes.
    QList<SoundItem> m_sounds;
    QList<QUuid> m_ids; // the library's
    QString m_query;
    bool m_searchFoundNothing = false;
    RelatedWords m_related; // to a query that finds nothing
    std::optional<QUuid> m_current;
};

} // namespace tonequill
