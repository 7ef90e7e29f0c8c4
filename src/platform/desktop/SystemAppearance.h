#pragma once

#include <QObject>
#include <QThread>

namespace tonequill {

// Whether the desktop is light or dark now, as its settings portal tells it
// (org.freedesktop.portal.Settings, "color-scheme"; 1 is dark). Light where no
// portal answers, where it has no preference, and for an answer that is none.
//
// It asks on a thread of its own: making one never waits, and `changed` comes
// once the portal has answered, then whenever the user changes it, also through
// a portal that starts later. One thread.
class SystemAppearance : public QObject {
    Q_OBJECT

public:
    SystemAppearance();
    // Waits for a bus that is just being connected to: 25 s at most, where the
    // bus takes the connection and says nothing.
    ~SystemAppearance() override;

    bool isDark() const { return m_isDark; }

Q_SIGNALS:
    void changed(bool isDark);

private:
    void set(bool isDark);

    QThread m_thread;
    bool m_isDark = false;
};

} // namespace tonequill
