#pragma once

#include "platform/files/FileDescriptor.h"

#include <QHash>
#include <QString>

namespace tonequill {

// How the names of temporary folders begin: no other folder is ever removed.
inline constexpr auto kScratchFolderPrefix = QLatin1StringView("tonequill-folder-");

// Removes a temporary file, or such a folder; never what a link leads to. Silent.
void removeScratch(const QString& path);

// Which temporary files a process has, where the next one finds it: a folder in the
// system's temporary folder, locked by the kernel for as long as the process lives,
// with a link to each of them. It is there only while there are any. What can't be
// noted isn't. One thread at a time.
class ScratchNotes {
public:
    // REQUIRES: `path` is absolute.
    void add(const QString& path);
    void remove(const QString& path);

    // Removes the temporary files that processes have left which are dead, and their notes.
    static void sweep();

private:
    bool open();

    QString m_folder; // empty while nothing is noted
    FileDescriptor m_lock;
    QHash<QString, QString> m_notes; // the link by its file
    quint64 m_count = 0;
};

} // namespace tonequill
