#include "platform/process/LibraryLock.h"

#include "platform/files/Files.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QThread>

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
    // The file stays: removing it would let two programs lock two files of one name.
    publish({});
}

bool LibraryLock::acquire()
{
    if (m_file.isOpen())
        return true;
    QDir().mkpath(QFileInfo(m_path).path());
    FileDescriptor file(m_path, O_RDWR | O_CREAT, 0600);
    if (!file.isOpen())
        return true;
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0)
        return errno != EWOULDBLOCK; // held by another, or a file system without locks
    m_file = std::move(file);
    publish({}); // what a killed owner published is no longer true
    return true;
}

bool LibraryLock::acquireSoon(int patienceMs)
{
    constexpr unsigned long kPauseMs = 50;
    const QDeadlineTimer deadline(patienceMs);
    while (!acquire()) {
        if (ownerAddress() || deadline.hasExpired())
            return false;
        QThread::msleep(kPauseMs);
    }
    return true;
}

void LibraryLock::publish(const QString& address)
{
    if (!m_file.isOpen())
        return;
    const QByteArray bytes = address.toUtf8();
    if (::ftruncate(m_file.get(), 0) != 0 ||
        ::pwrite(m_file.get(), bytes.constData(), static_cast<std::size_t>(bytes.size()), 0) != bytes.size())
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
