#include "library/delivery/AutoFolderManifest.h"

#include "platform/files/FileDescriptor.h"
#include "platform/files/Files.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

QJsonObject objectOf(const AutoFolderEntry& entry)
{
    return {{u"file"_s, entry.file}, {u"name"_s, entry.name}};
}

std::optional<AutoFolderEntry> entryOf(const QJsonValue& value)
{
    const QJsonValue file = value[u"file"];
    const QJsonValue name = value[u"name"];
    if (!file.isString() || !name.isString())
        return std::nullopt;
    return AutoFolderEntry{file.toString(), name.toString()};
}

QByteArray lineOf(const QString& folder, const QString& key, const AutoFolderEntry& entry)
{
    QJsonObject line = objectOf(entry);
    line.insert(u"id"_s, key);
    line.insert(u"folder"_s, folder);
    return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

QByteArray encodeManifest(const AutoFolderManifest& manifest)
{
    QJsonObject object;
    for (auto entry = manifest.cbegin(); entry != manifest.cend(); ++entry)
        object.insert(entry.key(), objectOf(*entry));
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<AutoFolderManifest> decodeManifest(const QByteArray& json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    AutoFolderManifest manifest;
    for (auto field = object.begin(); field != object.end(); ++field) {
        const auto entry = entryOf(*field);
        if (!entry)
            return std::nullopt;
        manifest.insert(field.key(), *entry);
    }
    return manifest;
}

bool AutoFolderJournal::append(const QString& folder, const QString& key, const AutoFolderEntry& entry) const
{
    const QByteArray line = lineOf(folder, key, entry);
    FileDescriptor file(m_path, O_WRONLY | O_CREAT | O_APPEND, 0600);
    // A loss of power may lose lines, not files: each costs one more copy then.
    return file.isOpen() && ::write(file.get(), line.constData(), std::size_t(line.size())) == line.size() && file.close();
}

bool AutoFolderJournal::reserve(const QString& folder, const QString& key, const AutoFolderEntry& entry) const
{
    const FileDescriptor file(m_path, O_WRONLY | O_CREAT | O_APPEND, 0600);
    struct stat info = {};
    if (!file.isOpen() || ::fstat(file.get(), &info) != 0)
        return false;
    const qsizetype bytes = lineOf(folder, key, entry).size();
    return ::fallocate(file.get(), FALLOC_FL_KEEP_SIZE, info.st_size, bytes) == 0 || errno == EOPNOTSUPP || errno == ENOSYS;
}

AutoFolderManifest AutoFolderJournal::read(const QString& folder) const
{
    constexpr qint64 kLimit = 256 << 20;
    QByteArray lines;
    try {
        lines = Files::readAll(m_path, kLimit);
    } catch (const FileError&) {
        return {};
    }
    AutoFolderManifest done;
    for (const QByteArray& line : lines.split('\n')) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const auto entry = entryOf(object);
        if (entry && object[u"folder"_s] == folder)
            done.insert(object[u"id"_s].toString(), *entry);
    }
    return done;
}

void AutoFolderJournal::clear() const
{
    QFile::remove(m_path);
}

} // namespace tonequill
