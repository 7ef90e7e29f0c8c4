#pragma once

#include "platform/files/FileDescriptor.h"

#include <QString>

#include <cstddef>

namespace tonequill {

// A regular file opened for reading at any offset. Nothing is mapped into
// memory: a file that shrinks gives short reads, not a signal.
class RegularFile {
public:
    // Throws AudioFileError (open) for whatever is not a readable regular file.
    // A pipe, a socket or a device is never opened, since that alone may hang.
    explicit RegularFile(const QString& path);

    const QString& path() const { return m_path; }

    // Bytes when it was opened.
    qint64 size() const { return m_size; }

    // Reads up to `bytes` bytes at `offset`; fewer only at the end of the file.
    // -1 for an error of the device. REQUIRES: offset >= 0, bytes >= 0.
    qint64 read(void* into, qint64 bytes, qint64 offset) const;

private:
    QString m_path;
    FileDescriptor m_file;
    qint64 m_size = 0;
};

} // namespace tonequill
