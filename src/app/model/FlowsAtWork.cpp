#include "app/model/FlowsAtWork.h"

#include <algorithm>
#include <utility>

namespace tonequill {

FlowsAtWork::Entry::Entry(FlowsAtWork& flows, Kind kind, const QString& text) : m_flows(&flows), m_number(++flows.m_newest)
{
    flows.m_flows.append({m_number, kind, text});
    Q_EMIT flows.changed();
}

FlowsAtWork::Entry::~Entry()
{
    if (!m_flows)
        return;
    m_flows->m_flows.removeIf([this](const Flow& flow) { return flow.number == m_number; });
    Q_EMIT m_flows->changed();
}

FlowsAtWork::Entry::Entry(Entry&& other) noexcept : m_flows(std::exchange(other.m_flows, nullptr)), m_number(other.m_number)
{}

std::optional<FlowsAtWork::Entry> FlowsAtWork::beginAlone(Kind kind)
{
    if (isAtWork(kind))
        return std::nullopt;
    return Entry(*this, kind, {});
}

bool FlowsAtWork::isAtWork(Kind kind) const
{
    return std::any_of(m_flows.begin(), m_flows.end(), [kind](const Flow& flow) { return flow.kind == kind; });
}

QString FlowsAtWork::text() const
{
    const auto newest = std::find_if(m_flows.rbegin(), m_flows.rend(), [](const Flow& flow) { return !flow.text.isEmpty(); });
    return newest == m_flows.rend() ? QString() : newest->text;
}

} // namespace tonequill
