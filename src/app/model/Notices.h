#pragma once

#include "base/Clock.h"
#include "base/Ticket.h"

#include <QObject>
#include <QString>
#include <QUuid>

#include <optional>

namespace tonequill {

// Whether a message tells of a failure.
enum class Tone { plain, error };

// The transient message line.
struct Notice {
    QUuid id;
    QString text;
    bool isError = false;
};

// The one channel of messages to the user. One thread. The clock outlives it.
class Notices : public QObject {
    Q_OBJECT

public:
    explicit Notices(Clock& clock) : m_clock(clock) {}

    // Shows a message: 3.5 seconds, or 7 for an error. It replaces the one before
    // at once, and lives its own full time.
    void say(const QString& text, Tone tone = Tone::plain);
    const std::optional<Notice>& notice() const { return m_notice; }
    QString text() const { return m_notice ? m_notice->text : QString(); }
    bool isError() const { return m_notice && m_notice->isError; }

Q_SIGNALS:
    void changed();

private:
    void set(std::optional<Notice> notice);

    Clock& m_clock;
    std::optional<Notice> m_notice;
    Tickets m_shown;
};

} // namespace tonequill
