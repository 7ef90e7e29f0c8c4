#pragma once

#include <QList>
#include <QRect>
#include <QString>

#include <optional>

namespace tonequill {

// Where the window was and how large, as it is kept: "1180x740+60+40", with
// " maximized" behind where it was. A plain value, in pixels at scale 1.
struct WindowPlace {
    QRect frame; // of the window while it isn't maximised
    bool isMaximized = false;

    bool operator==(const WindowPlace&) const = default;

    QString text() const;
    // None for anything else than what text() gives.
    static std::optional<WindowPlace> fromText(const QString& text);

    // Held to at least `least`, and to the screen on which its title can be taken hold
    // of. None of them: it goes to the middle of the first. REQUIRES: `screens`, what
    // windows may take of each, isn't empty.
    WindowPlace fitted(const QList<QRect>& screens, const QSize& least) const;
};

} // namespace tonequill
