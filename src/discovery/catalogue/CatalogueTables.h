#pragma once

#include "discovery/catalogue/CatalogueReader.h"
#include "discovery/catalogue/SymbolTable.h"
#include "discovery/records/OnlineSound.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tonequill {

// The catalogue in memory: a few flat arrays and no object for each sound. A sound is
// its index, from 0 in the order of the file; texts are UTF-8. Made once by a
// TableBuilder, then read only; any threads.
class CatalogueTables {
public:
    using Symbol = std::uint32_t;

    std::int32_t soundCount() const { return std::int32_t(m_sounds.size()); }
    // The record of a sound; of several, what they have in common is shared by way of `texts`.
    OnlineSound sound(std::int32_t index, SymbolTexts& texts) const;
    OnlineSound sound(std::int32_t index) const;
    SymbolTexts texts(std::size_t count) const { return {m_symbols, count}; }

    // Asks the memory for a sound that is looked at soon: first for its row, a little later for what
    // the row leads to.
    void willNeed(std::int32_t index) const { __builtin_prefetch(&m_sounds[std::size_t(index)]); }
    void willNeedTexts(std::int32_t index) const
    {
        const Sound& sound = m_sounds[std::size_t(index)];
        __builtin_prefetch(m_tags.data() + sound.tags);
        __builtin_prefetch(m_words.data() + sound.words);
        __builtin_prefetch(m_texts.data() + sound.id);
        __builtin_prefetch(m_texts.data() + sound.lower);
    }

    double duration(std::int32_t index) const { return m_durations[std::size_t(index)]; }
    double popularity(std::int32_t index) const { return m_popularities[std::size_t(index)]; }

    // No sound of a file is.
    static bool isArabic(std::int32_t) { return false; }

    // In lower case.
    std::string_view lowerTitle(std::int32_t index) const;
    // The tags in the order of the file, repeats and all.
    std::span<const Symbol> tags(std::int32_t index) const;
    // The distinct words of the title.
    std::span<const Symbol> titleWords(std::int32_t index) const;

    // Tags, their forms in lower case, and the words of titles are symbols.
    Symbol find(std::string_view text) const { return m_symbols.find(text); } // SymbolTable::kNone if there is none
    std::string_view text(Symbol symbol) const { return m_symbols.text(symbol); }
    Symbol lower(Symbol tag) const { return m_lower[tag]; }
    std::uint32_t symbolCount() const { return m_symbols.size(); }

    // The ascending indexes of the sounds that bear the tag in lower case, and of those
    // with the word, of three characters or more, in the title.
    std::span<const std::int32_t> tagPostings(Symbol tag) const { return m_tagPostings.of(tag); }
    std::span<const std::int32_t> wordPostings(Symbol word) const { return m_wordPostings.of(word); }

private:
    friend class TableBuilder;

    // Where the texts of a sound lie in m_texts, one after the other. The title in
    // lower case is there only where it is another. What an address shares with many others, up to
    // its last part, is a symbol.
    struct Sound {
        std::uint32_t id = 0;
        std::uint32_t title = 0;
        std::uint32_t url = 0;
        std::uint32_t page = 0;
        std::uint32_t lower = 0;
        std::uint32_t end = 0;
        Symbol urlStart = SymbolTable::kNone;
        Symbol pageStart = SymbolTable::kNone;
        Symbol creator = SymbolTable::kNone;
        Symbol license : 30 = 0;
        Symbol hasPage : 1 = 0;
        Symbol isFromWikimedia : 1 = 0;
        std::uint32_t tags = 0; // the first in m_tags
        std::uint32_t words = 0;
    };
    struct Postings {
        std::vector<std::uint32_t> starts; // by symbol, and the end of the last
        std::vector<std::int32_t> indexes;
        std::span<const std::int32_t> of(Symbol symbol) const
        {
            return {indexes.data() + starts[symbol], indexes.data() + starts[symbol + 1]};
        }
    };

    std::string_view between(std::uint32_t start, std::uint32_t end) const { return {m_texts.data() + start, end - start}; }
    template <std::uint32_t Sound::*First>
    std::span<const Symbol> list(const std::vector<Symbol>& all, std::int32_t index) const;

    SymbolTable m_symbols;
    std::vector<Symbol> m_lower; // by symbol; of those that are no tags kNone
    std::vector<char> m_texts;
    std::vector<Sound> m_sounds;
    std::vector<double> m_durations;
    std::vector<double> m_popularities;
    std::vector<Symbol> m_tags;
    std::vector<Symbol> m_words;
    Postings m_tagPostings;
    Postings m_wordPostings;
};

// Makes the tables of what a reader finds, in one pass over the items and one over
// the sounds.
class TableBuilder final : public CatalogueVisitor {
public:
    void begin(std::size_t documentBytes) override;
    void take(const CatalogueItem& item) override;
    void startAgain() override { *this = TableBuilder(); }

    // Once, at the end.
    CatalogueTables finish();

private:
    using Symbol = CatalogueTables::Symbol;

    void addTexts(const CatalogueItem& item, CatalogueTables::Sound& sound);
    void addTags(const std::vector<std::string_view>& tags);
    void addTitleWords(std::string_view lowerTitle);
    void addWords(const std::vector<std::string_view>& words);
    Symbol lowerOf(Symbol tag);
    // What is known of each symbol, made for it if it is new.
    struct Known {
        Symbol lower = SymbolTable::kNone;     // of a tag
        std::uint32_t lastTagged = UINT32_MAX; // the last sound that was posted under it,
        std::uint32_t lastTitled = UINT32_MAX; // and the last with it in its title
        std::uint32_t tagCount = 0;
        std::uint32_t wordCount = 0;
        bool isShort = false; // as a word: it isn't posted
    };
    Known& known(Symbol symbol);
    void fillPostings();

    CatalogueTables m_tables;
    std::vector<Known> m_known;
    // For one sound after the other, for the sake of their memory.
    std::vector<std::string_view> m_words;
    std::vector<Symbol> m_found;
    std::string m_lower;
};

} // namespace tonequill
