#pragma once

#include "platform/files/FileDescriptor.h"

#include <QString>

#include <optional>

namespace tonequill {

// Says which one program writes to a library. The lock is a file beside the
// library folder, held by the kernel for as long as the program lives, so that a
// killed program leaves no lock behind. A file of that name that isn't a lock of ours
// is locked as well, and never written to; where no file can be locked without
// following a link, the library folder is.
class LibraryLock {
public:
    explicit LibraryLock(const QString& libraryFolder);
    ~LibraryLock();
    LibraryLock(const LibraryLock&) = delete;
    LibraryLock& operator=(const LibraryLock&) = delete;

    // True if this program is the owner now. Where no lock file can be made (a
    // read-only disk), there is nobody to be in the way of, and it is true as well.
    bool acquire();
    // The same, waiting for an owner that is only starting or soon done. False once
    // the owner listens, or after `patienceMs`. Blocks.
    bool acquireSoon(int patienceMs);

    // Tells other programs under which name the owner listens (HandOver).
    // REQUIRES: acquire() was true.
    void publish(const QString& address);

    // Where the present owner listens; none while it doesn't.
    std::optional<QString> ownerAddress() const;

private:
    FileDescriptor opened() const;

    QString m_folder;
    QString m_path;
    FileDescriptor m_file; // open while this program is the owner
};

} // namespace tonequill
