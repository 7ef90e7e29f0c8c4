#include "platform/files/ScratchFile.h"

#include "base/Uuid.h"
#include "platform/files/ScratchNotes.h"
#include "platform/files/SystemPath.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <mutex>
#include <utility>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

// The files that are there now. Never destroyed: owners may go at the very end.
struct Known {
    std::mutex mutex;
    QHash<QString, int> owners; // by path
    ScratchNotes notes;
};

Known& known()
{
    static Known& known = *new Known;
    return known;
}

QString freshName()
{
    return uuidText(QUuid::createUuid());
}

} // namespace

ScratchFile::ScratchFile(QString path) : m_path(std::move(path))
{
    if (m_path.isEmpty())
        return;
    const std::scoped_lock lock(known().mutex);
    ++known().owners[m_path];
    known().notes.add(QFileInfo(m_path).absoluteFilePath());
}

ScratchFile::~ScratchFile()
{
    if (m_path.isEmpty())
        return;
    removeScratch(m_path);
    keep();
}

ScratchFile::ScratchFile(ScratchFile&& other) noexcept : m_path(std::exchange(other.m_path, {}))
{}

ScratchFile& ScratchFile::operator=(ScratchFile&& other) noexcept
{
    std::swap(m_path, other.m_path); // the other one removes what was here
    return *this;
}

ScratchFile ScratchFile::withExtension(const QString& extension)
{
    return ScratchFile(QDir::tempPath() + u'/' + freshName() + u'.' + extension);
}

ScratchFile ScratchFile::hiddenIn(const QString& folder)
{
    return ScratchFile(folder + u"/.export-"_s + freshName());
}

ScratchFile ScratchFile::privateFolder()
{
    ScratchFile folder(QDir::tempPath() + u'/' + kScratchFolderPrefix + freshName());
    if (::mkdir(systemPath(folder.path()).constData(), 0700) != 0)
        folder.keep();
    return folder;
}

void ScratchFile::keep()
{
    const std::scoped_lock lock(known().mutex);
    const QString path = std::exchange(m_path, {});
    const auto owner = known().owners.find(path);
    if (owner == known().owners.end() || --*owner > 0)
        return;
    known().owners.erase(owner);
    known().notes.remove(QFileInfo(path).absoluteFilePath());
}

void ScratchFile::removeAll()
{
    const std::scoped_lock lock(known().mutex);
    for (auto owner = known().owners.cbegin(); owner != known().owners.cend(); ++owner) {
        removeScratch(owner.key());
        known().notes.remove(QFileInfo(owner.key()).absoluteFilePath());
    }
}

void ScratchFile::sweepStrays()
{
    ScratchNotes::sweep();
}

} // namespace tonequill
