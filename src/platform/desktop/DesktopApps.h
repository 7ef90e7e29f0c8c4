#pragma once

#include "platform/desktop/OtherApps.h"

#include <QThreadPool>

#include <chrono>

namespace tonequill {

// Other programs by the rules of the freedesktop.org desktops.
//
// An application stands for a bundle identifier if its desktop entry lists it:
//
//     X-Tonequill-Bundle=com.example.Editor;
//
// A user's own entry takes precedence over the system's of the same name. Files
// are shown by the file manager that answers to org.freedesktop.FileManager1 on
// the session bus; where none does within `patience`, xdg-open opens the folder.
// Any thread.
class DesktopApps final : public OtherApps {
public:
    explicit DesktopApps(std::chrono::milliseconds patience = std::chrono::seconds(5));
    // Until every file manager that was asked has answered or had its time, as when
    // this goes.
    void waitForAnswers() { m_askers.waitForDone(); }

    bool has(const QString& bundle) const override;
    bool open(const QString& path, const QString& bundle) override;
    void reveal(const QString& path) override;
    void showFolder(const QString& path) override;

private:
    std::chrono::milliseconds m_patience;
    QThreadPool m_askers; // its own: a file manager may let a thread wait for seconds
};

} // namespace tonequill
