#pragma once

#include "platform/files/FileDescriptor.h"

#include <QString>

namespace tonequill {

// A new file that is removed again unless finish() was reached.
class OutputFile {
public:
    // Throws AudioFileError (write).
    explicit OutputFile(const QString& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    const QString& path() const { return m_path; }

    // Writes all of it at `offset`. Throws AudioFileError (write).
    void write(const void* from, qint64 bytes, qint64 offset);

    // As write(), for callbacks from C: false, and the reason is kept for
    // throwFailure(), instead of an exception.
    bool tryWrite(const void* from, qint64 bytes, qint64 offset) noexcept;

    // Throws AudioFileError (write) with the reason that tryWrite() kept.
    [[noreturn]] void throwFailure() const;

    // Closes the file and keeps it. Throws AudioFileError (write). Durable it
    // is only once the caller has it synced to the disk.
    void finish();

private:
    QString m_path;
    FileDescriptor m_file;
    int m_failure = 0; // errno
    bool m_isFinished = false;
};

} // namespace tonequill
