#include "discovery/catalogue/SymbolTable.h"

#include <QRandomGenerator>

#include <cstring>

namespace tonequill {

namespace {

// Two seeds for this process, odd and so not 0.
struct Seeds {
    std::uint64_t first = QRandomGenerator::system()->generate64() | 1;
    std::uint64_t second = QRandomGenerator::system()->generate64() | 1;
};

std::uint64_t bytesAt(const char* from)
{
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

// Of fewer than 8 bytes, all of them.
std::uint64_t fewBytes(const char* from, std::size_t count)
{
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, from, count);
    return bytes;
}

// The halves of the product of two numbers, one over the other: every bit of the one
// meets every bit of the other.
std::uint64_t folded(std::uint64_t one, std::uint64_t other)
{
    __extension__ using Wide = unsigned __int128;
    const Wide product = Wide(one) * other;
    return std::uint64_t(product) ^ std::uint64_t(product >> 64);
}

std::uint32_t hashOf(std::string_view text)
{
    static const Seeds seeds;
    std::uint64_t hash = seeds.first ^ text.size();
    const char* at = text.data();
    std::size_t left = text.size();
    for (; left >= 8; left -= 8, at += 8)
        hash = folded(hash ^ bytesAt(at), seeds.second ^ left);
    hash = folded(hash ^ fewBytes(at, left), seeds.second);
    return std::uint32_t(hash ^ hash >> 32);
}

} // namespace

std::size_t SymbolTable::slotOf(std::string_view wanted, std::uint32_t hash) const
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t at = hash & mask;
    for (; m_slots[at].symbol != kNone; at = (at + 1) & mask) {
        const Slot& slot = m_slots[at];
        if (slot.hash == hash && slot.size == wanted.size() &&
            std::memcmp(m_texts.data() + slot.start, wanted.data(), wanted.size()) == 0)
            break;
    }
    return at;
}

std::uint32_t SymbolTable::find(std::string_view wanted) const
{
    return m_slots[slotOf(wanted, hashOf(wanted))].symbol;
}

std::uint32_t SymbolTable::intern(std::string_view wanted)
{
    return intern(wanted, hashOf(wanted));
}

void SymbolTable::intern(const std::vector<std::string_view>& texts, std::vector<std::uint32_t>& symbols)
{
    const std::size_t mask = m_slots.size() - 1;
    m_hashes.clear();
    for (const std::string_view text : texts) {
        m_hashes.push_back(hashOf(text));
        __builtin_prefetch(&m_slots[m_hashes.back() & mask]);
    }
    for (const std::uint32_t hash : m_hashes)
        __builtin_prefetch(m_texts.data() + m_slots[hash & mask].start);
    symbols.clear();
    for (std::size_t i = 0; i < texts.size(); ++i)
        symbols.push_back(intern(texts[i], m_hashes[i]));
}

std::uint32_t SymbolTable::intern(std::string_view wanted, std::uint32_t hash)
{
    const std::size_t at = slotOf(wanted, hash);
    if (m_slots[at].symbol != kNone)
        return m_slots[at].symbol;
    const std::uint32_t symbol = size();
    m_slots[at] = {hash, symbol, m_starts.back(), std::uint32_t(wanted.size())};
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

} // namespace tonequill
