#pragma once

#include <QString>

#include <utility>

#include <sys/types.h>

namespace tonequill {

// The one owner of an open file of the system: it is closed on every way out,
// and no program that we start inherits it. What fails leaves its reason in
// errno. One thread at a time.
class FileDescriptor {
public:
    FileDescriptor() = default;
    // Opens `path`; `flags` and `mode` are those of open(2).
    FileDescriptor(const QString& path, int flags, mode_t mode = 0);
    ~FileDescriptor() { close(); }
    FileDescriptor(FileDescriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;

    bool isOpen() const { return m_fd >= 0; }
    // -1 when nothing is open.
    int get() const { return m_fd; }

    // False if closing tells of a write that failed late. Nothing is open
    // afterwards, whatever it says, and closing once more is true.
    bool close();

private:
    int m_fd = -1;
};

} // namespace tonequill
