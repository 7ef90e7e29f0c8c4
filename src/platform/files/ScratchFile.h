#pragma once

#include <QString>

namespace tonequill {

// A temporary file that goes when its owner does. A failure to remove it is
// ignored. None for an empty path. Any thread.
class ScratchFile {
public:
    ScratchFile() = default;
    explicit ScratchFile(QString path);
    ~ScratchFile();
    ScratchFile(ScratchFile&& other) noexcept;
    ScratchFile& operator=(ScratchFile&& other) noexcept;

    // One of a fresh name in the system's temporary folder; nothing is there yet.
    static ScratchFile withExtension(const QString& extension);

    const QString& path() const { return m_path; }
    // It is no longer temporary: it stays.
    void keep();

    // Removes those of all owners, for a process that is left without their ends.
    static void removeAll();

private:
    QString m_path;
};

} // namespace tonequill
