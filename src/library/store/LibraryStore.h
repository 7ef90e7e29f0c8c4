#pragma once

#include "base/FlowGroup.h"
#include "base/Workers.h"
#include "library/records/ImportError.h"
#include "library/records/SoundItem.h"
#include "library/search/LibrarySearch.h"
#include "library/store/IndexWriter.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <QSet>

#include <functional>
#include <optional>

namespace tonequill {

// The library on the disk: a folder of audio files and the index that lists
// them. Every change is handed over at once to be saved, durably and in order; who
// tells a user or another program that it was done waits for saved() first. A
// library that cannot be written stays usable in memory.
//
// One thread. Reading and analysing a file that comes in, and writing the index, leave
// it. What is borrowed outlives it.
class LibraryStore : public QObject {
    Q_OBJECT

public:
    static QString defaultFolder();

    // Creates the folder where it is missing and reads its index. An index that
    // cannot be read gives an empty library, and records whose file is gone are
    // left out, unless the disk can't list the folder. Nothing is written here.
    LibraryStore(Clock& clock, Workers& workers, const QString& folder = defaultFolder());
    // Ends the imports that are on their way. Nothing is brought in from then on.
    void close() { m_flows.end(); }

    // Newest first.
    const QList<SoundItem>& items() const { return m_items; }
    const QString& folder() const { return m_folder; }
    // The sound's file.
    QString path(const SoundItem& item) const;
    const SoundItem* find(const QUuid& id) const;
    bool contains(const QString& sourceID) const;

    // The sounds that a query means, best first (LibrarySearch).
    QList<SoundItem> search(const QString& query) const { return m_search.search(m_items, query); }
    // The sounds that contain one of the words in their name or a tag, newest first.
    QList<SoundItem> containing(const QStringList& words) const { return m_search.containing(m_items, words); }

    // Copies a sound, or extracts the sound of a video, into the library,
    // analyses it, and puts its record in front. Throws ImportError, what the
    // copy or extraction throws (FileError, AudioFileError), or Cancelled; the
    // library is then as it was.
    QCoro::Task<SoundItem> importFile(QString source, SoundOrigin origin, QStringList tags = {},
                                      std::optional<SoundInfo> info = {}, ProgressPtr progress = {});

    // The same for a sound that exists only in memory.
    QCoro::Task<SoundItem> importData(QByteArray data, QString name, QString fileExtension, SoundOrigin origin,
                                      QStringList tags = {});

    // Changes of several records that are saved together, when this goes. A change
    // by other ways saves these as well.
    class Changes {
    public:
        explicit Changes(LibraryStore& library) : m_library(library) {}
        ~Changes();
        Changes(const Changes&) = delete;
        Changes& operator=(const Changes&) = delete;

        // As LibraryStore::update().
        SoundItem update(SoundItem item, const std::function<void(SoundItem&)>& change);

    private:
        LibraryStore& m_library;
        bool m_hasChanged = false;
    };

    // Changes the stored record of that id, saves, and returns it as it now is. By value:
    // the record given may be the stored one, which moves when it is changed. A record that isn't there any more is returned as
    // given.
    SoundItem update(SoundItem item, const std::function<void(SoundItem&)>& change);
    SoundItem rename(const SoundItem& item, const QString& name, std::optional<bool> nameIsAuto = {});

    // Takes every record of their ids out of the list, at once, and their files from the
    // disk once the index no longer names them. False if the index couldn't be written:
    // the records are back in the list then, and the files stay. A file that another
    // record names stays as well.
    QCoro::Task<bool> deleteItems(QList<SoundItem> items);

    // Removes what a killed program left behind: half-written indexes and the
    // files of imports that never reached the index. Files that it doesn't know
    // stay. REQUIRES: no other program writes to the folder.
    void sweepUnfinished();

    // Until every change so far is on the disk, or could not be written.
    QCoro::Task<> saved() { return m_writer.written(m_flows); }
    // The same, without a flow: it blocks. False if the last change could not be written.
    bool isSaved() const { return m_writer.finish(); }
    // How often the index was written.
    int saveCount() const { return m_writer.writeCount(); }

Q_SIGNALS:
    void itemInserted(int index);
    void itemChanged(int index);
    void itemRemoved(int index);

private:
    struct Taken {
        qsizetype index; // it had when it was taken out
        SoundItem item;
    };
    void load();
    int save(const QStringList& imported = {}, const QList<IndexWriter::Leaving>& leaving = {});
    QString markOf(const QString& fileName) const;
    QList<Taken> takeOut(const QSet<QUuid>& ids); // last first
    void putBack(const QList<Taken>& taken);
    QList<IndexWriter::Leaving> filesOnlyOf(const QList<Taken>& taken) const;
    const SoundItem* change(QUuid id, const std::function<void(SoundItem&)>& change);
    qsizetype indexOf(const QUuid& id) const;

    Clock& m_clock;
    Workers& m_workers;
    QString m_folder;
    QList<SoundItem> m_items;
    QList<QByteArray> m_encoded;    // each record's bytes in the index; empty until they are needed
    mutable LibrarySearch m_search; // with a cache of its own
    bool m_indexWasReadable = true;
    bool m_wasListed = true;
    IndexWriter m_writer;
    FlowGroup m_flows; // last
};

} // namespace tonequill
