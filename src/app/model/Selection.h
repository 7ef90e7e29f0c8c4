#pragma once

#include "library/store/LibraryStore.h"

#include <QObject>
#include <QSet>
#include <QUuid>

#include <optional>

namespace tonequill {

// Which sound of the library is open, and which ones are marked in its list. One
// thread. The library outlives it.
class Selection : public QObject {
    Q_OBJECT

public:
    explicit Selection(const LibraryStore& library) : m_library(library) {}

    // The open sound. Setting it marks it alone, unless it is marked already.
    const std::optional<QUuid>& id() const { return m_id; }
    void setID(std::optional<QUuid> id);
    const SoundItem* item() const; // null for none
    // Opens the newest sound if none is open, or the open one is no longer there.
    void openNewest();

    // Every sound that is marked.
    const QSet<QUuid>& multi() const { return m_multi; }
    void setMulti(QSet<QUuid> multi);
    QList<SoundItem> items() const; // in library order

    // A click in the library list. `shown` is the list as shown. Control (the
    // Command key on a Mac) adds or takes away one sound, Shift marks a range
    // from the open sound; Control goes before Shift.
    void click(const SoundItem& item, const QList<SoundItem>& shown, Qt::KeyboardModifiers modifiers);
    void selectAll(const QList<SoundItem>& shown);

    // Lets go of sounds that are about to be deleted. openNewest() afterwards, so
    // that none of them opens meanwhile.
    void letGo(const QSet<QUuid>& ids);

Q_SIGNALS:
    void idChanged();
    void multiChanged();

private:
    const LibraryStore& m_library;
    std::optional<QUuid> m_id;
    QSet<QUuid> m_multi;
};

} // namespace tonequill
