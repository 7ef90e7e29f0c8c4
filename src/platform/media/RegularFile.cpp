#include "platform/media/RegularFile.h"

#include "platform/files/SystemPath.h"
#include "platform/media/AudioFile.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tonequill {

RegularFile::RegularFile(const QString& path, const Progress* progress) : m_path(path), m_progress(progress)
{
    struct stat status = {};
    if (::stat(systemPath(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        throw AudioFileError(AudioFileError::Kind::open, path);
    // Not blocking, in case the name became a pipe since the look at it.
    m_file = FileDescriptor(path, O_RDONLY | O_NONBLOCK);
    if (!m_file.isOpen() || ::fstat(m_file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        throw AudioFileError(AudioFileError::Kind::open, path);
    m_size = status.st_size;
}

qint64 RegularFile::read(void* into, qint64 bytes, qint64 offset) const
{
    auto* target = static_cast<std::byte*>(into);
    qint64 done = 0;
    while (done < bytes) {
        if (isCancelled())
            return -1;
        const ssize_t got = ::pread(m_file.get(), target + done, static_cast<std::size_t>(bytes - done), offset + done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return done > 0 ? done : -1;
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

void RegularFile::requireWanted() const
{
    if (isCancelled())
        throw Cancelled();
}

} // namespace tonequill
