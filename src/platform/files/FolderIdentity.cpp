#include "platform/files/FolderIdentity.h"

#include "platform/files/SystemPath.h"

#include <algorithm>
#include <array>

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace tonequill {

std::optional<FolderIdentity> FolderIdentity::of(const QString& path)
{
    struct stat info = {};
    if (::stat(systemPath(path).constData(), &info) != 0 || !S_ISDIR(info.st_mode))
        return std::nullopt;
    return FolderIdentity{info.st_dev, info.st_ino};
}

std::optional<quint64> fileSystemAt(const QString& path)
{
    struct statfs info = {};
    if (::statfs(systemPath(path).constData(), &info) != 0)
        return std::nullopt;
    return quint64(info.f_type);
}

bool hasLastingInodes(quint64 fileSystem)
{
    constexpr quint64 kExfat = 0x2011BAB0; // not in the magic.h of every kernel
    constexpr quint64 kCifs = 0xFF534D42;
    constexpr quint64 kSmb2 = 0xFE534D42;
    constexpr std::array kWithout{quint64(MSDOS_SUPER_MAGIC), quint64(FUSE_SUPER_MAGIC), kExfat, kCifs, kSmb2};
    return std::find(kWithout.begin(), kWithout.end(), fileSystem) == kWithout.end();
}

} // namespace tonequill
