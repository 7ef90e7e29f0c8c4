#include "library/delivery/FolderBookmark.h"

#include "platform/files/Files.h"
#include "platform/files/FolderIdentity.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace tonequill::FolderBookmark {

namespace {

// JSON numbers hold 53 bits; these have 64.
QString NumberText(quint64 number)
{
    return QString::number(number);
}

} // namespace

std::optional<QByteArray> make(const QString& folder)
{
    const QString path = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    const auto identity = FolderIdentity::of(path);
    if (!identity)
        return std::nullopt;
    QJsonObject bookmark{{u"path"_s, path}};
    if (const auto fileSystem = fileSystemAt(path); fileSystem && !hasLastingInodes(*fileSystem)) {
        bookmark[u"fileSystem"_s] = NumberText(*fileSystem);
    } else {
        bookmark[u"device"_s] = NumberText(identity->device);
        bookmark[u"inode"_s] = NumberText(identity->inode);
    }
    return QJsonDocument(bookmark).toJson(QJsonDocument::Compact);
}

QString resolve(const QByteArray& bookmark)
{
    const QJsonObject fields = QJsonDocument::fromJson(bookmark).object();
    const QString path = fields[u"path"_s].toString();
    const auto failMissing = [&path] { throw FileError(FileError::Action::read, path, ENOENT); };
    if (path.isEmpty())
        failMissing();
    const QString inode = fields[u"inode"_s].toString();
    const auto found = [&]() -> std::optional<QString> {
        if (const QString kind = fields[u"fileSystem"_s].toString(); !kind.isEmpty()) {
            const auto fileSystem = FolderIdentity::of(path) ? fileSystemAt(path) : std::nullopt;
            return fileSystem && NumberText(*fileSystem) == kind ? std::optional(path) : std::nullopt;
        }
        // The device isn't asked here: a disk may get another number each time it is mounted.
        if (const auto present = FolderIdentity::of(path); present && NumberText(present->inode) == inode)
            return path;
        const QDir parent(QFileInfo(path).path());
        for (const QString& name : parent.entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)) {
            const auto other = FolderIdentity::of(parent.filePath(name));
            if (other && NumberText(other->inode) == inode && NumberText(other->device) == fields[u"device"_s].toString())
                return parent.filePath(name);
        }
        return std::nullopt;
    }();
    if (!found)
        failMissing();
    Files::requireEnterable(*found);
    return *found;
}

QString originalPath(const QByteArray& bookmark)
{
    return QJsonDocument::fromJson(bookmark).object()[u"path"_s].toString();
}

} // namespace tonequill::FolderBookmark
