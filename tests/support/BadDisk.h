#pragma once

#include <QString>

namespace tonequill::test {

// While it lives, this process can't read what lies at `firstBadByte` of the file or
// behind it: the system gives an input/output error. One at a time.
class BadDisk {
public:
    BadDisk(const QString& path, qint64 firstBadByte);
    ~BadDisk();
    BadDisk(const BadDisk&) = delete;
    BadDisk& operator=(const BadDisk&) = delete;
};

} // namespace tonequill::test
