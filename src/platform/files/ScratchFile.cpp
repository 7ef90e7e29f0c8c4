#include "platform/files/ScratchFile.h"

#include "base/Uuid.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <mutex>
#include <utility>

namespace tonequill {

namespace {

// The files that are there now. Never destroyed: owners may go at the very end.
struct Known {
    std::mutex mutex;
    QSet<QString> paths;
};

Known& known()
{
    static Known& known = *new Known;
    return known;
}

} // namespace

ScratchFile::ScratchFile(QString path) : m_path(std::move(path))
{
    if (m_path.isEmpty())
        return;
    const std::scoped_lock lock(known().mutex);
    known().paths.insert(m_path);
}

ScratchFile::~ScratchFile()
{
    if (m_path.isEmpty())
        return;
    QFile::remove(m_path);
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
    return ScratchFile(QDir::tempPath() + u'/' + uuidText(QUuid::createUuid()) + u'.' + extension);
}

void ScratchFile::keep()
{
    const std::scoped_lock lock(known().mutex);
    known().paths.remove(std::exchange(m_path, {}));
}

void ScratchFile::removeAll()
{
    const std::scoped_lock lock(known().mutex);
    for (const QString& path : std::as_const(known().paths))
        QFile::remove(path);
}

} // namespace tonequill
