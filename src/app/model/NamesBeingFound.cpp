#include "app/model/NamesBeingFound.h"

#include <algorithm>
#include <utility>

namespace tonequill {

NamesBeingFound::Claim::Claim(NamesBeingFound& names, const QSet<QUuid>& ids) : m_names(names), m_ids(ids)
{
    m_ids.removeIf([&names](const QUuid& id) { return names.isClaimed(id); });
    m_names.m_claims << this;
}

NamesBeingFound::Claim::~Claim()
{
    m_names.m_claims.removeOne(this);
}

const NamesBeingFound::Claim* NamesBeingFound::claimOf(const QUuid& id) const
{
    const auto claim = std::find_if(m_claims.begin(), m_claims.end(), [&id](const Claim* one) { return one->has(id); });
    return claim == m_claims.end() ? nullptr : *claim;
}

void NamesBeingFound::stop(const QUuid& id)
{
    if (const Claim* claim = claimOf(id))
        claim->progress()->cancel();
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
