#include "app/model/NamesBeingFound.h"

#include <utility>

namespace tonequill {

NamesBeingFound::Claim::Claim(NamesBeingFound& names, const QSet<QUuid>& ids)
    : m_names(names),
      m_ids(QSet<QUuid>(ids).subtract(names.m_claimed))
{
    m_names.m_claimed.unite(m_ids);
}

NamesBeingFound::Claim::~Claim()
{
    m_names.m_claimed.subtract(m_ids);
}

NamesBeingFound::Look::Look(NamesBeingFound& names, const QUuid& id) : m_names(names), m_id(id)
{
    m_names.m_lookedAt.insert(id);
    Q_EMIT m_names.changed(id);
}

NamesBeingFound::Look::~Look()
{
    m_names.m_lookedAt.remove(m_id);
    Q_EMIT m_names.changed(m_id);
}

NamesBeingFound::Question NamesBeingFound::ask()
{
    forgetQuestion();
    m_asking = std::make_shared<Progress>();
    return {m_questions.begin(), m_asking};
}

void NamesBeingFound::forgetQuestion()
{
    m_questions.cancel();
    if (const ProgressPtr asking = std::exchange(m_asking, nullptr))
        asking->cancel();
}

} // namespace tonequill
