#include "platform/media/OutputFile.h"

#include "platform/files/SystemPath.h"
#include "platform/media/AudioFile.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

// The part of the user's sentence after the colon.
QString reason(int code)
{
    switch (code) {
    case ENOSPC:
    case EDQUOT:
        return u"the disk is full"_s;
    case EFBIG:
        return u"it is too large for this disk"_s;
    case EACCES:
    case EPERM:
    case EROFS:
        return u"its folder can't be written to"_s;
    case ENOENT:
    case ENOTDIR:
        return u"its folder doesn't exist"_s;
    case ENAMETOOLONG:
        return u"its name is too long"_s;
    default:
        return QString::fromLocal8Bit(std::strerror(code));
    }
}

} // namespace

OutputFile::OutputFile(const QString& path) : m_path(path)
{
    // Not blocking, since a pipe at this name would keep us waiting for a reader.
    m_file = FileDescriptor(path, O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK, 0666);
    if (!m_file.isOpen()) {
        m_failure = errno;
        throwFailure();
    }
}

OutputFile::~OutputFile()
{
    m_file.close(); // first: some file systems don't remove what is open
    if (!m_isFinished)
        ::unlink(systemPath(m_path).constData());
}

bool OutputFile::tryWrite(const void* from, qint64 bytes, qint64 offset) noexcept
{
    const auto* source = static_cast<const char*>(from);
    while (bytes > 0 && m_failure == 0) {
        const ssize_t written = ::pwrite(m_file.get(), source, static_cast<std::size_t>(bytes), offset);
        if (written > 0) {
            source += written;
            offset += written;
            bytes -= written;
        } else if (written == 0) {
            m_failure = EIO;
        } else if (errno != EINTR) {
            m_failure = errno;
        }
    }
    return m_failure == 0;
}

void OutputFile::write(const void* from, qint64 bytes, qint64 offset)
{
    if (!tryWrite(from, bytes, offset))
        throwFailure();
}

void OutputFile::throwFailure() const
{
    throw AudioFileError(AudioFileError::Kind::write, m_path, m_failure == 0 ? QString() : reason(m_failure));
}

void OutputFile::finish()
{
    if (m_failure != 0)
        throwFailure();
    // Some file systems tell only now that a write did not reach the disk.
    if (!m_file.close() && errno != EINTR) {
        m_failure = errno;
        throwFailure();
    }
    m_isFinished = true;
}

} // namespace tonequill
