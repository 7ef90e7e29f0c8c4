#pragma once

#include "library/store/LibraryIndex.h"
#include "support/Wav.h"

#include <QDir>
#include <QTemporaryDir>

namespace tonequill::test {

// A library folder in a temporary place, filled by hand.
class LibraryFolder {
public:
    LibraryFolder() { QDir().mkpath(path()); }

    QString path() const { return m_folder.filePath(QStringLiteral("Library")); }
    QString filePath(const QString& name) const { return m_folder.filePath(name); }

    // Adds a sound below those that are there; its file is a short tone.
    SoundItem& add(const QString& name)
    {
        SoundItem item;
        item.id = QUuid::createUuid();
        item.name = name;
        item.fileName = item.id.toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".wav");
        item.duration = 1.44;
        item.thumbnail = std::vector<float>(48, 0.5f);
        writeTone(path() + u'/' + item.fileName);
        return m_items.emplaceBack(item);
    }

    // Writes the index, for a LibraryStore to open.
    void write() const
    {
        QByteArrayList records;
        for (const SoundItem& item : m_items)
            records << LibraryIndex::encode(item);
        writeBytes(path() + QStringLiteral("/index.json"), '[' + records.join(',') + ']');
    }

private:
    QTemporaryDir m_folder;
    QList<SoundItem> m_items;
};

} // namespace tonequill::test
