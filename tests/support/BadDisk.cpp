#include "support/BadDisk.h"

#include <QFile>

#include <atomic>
#include <cerrno>
#include <stdexcept>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

struct Bad {
    std::atomic<dev_t> device = 0;
    std::atomic<ino_t> file = 0;
    std::atomic<off_t> firstByte = 0;
};
Bad bad;

bool isBad(int descriptor, std::size_t bytes, off_t offset)
{
    struct stat status = {};
    return bad.file != 0 && ::fstat(descriptor, &status) == 0 && status.st_dev == bad.device && status.st_ino == bad.file &&
           offset + static_cast<off_t>(bytes) > bad.firstByte;
}

} // namespace

// Takes the place of the C library's function in the whole test program.
extern "C" ssize_t pread(int descriptor, void* into, std::size_t bytes, off_t offset)
{
    if (isBad(descriptor, bytes, offset)) {
        errno = EIO;
        return -1;
    }
    return ::syscall(SYS_pread64, descriptor, into, bytes, offset);
}

namespace tonequill::test {

BadDisk::BadDisk(const QString& path, qint64 firstBadByte)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        throw std::runtime_error("no file to be bad");
    bad.device = status.st_dev;
    bad.firstByte = firstBadByte;
    bad.file = status.st_ino;
}

BadDisk::~BadDisk()
{
    bad.file = 0;
}

} // namespace tonequill::test
