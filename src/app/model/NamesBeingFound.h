#pragma once

#include "base/Progress.h"
#include "base/Ticket.h"

#include <QList>
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
        // Of the flow's work; cancelled once nobody wants its names any more.
        const ProgressPtr& progress() const { return m_progress; }

    private:
        NamesBeingFound& m_names;
        QSet<QUuid> m_ids;
        ProgressPtr m_progress = std::make_shared<Progress>();
    };
    bool isClaimed(const QUuid& id) const { return claimOf(id) != nullptr; }
    // The flow that names the sound ends with the one it looks at, which keeps its name.
    void stop(const QUuid& id);

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
    const Claim* claimOf(const QUuid& id) const;

    QList<const Claim*> m_claims;
    QSet<QUuid> m_lookedAt;
    Tickets m_questions;
    ProgressPtr m_asking;
};

} // namespace tonequill
