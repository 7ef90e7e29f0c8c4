#pragma once

#include "base/Progress.h"
#include "base/UserError.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <span>

namespace tonequill {

// A file operation that the system refused, with a sentence that says on which
// file and why ("… couldn't be copied because the disk is full.").
class FileError : public UserError {
public:
    enum class Action { read, write, copy, rename };
    enum class Reason { notFound, noPermission, diskFull, readOnly, taken, folder, other };

    // `systemError` is an errno value.
    FileError(Action action, const QString& path, int systemError);
    Reason reason() const;

    // The same failure of a file that the user knows by another name.
    FileError named(const QString& name) const;

private:
    FileError(Action action, const QString& path, int systemError, const QString& name);

    Action m_action;
    QString m_path;
    int m_systemError;
};

// Everything the program does to files that are kept. Any thread.
namespace Files {

// The last path component without its extension, and the extension without its
// dot. A dot at the start or at the end of the name starts no extension.
QString stem(const QString& path);
QString extension(const QString& path);

// All bytes of the file. Throws FileError, also for a file over `limitBytes`.
QByteArray readAll(const QString& path, qint64 limitBytes);

// Replaces `path` by the chunks, one after the other, or leaves it as it was:
// a temporary in the same folder is written, synced and renamed over it, and the
// folder is synced. Throws FileError and leaves no temporary behind.
enum class Privacy { everybodyReads, ownerOnly };
void writeDurably(const QString& path, std::span<const QByteArray> chunks, Privacy privacy = Privacy::everybodyReads);

// Copies the bytes of a regular file to a new file. Throws FileError or
// Cancelled, within a megabyte; then nothing is at `destination`. It isn't synced yet.
// REQUIRES: nothing is at `destination`.
void copy(const QString& source, const QString& destination, Progress* progress = nullptr);

// Renames `from` within its file system in one step, never over another file.
// Throws FileError: `taken` where something is at `to`, `from` itself included;
// only its own name in another case may be. A path with a U+0000 is refused, here
// as everywhere.
void renameToFree(const QString& from, const QString& to);

// The same, to the first name in `folder` that is free: "stem.extension", then
// "stem 2.extension", "stem 3.extension", … without limit. The path that it got.
QString moveToFree(const QString& from, const QString& folder, const QString& stem, const QString& extension);

// Throws FileError where the entries of a folder can't be listed and opened.
void requireEnterable(const QString& folder);

// Throws FileError where there is no regular file that can be read. It isn't opened.
void requireReadable(const QString& path);

// Brings a file, or the entries of a folder, to the disk. Throws FileError.
void syncFile(const QString& path);
void syncFolder(const QString& path);

// `stem`, a dot and `extension`, the stem cut between two characters so that
// the whole has at most 255 bytes, what file systems take for one name.
QString fittingName(const QString& stem, const QString& extension);
// The same with a blank and the count behind the stem, which is cut alike for
// every count.
QString countedName(const QString& stem, int count, const QString& extension);

// The first path in `folder` that is free: "stem.extension", then
// "stem 2.extension", "stem 3.extension", … without limit.
QString uniqueFreePath(const QString& folder, const QString& stem, const QString& extension);

// Removes the temporaries that a killed writeDurably() left in `folder`. Only
// the one owner of the folder may call this.
void sweepStrays(const QString& folder);

} // namespace Files
} // namespace tonequill
