#include "platform/files/FileDescriptor.h"

#include "platform/files/SystemPath.h"

#include <fcntl.h>
#include <unistd.h>

namespace tonequill {

FileDescriptor::FileDescriptor(const QString& path, int flags, mode_t mode)
    : m_fd(::open(systemPath(path).constData(), flags | O_CLOEXEC, mode))
{}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept
{
    if (this != &other) {
        close();
        m_fd = std::exchange(other.m_fd, -1);
    }
    return *this;
}

bool FileDescriptor::close()
{
    const int fd = std::exchange(m_fd, -1);
    return fd < 0 || ::close(fd) == 0;
}

} // namespace tonequill
