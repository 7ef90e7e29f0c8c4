#include "platform/files/FreeRename.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tonequill::FreeRename {

int inOneStep(const QByteArray& from, const QByteArray& to)
{
    return ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0 ? 0 : errno;
}

int byLink(const QByteArray& from, const QByteArray& to)
{
    if (::link(from.constData(), to.constData()) != 0)
        return errno;
    if (::unlink(from.constData()) == 0)
        return 0;
    const int failure = errno;
    ::unlink(to.constData());
    return failure;
}

int byReservation(const QByteArray& from, const QByteArray& to)
{
    struct stat source = {};
    if (::lstat(from.constData(), &source) != 0)
        return errno;
    const int reserved = ::open(to.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (reserved < 0)
        return errno;
    ::close(reserved);
    if (::rename(from.constData(), to.constData()) == 0)
        return 0;
    const int failure = errno;
    ::unlink(to.constData());
    return failure;
}

bool isUnknown(int failure)
{
    return failure == EINVAL || failure == ENOSYS || failure == EOPNOTSUPP || failure == EPERM || failure == EMLINK;
}

} // namespace tonequill::FreeRename
