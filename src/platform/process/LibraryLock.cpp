#include "platform/process/LibraryLock.h"

#include "platform/process/HandOver.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr qint64 kLongestAddress = 4096;

// What a lock of ours holds: the address of an owner, or nothing yet. None for a file
// that holds anything else: it isn't ours.
std::optional<QString> addressIn(const FileDescriptor& file)
{
    struct stat info = {};
    if (!file.isOpen() || ::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode) || info.st_size > kLongestAddress)
        return std::nullopt;
    QByteArray bytes(info.st_size, '\0');
    if (::pread(file.get(), bytes.data(), static_cast<std::size_t>(bytes.size()), 0) != bytes.size())
        return std::nullopt;
    const QString address = QString::fromUtf8(bytes);
    return address.isEmpty() || HandOver::isAddress(address) ? std::optional(address) : std::nullopt;
}

} // namespace

LibraryLock::LibraryLock(const QString& libraryFolder)
    : m_folder(QDir::cleanPath(QFileInfo(libraryFolder).absoluteFilePath())),
      m_path(m_folder + u".lock"_s)
{}

LibraryLock::~LibraryLock()
{
    // The file stays: removing it would let two programs lock two files of one name.
    publish({});
}

FileDescriptor LibraryLock::opened() const
{
    QDir().mkpath(QFileInfo(m_path).path());
    // Not blocking, since a pipe at this name would keep us waiting for a reader.
    FileDescriptor file(m_path, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK, 0600);
    struct stat info = {};
    if (file.isOpen() && ::fstat(file.get(), &info) == 0 && S_ISREG(info.st_mode))
        return file;
    QDir().mkpath(m_folder);
    return {m_folder, O_RDONLY | O_DIRECTORY};
}

bool LibraryLock::acquire()
{
    if (m_file.isOpen())
        return true;
    FileDescriptor file = opened();
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
    if (!addressIn(m_file))
        return;
    const QByteArray bytes = address.toUtf8();
    if (::ftruncate(m_file.get(), 0) != 0 ||
        ::pwrite(m_file.get(), bytes.constData(), static_cast<std::size_t>(bytes.size()), 0) != bytes.size())
        qWarning("The library lock could not be written.");
}

std::optional<QString> LibraryLock::ownerAddress() const
{
    const auto address = addressIn(FileDescriptor(m_path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK));
    return address && !address->isEmpty() ? address : std::nullopt;
}

} // namespace tonequill
