#pragma once

#include <QString>

#include <optional>

namespace tonequill {

// What the system knows a folder by, whatever its name is. Any thread.
struct FolderIdentity {
    quint64 device = 0; // may be another one each time that its disk is mounted
    quint64 inode = 0;

    // None if there is no folder at `path`; a link is the folder it leads to.
    static std::optional<FolderIdentity> of(const QString& path);

    bool operator==(const FolderIdentity&) const = default;
};

// The system's number for the kind of file system (ext4, exFAT …) at `path`;
// none if nothing is there.
std::optional<quint64> fileSystemAt(const QString& path);

// Whether a folder on that kind of file system has one inode for ever. On some it
// gets a new number when the disk is mounted, or whenever the kernel forgot it.
bool hasLastingInodes(quint64 fileSystem);

} // namespace tonequill
