#include "discovery/catalogue/CatalogueTables.h"

#include "base/Text.h"

#include <algorithm>

namespace tonequill {

namespace {

constexpr std::size_t kShortestPosted = 3; // characters of a title's word

bool isAscii(std::string_view text)
{
    unsigned char all = 0;
    for (const char c : text)
        all |= static_cast<unsigned char>(c);
    return all < 0x80;
}

bool isUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}

char lowered(char c)
{
    return isUpper(c) ? char(c - 'A' + 'a') : c;
}

bool isWordLetter(char lower)
{
    return (lower >= 'a' && lower <= 'z') || (lower >= '0' && lower <= '9');
}

QString qtText(std::string_view text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

// In lower case. `room` holds what has to be made.
std::string_view lowercase(std::string_view text, std::string& room)
{
    if (isAscii(text)) {
        if (std::none_of(text.begin(), text.end(), isUpper))
            return text;
        room.resize(text.size());
        std::transform(text.begin(), text.end(), room.begin(), lowered);
    } else {
        room = text::lowercase(qtText(text)).toStdString();
    }
    return room;
}

} // namespace

// The tables.

template <std::uint32_t CatalogueTables::Sound::*First>
std::span<const CatalogueTables::Symbol> CatalogueTables::list(const std::vector<Symbol>& all, std::int32_t index) const
{
    const std::size_t at = std::size_t(index);
    const std::size_t end = at + 1 < m_sounds.size() ? m_sounds[at + 1].*First : all.size();
    return {all.data() + m_sounds[at].*First, all.data() + end};
}

std::span<const CatalogueTables::Symbol> CatalogueTables::tags(std::int32_t index) const
{
    return list<&Sound::tags>(m_tags, index);
}

std::span<const CatalogueTables::Symbol> CatalogueTables::titleWords(std::int32_t index) const
{
    return list<&Sound::words>(m_words, index);
}

std::string_view CatalogueTables::lowerTitle(std::int32_t index) const
{
    const Sound& sound = m_sounds[std::size_t(index)];
    return sound.lower < sound.end ? between(sound.lower, sound.end) : between(sound.title, sound.url);
}

OnlineSound CatalogueTables::sound(std::int32_t index) const
{
    const Sound& row = m_sounds[std::size_t(index)];
    OnlineSound sound;
    sound.id = qtText(between(row.id, row.title));
    sound.title = qtText(between(row.title, row.url));
    sound.url = qtText(between(row.url, row.page));
    sound.duration = duration(index);
    sound.license = qtText(text(row.license));
    if (row.creator != SymbolTable::kNone)
        sound.creator = qtText(text(row.creator));
    if (row.hasPage)
        sound.pageURL = qtText(between(row.page, row.lower));
    const std::span<const Symbol> ownTags = tags(index);
    sound.tags.reserve(qsizetype(ownTags.size()));
    for (const Symbol tag : ownTags)
        sound.tags << qtText(text(tag));
    sound.source = (row.isFromWikimedia ? OnlineSound::kWikimedia : OnlineSound::kFreesound).toString();
    sound.popularity = popularity(index);
    return sound;
}

// Making them.

TableBuilder::Known& TableBuilder::known(Symbol symbol)
{
    if (symbol >= m_known.size())
        m_known.resize(symbol + 1);
    return m_known[symbol];
}

TableBuilder::Symbol TableBuilder::lowerOf(Symbol tag)
{
    std::vector<Symbol>& lower = m_tables.m_lower;
    if (tag >= lower.size())
        lower.resize(tag + 1, SymbolTable::kNone);
    if (lower[tag] == SymbolTable::kNone) {
        std::string room;
        // A copy: the table may move its texts when it takes another one.
        const std::string text(m_tables.text(tag));
        const Symbol symbol = m_tables.m_symbols.intern(lowercase(text, room));
        lower[tag] = symbol;
    }
    return lower[tag];
}

void TableBuilder::addTag(std::string_view tag)
{
    const Symbol symbol = m_tables.m_symbols.intern(tag);
    m_tables.m_tags.push_back(symbol);
    Known& lower = known(lowerOf(symbol));
    const auto index = std::uint32_t(m_tables.m_sounds.size());
    if (std::exchange(lower.lastTagged, index) != index)
        ++lower.tagCount;
}

void TableBuilder::addWord(std::string_view word, std::size_t characters)
{
    const Symbol symbol = m_tables.m_symbols.intern(word);
    Known& own = known(symbol);
    const auto index = std::uint32_t(m_tables.m_sounds.size());
    if (std::exchange(own.lastTitled, index) == index)
        return;
    m_tables.m_words.push_back(symbol);
    own.isShort = characters < kShortestPosted;
    own.wordCount += own.isShort ? 0 : 1;
}

void TableBuilder::addTitleWords(std::string_view lowerTitle)
{
    if (!isAscii(lowerTitle)) {
        for (const QString& word : text::words(qtText(lowerTitle)))
            addWord(word.toStdString(), std::size_t(text::characterCount(word)));
        return;
    }
    for (auto end = lowerTitle.begin(); end != lowerTitle.end();) {
        const auto start = std::find_if(end, lowerTitle.end(), isWordLetter);
        end = std::find_if_not(start, lowerTitle.end(), isWordLetter);
        if (start != end)
            addWord({start, end}, std::size_t(end - start));
    }
}

void TableBuilder::addTexts(const CatalogueItem& item, CatalogueTables::Sound& sound)
{
    std::vector<char>& texts = m_tables.m_texts;
    const auto add = [&texts](std::string_view text) {
        const auto start = std::uint32_t(texts.size());
        texts.insert(texts.end(), text.begin(), text.end());
        return start;
    };
    std::string room;
    const std::string_view lower = lowercase(item.title, room);
    sound.id = add(item.id);
    sound.title = add(item.title);
    sound.url = add(item.url);
    sound.page = add(item.page.value_or(std::string_view()));
    sound.lower = add(lower == item.title ? std::string_view() : lower);
    sound.end = std::uint32_t(texts.size());
    addTitleWords(lower);
}

void TableBuilder::take(const CatalogueItem& item)
{
    if (item.fate != CatalogueItem::Fate::kept)
        return;
    CatalogueTables::Sound sound;
    sound.tags = std::uint32_t(m_tables.m_tags.size());
    sound.words = std::uint32_t(m_tables.m_words.size());
    addTexts(item, sound);
    for (const std::string_view tag : item.tags)
        addTag(tag);
    if (item.creator)
        sound.creator = m_tables.m_symbols.intern(*item.creator);
    sound.license = m_tables.m_symbols.intern(item.license);
    sound.hasPage = item.page ? 1 : 0;
    sound.isFromWikimedia = item.isFromWikimedia ? 1 : 0;
    m_tables.m_sounds.push_back(sound);
    m_tables.m_durations.push_back(item.duration);
    m_tables.m_popularities.push_back(item.popularity);
}

void TableBuilder::fillPostings()
{
    const std::size_t symbols = m_tables.symbolCount();
    m_known.resize(symbols);
    const auto lay = [&](CatalogueTables::Postings& postings, std::uint32_t Known::*count) {
        postings.starts.resize(symbols + 1);
        std::uint32_t total = 0;
        for (std::size_t symbol = 0; symbol < symbols; ++symbol) {
            postings.starts[symbol] = total;
            total += std::exchange(m_known[symbol].*count, total); // from now on the next free place
        }
        postings.starts[symbols] = total;
        postings.indexes.resize(total);
    };
    lay(m_tables.m_tagPostings, &Known::tagCount);
    lay(m_tables.m_wordPostings, &Known::wordCount);
    for (Known& one : m_known)
        one.lastTagged = UINT32_MAX;
    for (std::int32_t index = 0; index < m_tables.soundCount(); ++index) {
        for (const Symbol tag : m_tables.tags(index)) {
            Known& lower = m_known[m_tables.lower(tag)];
            if (std::exchange(lower.lastTagged, std::uint32_t(index)) != std::uint32_t(index))
                m_tables.m_tagPostings.indexes[lower.tagCount++] = index;
        }
        for (const Symbol word : m_tables.titleWords(index)) {
            Known& own = m_known[word];
            if (!own.isShort)
                m_tables.m_wordPostings.indexes[own.wordCount++] = index;
        }
    }
}

CatalogueTables TableBuilder::finish()
{
    fillPostings();
    m_known = {};
    m_tables.m_lower.resize(m_tables.symbolCount(), SymbolTable::kNone);
    m_tables.m_symbols.shrink();
    m_tables.m_lower.shrink_to_fit();
    m_tables.m_texts.shrink_to_fit();
    m_tables.m_sounds.shrink_to_fit();
    m_tables.m_durations.shrink_to_fit();
    m_tables.m_popularities.shrink_to_fit();
    m_tables.m_tags.shrink_to_fit();
    m_tables.m_words.shrink_to_fit();
    return std::move(m_tables);
}

} // namespace tonequill
