#include "platform/files/ScratchNotes.h"

#include "base/Uuid.h"
#include "platform/files/SystemPath.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr auto kPrefix = "tonequill-scratch-"_L1;

// The folder, once it is ours alone: no link, nobody else's, and held by no living process.
FileDescriptor locked(const QString& folder)
{
    FileDescriptor lock(folder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    struct stat info = {};
    if (!lock.isOpen() || ::fstat(lock.get(), &info) != 0 || info.st_uid != ::geteuid() || (info.st_mode & 077) != 0 ||
        ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return {};
    return lock;
}

} // namespace

void removeScratch(const QString& path)
{
    const QFileInfo info(path);
    if (info.fileName().startsWith(kScratchFolderPrefix) && info.isDir() && !info.isSymLink())
        QDir(path).removeRecursively();
    else
        QFile::remove(path);
}

bool ScratchNotes::open()
{
    if (!m_folder.isEmpty())
        return true;
    const QString temporary = QDir::tempPath();
    if (temporary.isEmpty()) // which TMPDIR names, and isn't there
        return false;
    const QString folder = temporary + u'/' + kPrefix + uuidText(QUuid::createUuid());
    if (::mkdir(systemPath(folder).constData(), 0700) != 0)
        return false;
    m_lock = locked(folder);
    if (!m_lock.isOpen()) { // another process took it for a dead one's just now
        ::rmdir(systemPath(folder).constData());
        return false;
    }
    m_folder = folder;
    return true;
}

void ScratchNotes::add(const QString& path)
{
    if (m_notes.contains(path) || !open())
        return;
    const QString note = m_folder + u'/' + QString::number(++m_count);
    if (::symlink(systemPath(path).constData(), systemPath(note).constData()) == 0)
        m_notes.insert(path, note);
}

void ScratchNotes::remove(const QString& path)
{
    if (const QString note = m_notes.take(path); !note.isEmpty())
        ::unlink(systemPath(note).constData());
    if (m_notes.isEmpty() && !m_folder.isEmpty()) {
        ::rmdir(systemPath(m_folder).constData());
        m_folder.clear();
        m_lock.close();
    }
}

void ScratchNotes::sweep()
{
    const QDir temporary(QDir::tempPath());
    for (const QString& name : temporary.entryList({kPrefix + u'*'}, QDir::Dirs | QDir::NoSymLinks)) {
        const QString folder = temporary.filePath(name);
        const FileDescriptor lock = locked(folder);
        if (!lock.isOpen())
            continue;
        const QDir notes(folder);
        for (const QFileInfo& note : notes.entryInfoList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot)) {
            if (note.isSymLink())
                removeScratch(note.symLinkTarget());
            QFile::remove(note.filePath());
        }
        ::rmdir(systemPath(folder).constData());
    }
}

} // namespace tonequill
