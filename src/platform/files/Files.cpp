#include "platform/files/Files.h"

#include "base/Text.h"
#include "platform/files/FileDescriptor.h"
#include "platform/files/FreeRename.h"
#include "platform/files/ScratchFile.h"
#include "platform/files/SystemPath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

// The stem, cut where the whole would be too long with so many bytes of an ending.
QString nameOf(const QString& stem, const QString& ending, const QString& extension, qsizetype endingBytes)
{
    constexpr qsizetype kNameBytes = 255; // NAME_MAX of ext4, APFS, NTFS and their kin
    const QString suffix = u'.' + extension;
    return text::firstBytes(stem, std::max<qsizetype>(0, kNameBytes - endingBytes - suffix.toUtf8().size())) + ending + suffix;
}

FileError::Reason reasonOf(int systemError)
{
    switch (systemError) {
    case ENOENT:
    case ENOTDIR:
        return FileError::Reason::notFound;
    case EACCES:
    case EPERM:
        return FileError::Reason::noPermission;
    case ENOSPC:
    case EDQUOT:
        return FileError::Reason::diskFull;
    case EROFS:
        return FileError::Reason::readOnly;
    case EEXIST:
        return FileError::Reason::taken;
    case EISDIR:
        return FileError::Reason::folder;
    default:
        return FileError::Reason::other;
    }
}

QString verbOf(FileError::Action action)
{
    switch (action) {
    case FileError::Action::read:
        return u"read"_s;
    case FileError::Action::write:
        return u"written"_s;
    case FileError::Action::copy:
        return u"copied"_s;
    case FileError::Action::rename:
        return u"renamed"_s;
    }
    Q_UNREACHABLE();
}

QString becauseOf(FileError::Reason reason, int systemError)
{
    switch (reason) {
    case FileError::Reason::notFound:
        return u"it isn't there any more"_s;
    case FileError::Reason::noPermission:
        return u"you don't have permission"_s;
    case FileError::Reason::diskFull:
        return u"the disk is full"_s;
    case FileError::Reason::readOnly:
        return u"the disk is read-only"_s;
    case FileError::Reason::taken:
        return u"there is another file of that name"_s;
    case FileError::Reason::folder:
        return u"it is a folder"_s;
    case FileError::Reason::other:
        return QString::fromLocal8Bit(std::strerror(systemError)).toLower();
    }
    Q_UNREACHABLE();
}

// False with errno set if not all bytes could be written.
bool writeAll(int fd, const char* bytes, qint64 size)
{
    while (size > 0) {
        const ssize_t written = ::write(fd, bytes, static_cast<std::size_t>(size));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes += written;
        size -= written;
    }
    return true;
}

// Whether both paths are one file whose names differ in case alone.
bool isAnotherCase(const QString& from, const QString& to)
{
    struct stat old = {};
    struct stat present = {};
    return from != to && from.compare(to, Qt::CaseInsensitive) == 0 && ::lstat(systemPath(from).constData(), &old) == 0 &&
           ::lstat(systemPath(to).constData(), &present) == 0 && old.st_dev == present.st_dev && old.st_ino == present.st_ino;
}

constexpr auto kStrayPrefix = ".tonequill-"_L1;
constexpr auto kStraySuffix = ".tmp"_L1;

QString temporaryBeside(const QString& path)
{
    const QString random = QString::number(QRandomGenerator::system()->generate64(), 36);
    return QFileInfo(path).path() + u'/' + kStrayPrefix + random + kStraySuffix;
}

} // namespace

FileError::FileError(Action action, const QString& path, int systemError)
    : FileError(action, path, systemError, QFileInfo(path).fileName())
{}

FileError::FileError(Action action, const QString& path, int systemError, const QString& name)
    : UserError(u"“%1” couldn't be %2 because %3."_s.arg(name, verbOf(action), becauseOf(reasonOf(systemError), systemError))),
      m_action(action),
      m_path(path),
      m_systemError(systemError)
{}

FileError FileError::named(const QString& name) const
{
    return {m_action, m_path, m_systemError, name};
}

FileError::Reason FileError::reason() const
{
    return reasonOf(m_systemError);
}

