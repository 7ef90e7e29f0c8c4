#include "platform/files/ScratchFile.h"

#include "base/Uuid.h"

#include <QDir>
#include <QFile>

#include <utility>

namespace tonequill {

ScratchFile::ScratchFile(QString path) : m_path(std::move(path))
{}

ScratchFile::~ScratchFile()
{
    if (!m_path.isEmpty())
        QFile::remove(m_path);
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

} // namespace tonequill
