#include "platform/LibraryLock.h"

#include "platform/Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tonequill {

LibraryLock::LibraryLock(const QString& libraryFolder)
    : m_path(QDir::cleanPath(QFileInfo(libraryFolder).absoluteFilePath()) + u".lock"_s)
{}

LibraryLock::~LibraryLock()
{
    if (m_fd < 0)
        return;
    // The file stays: removing it would let two programs lock two files of one name.
    publish({});
    ::close(m_fd);
}

bool LibraryLock::acquire()
{
    if (m_fd >= 0)
        return true;
    QDir().mkpath(QFileInfo(m_path).path());
    const int fd = ::open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        return true;
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const bool isHeld = errno == EWOULDBLOCK;
        ::close(fd);
        return !isHeld; // a file system without locks
    }
    m_fd = fd;
    publish({}); // what a killed owner published is no longer true
    return true;
}

void LibraryLock::publish(const QString& address)
{
    if (m_fd < 0)
        return;
    const QByteArray bytes = address.toUtf8();
    if (::ftruncate(m_fd, 0) != 0 || ::pwrite(m_fd, bytes.constData(), static_cast<std::size_t>(bytes.size()), 0) != bytes.size())
        qWarning("The library lock could not be written.");
}

std::optional<QString> LibraryLock::ownerAddress() const
{
    try {
        constexpr qint64 kLongestAddress = 4096;
        const QByteArray bytes = Files::readAll(m_path, kLongestAddress);
        if (!bytes.isEmpty())
            return QString::fromUtf8(bytes);
    } catch (const FileError&) {
    }
    return std::nullopt;
}

} // namespace tonequill
