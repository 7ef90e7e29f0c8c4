#pragma once

#include <QString>

#include <cstdint>
#include <string_view>
#include <vector>

namespace tonequill {

// Texts that come again and again (tags, words, names), each kept once and known by
// a number, from 0 in the order in which they came. UTF-8. The hash is seeded for
// each process: a file can't be made to collide.
class SymbolTable {
public:
    static constexpr std::uint32_t kNone = UINT32_MAX;

    // The number of a text, given to it if it is new.
    std::uint32_t intern(std::string_view text);
    // Of several. Quicker than one by one: the memory of all is asked for before the first is
    // looked at.
    void intern(const std::vector<std::string_view>& texts, std::vector<std::uint32_t>& symbols);
    // kNone for a text that isn't there.
    std::uint32_t find(std::string_view text) const;

    std::string_view text(std::uint32_t symbol) const
    {
        return {m_texts.data() + m_starts[symbol], m_starts[symbol + 1] - m_starts[symbol]};
    }
    std::uint32_t size() const { return std::uint32_t(m_starts.size() - 1); }

private:
    // With where its text lies, so that a look needs no third place.
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t symbol = kNone;
        std::uint32_t start = 0;
        std::uint32_t size = 0;
    };

    std::uint32_t intern(std::string_view text, std::uint32_t hash);
    // The slot of the text, or the free one where it belongs.
    std::size_t slotOf(std::string_view text, std::uint32_t hash) const;
    void grow();

    std::vector<std::uint32_t> m_hashes; // of the texts that are interned just now

    std::vector<char> m_texts;
    std::vector<std::uint32_t> m_starts{0};              // and the end of the last one
    std::vector<Slot> m_slots = std::vector<Slot>(1024); // a power of two, at most 3/4 full
};

// The texts of symbols as strings of Qt. One that came lately is shared, not made anew.
// The table outlives it. One thread.
class SymbolTexts {
public:
    // Remembers so many at most, a power of two.
    SymbolTexts(const SymbolTable& symbols, std::size_t count) : m_symbols(symbols), m_lately(count) {}

    const QString& of(std::uint32_t symbol)
    {
        Text& text = m_lately[symbol & (m_lately.size() - 1)];
        if (text.symbol != symbol) {
            const std::string_view bytes = m_symbols.text(symbol);
            text = {symbol, QString::fromUtf8(bytes.data(), qsizetype(bytes.size()))};
        }
        return text.text;
    }

private:
    struct Text {
        std::uint32_t symbol = SymbolTable::kNone;
        QString text;
    };
    const SymbolTable& m_symbols;
    std::vector<Text> m_lately;
};

} // namespace tonequill
