#pragma once

#include <QString>

namespace tonequill {

// What the program asks of the others on the machine, as a port: tests take one
// away in the middle of a hand-over. Nothing here waits for another program.
class OtherApps {
public:
    virtual ~OtherApps() = default;

    // True if the application of that bundle identifier ("com.example.Editor") is there.
    virtual bool has(const QString& bundle) const = 0;

    // Starts that application with a file. False if it isn't there, or not any
    // more; what becomes of the file is not waited for.
    virtual bool open(const QString& path, const QString& bundle) = 0;

    // Shows a file, selected in its folder, or only the folder where nothing can
    // select it.
    virtual void reveal(const QString& path) = 0;

    // Shows what is in a folder.
    virtual void showFolder(const QString& path) = 0;
};

} // namespace tonequill
