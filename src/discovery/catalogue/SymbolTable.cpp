#include "discovery/catalogue/SymbolTable.h"

#include <QHashFunctions>

#include <cstring>

namespace tonequill {

std::uint32_t SymbolTable::hashOf(std::string_view text) const
{
    static const std::size_t seed = QHashSeed::globalSeed();
    const std::size_t hash = qHashBits(text.data(), text.size(), seed);
    return std::uint32_t(hash) ^ std::uint32_t(std::uint64_t(hash) >> 32);
}

std::size_t SymbolTable::slotOf(std::string_view wanted, std::uint32_t hash) const
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t at = hash & mask;
    while (m_slots[at].symbol != kNone && (m_slots[at].hash != hash || text(m_slots[at].symbol) != wanted))
        at = (at + 1) & mask;
    return at;
}

std::uint32_t SymbolTable::find(std::string_view wanted) const
{
    return m_slots[slotOf(wanted, hashOf(wanted))].symbol;
}

std::uint32_t SymbolTable::intern(std::string_view wanted)
{
    const std::uint32_t hash = hashOf(wanted);
    const std::size_t at = slotOf(wanted, hash);
    if (m_slots[at].symbol != kNone)
        return m_slots[at].symbol;
    const std::uint32_t symbol = size();
    m_slots[at] = {hash, symbol};
    m_texts.insert(m_texts.end(), wanted.begin(), wanted.end());
    m_starts.push_back(std::uint32_t(m_texts.size()));
    if (std::size_t(size()) * 4 > m_slots.size() * 3)
        grow();
    return symbol;
}

void SymbolTable::grow()
{
    std::vector<Slot> old(m_slots.size() * 2);
    old.swap(m_slots);
    const std::size_t mask = m_slots.size() - 1;
    for (const Slot& slot : old) {
        if (slot.symbol == kNone)
            continue;
        std::size_t at = slot.hash & mask;
        while (m_slots[at].symbol != kNone)
            at = (at + 1) & mask;
        m_slots[at] = slot;
    }
}

void SymbolTable::shrink()
{
    m_texts.shrink_to_fit();
    m_starts.shrink_to_fit();
}

} // namespace tonequill
