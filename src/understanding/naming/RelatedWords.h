#pragma once

#include "base/FlowGroup.h"
#include "base/Ticket.h"
#include "platform/network/LanguageModel.h"

#include <QObject>
#include <QStringList>

namespace tonequill {

// What a search that found nothing may have meant: tags from a language model.
// It asks only once the query has rested, and only about the newest one. One
// thread. The model and the clock outlive it.
class RelatedWords : public QObject {
    Q_OBJECT

public:
    RelatedWords(LanguageModel& model, Clock& clock);

    // Whether the search itself found something for the query.
    enum class Found { nothing, something };

    // The query changed: forgets the words and every question about the one before.
    void setQuery(const QString& query, Found found);

    // Empty until there is an answer, and without a language model for good.
    const QStringList& words() const { return m_words; }

Q_SIGNALS:
    void wordsChanged();

private:
    QCoro::Task<> ask(QString query, Ticket ticket);
    void setWords(QStringList words);

    LanguageModel& m_model;
    Clock& m_clock;
    QStringList m_words;
    Tickets m_queries;
    FlowGroup m_flows; // last
};

} // namespace tonequill
