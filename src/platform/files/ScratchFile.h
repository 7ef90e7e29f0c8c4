#pragma once

#include <QString>

namespace tonequill {

// A temporary file, or a folder with all that is in it, that goes when its owner
// does. A failure to remove it is ignored. None for an empty path. Any thread.
//
// While it is there it is noted in the system's temporary folder, so that what a
// killed process leaves is known to the next one, wherever it lies.
class ScratchFile {
public:
    ScratchFile() = default;
    explicit ScratchFile(QString path);
    ~ScratchFile();
    ScratchFile(ScratchFile&& other) noexcept;
    ScratchFile& operator=(ScratchFile&& other) noexcept;

    // One of a fresh name in the system's temporary folder; nothing is there yet.
    static ScratchFile withExtension(const QString& extension);
    // A hidden one of a fresh name in that folder, for what gets its name when it is
    // complete; nothing is there yet.
    static ScratchFile hiddenIn(const QString& folder);
    // A fresh folder that only the user may enter, in the system's temporary folder.
    // None, with an empty path, where it can't be made.
    static ScratchFile privateFolder();

    const QString& path() const { return m_path; }
    // It is no longer temporary: it stays.
    void keep();

    // Removes those of all owners, for a process that is left without their ends.
    static void removeAll();

    // Removes what processes that are dead have left.
    static void sweepStrays();

private:
    QString m_path;
};

} // namespace tonequill
