#include "library/FolderBookmark.h"

#include "platform/Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cerrno>

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tonequill::FolderBookmark {

namespace {

std::optional<struct stat> folderAt(const QString& path)
{
    struct stat info = {};
    if (::stat(QFile::encodeName(path).constData(), &info) != 0 || !S_ISDIR(info.st_mode))
        return std::nullopt;
    return info;
}

std::optional<quint64> fileSystemAt(const QString& path)
{
    struct statfs info = {};
    if (::statfs(QFile::encodeName(path).constData(), &info) != 0)
        return std::nullopt;
    return quint64(info.f_type);
}

// Whether a folder has the same inode for ever. On these it gets a new number when
// the disk is mounted, or whenever the kernel forgot it.
bool hasLastingInodes(quint64 fileSystem)
{
    constexpr quint64 kExfat = 0x2011BAB0; // not in the magic.h of every kernel
    constexpr quint64 kCifs = 0xFF534D42;
    constexpr quint64 kSmb2 = 0xFE534D42;
    constexpr std::array kWithout{quint64(MSDOS_SUPER_MAGIC), quint64(FUSE_SUPER_MAGIC), kExfat, kCifs, kSmb2};
    return std::find(kWithout.begin(), kWithout.end(), fileSystem) == kWithout.end();
}

// JSON numbers hold 53 bits; these have 64.
QString numberText(quint64 number)
{
    return QString::number(number);
}

} // namespace

std::optional<QByteArray> make(const QString& folder)
{
    const QString path = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    const auto info = folderAt(path);
    if (!info)
        return std::nullopt;
    QJsonObject bookmark{{u"path"_s, path}};
    if (const auto fileSystem = fileSystemAt(path); fileSystem && !hasLastingInodes(*fileSystem)) {
        bookmark[u"fileSystem"_s] = numberText(*fileSystem);
    } else {
        bookmark[u"device"_s] = numberText(info->st_dev);
        bookmark[u"inode"_s] = numberText(info->st_ino);
    }
    return QJsonDocument(bookmark).toJson(QJsonDocument::Compact);
}

QString resolve(const QByteArray& bookmark)
{
    const QJsonObject fields = QJsonDocument::fromJson(bookmark).object();
    const QString path = fields[u"path"_s].toString();
    const auto fail = [&path](int systemError) { throw FileError(FileError::Action::read, path, systemError); };
    if (path.isEmpty())
        fail(ENOENT);
    const QString inode = fields[u"inode"_s].toString();
    const auto found = [&]() -> std::optional<QString> {
        if (const QString kind = fields[u"fileSystem"_s].toString(); !kind.isEmpty()) {
            const auto fileSystem = folderAt(path) ? fileSystemAt(path) : std::nullopt;
            return fileSystem && numberText(*fileSystem) == kind ? std::optional(path) : std::nullopt;
        }
        // The device isn't asked here: a disk may get another number each time it is mounted.
        if (const auto info = folderAt(path); info && numberText(info->st_ino) == inode)
            return path;
        const QDir parent(QFileInfo(path).path());
        for (const QString& name : parent.entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)) {
            const auto info = folderAt(parent.filePath(name));
            if (info && numberText(info->st_ino) == inode && numberText(info->st_dev) == fields[u"device"_s].toString())
                return parent.filePath(name);
        }
        return std::nullopt;
    }();
    if (!found)
        fail(ENOENT);
    if (::access(QFile::encodeName(*found).constData(), R_OK | X_OK) != 0)
        fail(errno);
    return *found;
}

QString originalPath(const QByteArray& bookmark)
{
    return QJsonDocument::fromJson(bookmark).object()[u"path"_s].toString();
}

} // namespace tonequill::FolderBookmark
