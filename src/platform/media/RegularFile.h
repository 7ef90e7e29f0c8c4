#pragma once

#include "base/Progress.h"
#include "platform/files/FileDescriptor.h"

#include <QString>

#include <cstddef>

namespace tonequill {

// A regular file opened for reading at any offset. Nothing is mapped into
// memory: a file that shrinks gives short reads, not a signal.
//
// It also carries whether its sound is still wanted: everybody who reads it has it
// at hand, down to the callbacks of libraries that must not throw.
class RegularFile {
public:
    // Throws AudioFileError (open) for whatever is not a readable regular file.
    // A pipe, a socket or a device is never opened, since that alone may hang.
    // REQUIRES: `progress` outlives the file.
    explicit RegularFile(const QString& path, const Progress* progress = nullptr);

    const QString& path() const { return m_path; }

    // Bytes when it was opened.
    qint64 size() const { return m_size; }

    // Reads up to `bytes` bytes at `offset`; fewer only at the end of the file.
    // -1 for an error of the device, and for a file that isn't wanted any more.
    // REQUIRES: offset >= 0, bytes >= 0.
    qint64 read(void* into, qint64 bytes, qint64 offset) const;

    // Whether who asked for it has cancelled since.
    bool isCancelled() const { return m_progress && m_progress->isCancelled(); }
    // Throws Cancelled then.
    void requireWanted() const;

private:
    QString m_path;
    const Progress* m_progress;
    FileDescriptor m_file;
    qint64 m_size = 0;
};

} // namespace tonequill