namespace Files {

QString stem(const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    const QString suffix = extension(path);
    return suffix.isEmpty() ? name : name.chopped(suffix.size() + 1);
}

QString extension(const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot <= 0 ? QString() : name.sliced(dot + 1); // a trailing dot gives an empty one, too
}

QByteArray readAll(const QString& path, qint64 limitBytes)
{
    // O_NONBLOCK: opening a pipe must not wait for somebody to write to it.
    const FileDescriptor file(path, O_RDONLY | O_NONBLOCK);
    struct stat info = {};
    if (!file.isOpen() || ::fstat(file.get(), &info) != 0)
        throw FileError(FileError::Action::read, path, errno);
    if (!S_ISREG(info.st_mode))
        throw FileError(FileError::Action::read, path, S_ISDIR(info.st_mode) ? EISDIR : EINVAL);
    if (info.st_size > limitBytes)
        throw FileError(FileError::Action::read, path, EFBIG);
    QByteArray bytes(info.st_size, Qt::Uninitialized);
    qint64 filled = 0;
    while (filled < bytes.size()) {
        const ssize_t got = ::read(file.get(), bytes.data() + filled, static_cast<std::size_t>(bytes.size() - filled));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw FileError(FileError::Action::read, path, errno);
        if (got == 0)
            break;
        filled += got;
    }
    bytes.truncate(filled);
    return bytes;
}

void writeDurably(const QString& path, std::span<const QByteArray> chunks, Privacy privacy)
{
    const auto fail = [&path]() { throw FileError(FileError::Action::write, path, errno); };
    const QString temporary = temporaryBeside(path);
    FileDescriptor file(temporary, O_WRONLY | O_CREAT | O_EXCL, privacy == Privacy::ownerOnly ? 0600 : 0644);
    if (!file.isOpen())
        fail();
    ScratchFile scratch(temporary);
    // Small chunks are gathered, so that many records cost few system calls.
    constexpr qsizetype kBlock = 1 << 20;
    QByteArray block;
    block.reserve(kBlock);
    const auto flush = [&] {
        if (!writeAll(file.get(), block.constData(), block.size()))
            fail();
        block.resize(0);
    };
    for (const QByteArray& chunk : chunks) {
        if (block.size() + chunk.size() > kBlock)
            flush();
        if (chunk.size() >= kBlock) {
            if (!writeAll(file.get(), chunk.constData(), chunk.size()))
                fail();
        } else {
            block += chunk;
        }
    }
    flush();
    if (::fsync(file.get()) != 0 || !file.close())
        fail();
    if (::rename(systemPath(temporary).constData(), systemPath(path).constData()) != 0)
        fail();
    scratch.keep();
    syncFolder(QFileInfo(path).path());
}

void copy(const QString& source, const QString& destination, Progress* progress)
{
    const auto fail = [&source](int systemError) { throw FileError(FileError::Action::copy, source, systemError); };
    const FileDescriptor from(source, O_RDONLY | O_NONBLOCK);
    struct stat info = {};
    if (!from.isOpen() || ::fstat(from.get(), &info) != 0)
        fail(errno);
    if (!S_ISREG(info.st_mode))
        fail(EINVAL);
    FileDescriptor to(destination, O_WRONLY | O_CREAT | O_EXCL, 0644);
    if (!to.isOpen())
        fail(errno);
    ScratchFile scratch(destination);

    constexpr std::size_t kBlock = 1 << 20; // enough for full speed; 50 ms of a slow disk (20 MB/s)
    bool byKernel = true;                   // copy_file_range shares the bytes where the file system can
    std::vector<char> block;
    qint64 copied = 0;
    for (;;) {
        if (progress) {
            if (progress->isCancelled())
                throw Cancelled();
            progress->set(info.st_size > 0 ? std::min(1.0, static_cast<double>(copied) / static_cast<double>(info.st_size))
                                           : 1.0);
        }
        ssize_t moved = 0;
        if (byKernel) {
            moved = ::copy_file_range(from.get(), nullptr, to.get(), nullptr, kBlock, 0);
            if (moved < 0 && copied == 0 && (errno == EXDEV || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP)) {
                byKernel = false;
                continue;
            }
        } else {
            block.resize(kBlock);
            moved = ::read(from.get(), block.data(), block.size());
            if (moved > 0 && !writeAll(to.get(), block.data(), moved))
                fail(errno);
        }
        if (moved < 0 && errno == EINTR)
            continue;
        if (moved < 0)
            fail(errno);
        if (moved == 0)
            break;
        copied += moved;
    }
    if (!to.close())
        fail(errno);
    scratch.keep();
}

void renameToFree(const QString& from, const QString& to)
{
    const auto fail = [&from](int systemError) { throw FileError(FileError::Action::rename, from, systemError); };
    const QByteArray source = systemPath(from);
    const QByteArray target = systemPath(to);
    if (source.isEmpty() || target.isEmpty())
        fail(EINVAL);
    int failure = 0;
    for (const auto rename : {FreeRename::inOneStep, FreeRename::byLink, FreeRename::byReservation}) {
        failure = rename(source, target);
        if (!FreeRename::isUnknown(failure))
            break;
    }
    if (failure == EEXIST && isAnotherCase(from, to))
        failure = ::rename(source.constData(), target.constData()) == 0 ? 0 : errno;
    if (failure != 0)
        fail(failure);
}

QString moveToFree(const QString& from, const QString& folder, const QString& stem, const QString& extension)
{
    const QDir directory(folder);
    for (int count = 1;; ++count) {
        const QString name = count == 1 ? fittingName(stem, extension) : countedName(stem, count, extension);
        try {
            renameToFree(from, directory.filePath(name));
            return directory.filePath(name);
        } catch (const FileError& error) {
            if (error.reason() != FileError::Reason::taken)
                throw;
        }
    }
}

void requireEnterable(const QString& folder)
{
    if (::access(systemPath(folder).constData(), R_OK | X_OK) != 0)
        throw FileError(FileError::Action::read, folder, errno);
}

void requireReadable(const QString& path)
{
    const QByteArray file = systemPath(path);
    struct stat info = {};
    if (::stat(file.constData(), &info) != 0)
        throw FileError(FileError::Action::read, path, errno);
    if (!S_ISREG(info.st_mode))
        throw FileError(FileError::Action::read, path, S_ISDIR(info.st_mode) ? EISDIR : EINVAL);
    if (::access(file.constData(), R_OK) != 0)
        throw FileError(FileError::Action::read, path, errno);
}

void syncFile(const QString& path)
{
    const FileDescriptor file(path, O_RDONLY);
    if (!file.isOpen() || ::fsync(file.get()) != 0)
        throw FileError(FileError::Action::write, path, errno);
}

void syncFolder(const QString& path)
{
    const FileDescriptor folder(path, O_RDONLY | O_DIRECTORY);
    // Some file systems cannot sync a folder and say EINVAL; there is nothing more to do on them.
    if (!folder.isOpen() || (::fsync(folder.get()) != 0 && errno != EINVAL))
        throw FileError(FileError::Action::write, path, errno);
}

QString fittingName(const QString& stem, const QString& extension)
{
    return nameOf(stem, {}, extension, 0);
}

QString countedName(const QString& stem, int count, const QString& extension)
{
    constexpr qsizetype kRoomForCount = 12; // bytes for a blank and the count
    return nameOf(stem, u' ' + QString::number(count), extension, kRoomForCount);
}

QString uniqueFreePath(const QString& folder, const QString& stem, const QString& extension)
{
    const QDir directory(folder);
    // A link that leads nowhere takes the name as well, so QFile::exists() alone is not enough.
    const auto isTaken = [](const QString& path) { return QFile::exists(path) || QFileInfo(path).isSymLink(); };
    QString path = directory.filePath(fittingName(stem, extension));
    for (int count = 2; isTaken(path); ++count)
        path = directory.filePath(countedName(stem, count, extension));
    return path;
}

void sweepStrays(const QString& folder)
{
    const QDir directory(folder);
    const QString pattern = kStrayPrefix + u'*' + kStraySuffix;
    for (const QString& name : directory.entryList({pattern}, QDir::Files | QDir::Hidden))
        QFile::remove(directory.filePath(name));
}

} // namespace Files
} // namespace tonequill
