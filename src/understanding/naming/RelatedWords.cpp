#include "understanding/naming/RelatedWords.h"

#include "base/Background.h"
#include "base/Text.h"
#include "understanding/naming/TagExpander.h"

namespace tonequill {

namespace {

constexpr qsizetype kShortestQuery = 3;         // characters
constexpr std::chrono::milliseconds kRest(800); // without a change of the query

} // namespace

RelatedWords::RelatedWords(LanguageModel& model, Clock& clock) : m_model(model), m_clock(clock)
{}

void RelatedWords::setQuery(const QString& query, Found found)
{
    const Ticket ticket = m_queries.begin();
    setWords({});
    const QString trimmed = text::trimmed(query);
    if (found == Found::something || text::characterCount(trimmed) < kShortestQuery)
        return;
    m_clock.after(kRest, [this, trimmed, ticket] {
        if (ticket.isCurrent()) // and so this object is there
            startFlow(ask(trimmed, ticket));
    });
}

QCoro::Task<> RelatedWords::ask(QString query, Ticket ticket)
{
    // It asks the model whether it is there, too.
    const auto understood = co_await m_flows.until(TagExpander::understand(m_model, query, std::nullopt));
    if (ticket.isCurrent() && understood)
        setWords(understood->tags);
}

void RelatedWords::setWords(QStringList words)
{
    if (m_words == words)
        return;
    m_words = std::move(words);
    Q_EMIT wordsChanged();
}

} // namespace tonequill
