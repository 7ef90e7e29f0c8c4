#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace tonequill {

// What the program is at, for the window to show, and what keeps a flow from
// running beside itself, whoever asks: a double click, a held key, a script. One
// thread; it outlives the flows.
class FlowsAtWork : public QObject {
    Q_OBJECT

public:
    enum class Kind { importing, adding, saving, sending, naming };

    // Stands for a flow, the whole way through it, whichever way out it takes.
    class Entry {
    public:
        Entry(FlowsAtWork& flows, Kind kind, const QString& text);
        ~Entry();
        Entry(Entry&& other) noexcept;
        Entry& operator=(Entry&&) = delete;

    private:
        FlowsAtWork* m_flows; // null once it has moved
        int m_number;
    };

    // `text` says what the flow is at, where that is told.
    Entry begin(Kind kind, const QString& text = {}) { return {*this, kind, text}; }
    // None while another one of the kind is at work.
    std::optional<Entry> beginAlone(Kind kind);

    bool isAtWork(Kind kind) const;
    bool isWorking() const { return !m_flows.isEmpty(); }
    // Of the newest flow that tells; empty if none does.
    QString text() const;

Q_SIGNALS:
    void changed();

private:
    struct Flow {
        int number = 0;
        Kind kind = Kind::importing;
        QString text;
    };
    QList<Flow> m_flows;
    int m_newest = 0;
};

} // namespace tonequill
