// A disk that fills up, for a program that starts with this library in LD_PRELOAD:
// after TONEQUILL_DISK_BYTES bytes written to regular files, each further write fails
// with ENOSPC. No rights are needed, and every byte can be the last one.

#include <atomic>
#include <cerrno>
#include <cstdlib>

#include <dlfcn.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

std::atomic<long long>& bytesLeft()
{
    static std::atomic<long long> left(std::getenv("TONEQUILL_DISK_BYTES") ? std::atoll(std::getenv("TONEQUILL_DISK_BYTES"))
                                                                           : (1LL << 60));
    return left;
}

bool isRegular(int fd)
{
    struct stat status = {};
    return ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
}

// How many of `count` bytes still fit; 0 sets errno. What no longer fits ends the room for good.
std::size_t thatFit(int fd, std::size_t count)
{
    if (count == 0 || !isRegular(fd))
        return count;
    const long long wanted = static_cast<long long>(count);
    const long long left = bytesLeft().fetch_sub(wanted);
    if (left >= wanted)
        return count;
    bytesLeft() = 0;
    if (left <= 0)
        errno = ENOSPC;
    return left <= 0 ? 0 : static_cast<std::size_t>(left);
}

template <typename Function>
Function real(const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

ssize_t write(int fd, const void* bytes, size_t count)
{
    static const auto next = real<ssize_t (*)(int, const void*, size_t)>("write");
    const size_t fit = thatFit(fd, count);
    return fit == 0 && count > 0 ? -1 : next(fd, bytes, fit);
}

ssize_t pwrite(int fd, const void* bytes, size_t count, off_t offset)
{
    static const auto next = real<ssize_t (*)(int, const void*, size_t, off_t)>("pwrite");
    const size_t fit = thatFit(fd, count);
    return fit == 0 && count > 0 ? -1 : next(fd, bytes, fit, offset);
}

ssize_t pwrite64(int fd, const void* bytes, size_t count, off64_t offset)
{
    return pwrite(fd, bytes, count, offset);
}

ssize_t writev(int fd, const struct iovec* pieces, int count)
{
    ssize_t written = 0;
    for (int i = 0; i < count; ++i) {
        const ssize_t piece = write(fd, pieces[i].iov_base, pieces[i].iov_len);
        if (piece < 0)
            return written > 0 ? written : -1;
        written += piece;
        if (static_cast<size_t>(piece) < pieces[i].iov_len)
            break;
    }
    return written;
}

ssize_t copy_file_range(int, off64_t*, int, off64_t*, size_t, unsigned)
{
    errno = ENOSYS; // whoever copies writes
    return -1;
}

ssize_t sendfile(int, int, off_t*, size_t)
{
    errno = EINVAL;
    return -1;
}

ssize_t sendfile64(int, int, off64_t*, size_t)
{
    errno = EINVAL;
    return -1;
}

} // extern "C"
