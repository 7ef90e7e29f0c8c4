#pragma once

#include "base/Progress.h"
#include "base/Ticket.h"

#include <QObject>
#include <QSet>
#include <QUuid>

namespace tonequill {

// Which sounds are being given names. One thread; it outlives the flows.
class NamesBeingFound : public QObject {
    Q_OBJECT

public:
    // The sounds of one flow that names, for as long as it is at work.
    class Claim {
    public:
        // Those of `ids` that no other flow has.
        Claim(NamesBeingFound& names, const QSet<QUuid>& ids);
        ~Claim();
        Claim(const Claim&) = delete;
        Claim& operator=(const Claim&) = delete;

        bool has(const QUuid& id) const { return m_ids.contains(id); }
        bool isEmpty() const { return m_ids.isEmpty(); }

    private:
        NamesBeingFound& m_names;
        QSet<QUuid> m_ids;
    };

    // One of them is looked at just now, and its row tells so.
    class Look {
    public:
        Look(NamesBeingFound& names, const QUuid& id);
        ~Look();
        Look(const Look&) = delete;
        Look& operator=(const Look&) = delete;

    private:
        NamesBeingFound& m_names;
        QUuid m_id;
    };
    bool isLookedAt(const QUuid& id) const { return m_lookedAt.contains(id); }

    // A question for one name. The newest counts: what is at work for the one before
    // is cancelled.
    struct Question {
        Ticket ticket;
        ProgressPtr progress;
    };
    Question ask();
    // Nobody waits for an answer any more.
    void forgetQuestion();

Q_SIGNALS:
    void changed(const QUuid& id); // whether it is looked at

private:
    QSet<QUuid> m_claimed;
    QSet<QUuid> m_lookedAt;
    Tickets m_questions;
    ProgressPtr m_asking;
};

} // namespace tonequill
