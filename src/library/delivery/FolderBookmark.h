#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// A chosen folder, kept as bytes: its path and what the file system knows it by.
// Any thread.
namespace tonequill::FolderBookmark {

// None if there is no such folder.
std::optional<QByteArray> make(const QString& folder);

// The folder's path. It follows a folder that was renamed beside its old place,
// and takes no other folder that stands in the old place: an empty mount point is
// not the disk. On file systems that know their folders by nothing lasting (FAT,
// exFAT, many network folders) it is the folder at its path, as long as the kind of
// file system is the same. Throws FileError: `notFound`, or `noPermission` for a
// folder that cannot be entered.
QString resolve(const QByteArray& bookmark);

// The path as it was when the bookmark was made; empty for bytes that are none.
QString originalPath(const QByteArray& bookmark);

} // namespace tonequill::FolderBookmark
