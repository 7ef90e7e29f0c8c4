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

// How much of an address others may begin with, too: all but its last part.
std::size_t sharedStart(std::string_view address)
{
    constexpr std::size_t kLongest = 200; // longer ones are nobody else's
    const std::size_t last = address.size() < 2 ? address.npos : address.rfind('/', address.size() - 2);
    return last == address.npos || last > kLongest ? 0 : last + 1;
}

bool isUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}

char lowered(char c)
{
    return isUpper(c) ? char(c - 'A' + 'a') : c;
}

// Whether the word of a title is long enough to be looked up.
bool isPosted(std::string_view word)
{
    if (isAscii(word))
        return word.size() >= kShortestPosted;
    return std::size_t(text::characterCount(QString::fromUtf8(word.data(), qsizetype(word.size())))) >= kShortestPosted;
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
        if (std::none_of(text.begin(), text.end(), [](char c) { return isUpper(c); }))
            return text;
        room.resize(text.size());
        std::transform(text.begin(), text.end(), room.begin(), [](char c) { return lowered(c); });
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
    SymbolTexts own = texts(1);
    return sound(index, own);
}

OnlineSound CatalogueTables::sound(std::int32_t index, SymbolTexts& texts) const
{
    const Sound& row = m_sounds[std::size_t(index)];
    OnlineSound sound;
    sound.id = qtText(between(row.id, row.title));
    sound.title = qtText(between(row.title, row.url));
    sound.url = texts.of(row.urlStart) + qtText(between(row.url, row.page));
    sound.duration = duration(index);
    sound.license = texts.of(row.license);
    if (row.creator != SymbolTable::kNone)
        sound.creator = texts.of(row.creator);
    if (row.hasPage)
        sound.pageURL = texts.of(row.pageStart) + qtText(between(row.page, row.lower));
    const std::span<const Symbol> ownTags = tags(index);
    sound.tags.reserve(qsizetype(ownTags.size()));
    for (const Symbol tag : ownTags)
        sound.tags << texts.of(tag);
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
    if (known(tag).lower == SymbolTable::kNone) {
        // A copy: the table may move its texts when it takes another one.
        const std::string text(m_tables.text(tag));
        std::string room;
        const Symbol symbol = m_tables.m_symbols.intern(lowercase(text, room));
        known(symbol).lower = symbol;
        known(tag).lower = symbol;
    }
    return m_known[tag].lower;
}

void TableBuilder::addTags(const std::vector<std::string_view>& tags)
{
    m_tables.m_symbols.intern(tags, m_found);
    const auto index = std::uint32_t(m_tables.m_sounds.size());
    for (const Symbol symbol : m_found) {
        m_tables.m_tags.push_back(symbol);
        Known& lower = known(lowerOf(symbol));
        if (std::exchange(lower.lastTagged, index) != index)
            ++lower.tagCount;
    }
}

void TableBuilder::addWords(const std::vector<std::string_view>& words)
{
    m_tables.m_symbols.intern(words, m_found);
    const auto index = std::uint32_t(m_tables.m_sounds.size());
    for (std::size_t i = 0; i < words.size(); ++i) {
        Known& own = known(m_found[i]);
        if (std::exchange(own.lastTitled, index) == index)
            continue;
        m_tables.m_words.push_back(m_found[i]);
        if (own.wordCount == 0)
            own.isShort = !isPosted(words[i]);
        own.wordCount += own.isShort ? 0 : 1;
    }
}

void TableBuilder::addTitleWords(std::string_view lowerTitle)
{
    m_words.clear();
    if (!isAscii(lowerTitle)) {
        std::vector<std::string> texts;
        for (const QString& word : text::words(qtText(lowerTitle)))
            texts.push_back(word.toStdString());
        m_words.assign(texts.begin(), texts.end());
        return addWords(m_words);
    }
    const char* const last = lowerTitle.data() + lowerTitle.size();
    for (const char* end = lowerTitle.data(); end != last;) {
        const char* const start = std::find_if(end, last, [](char c) { return isWordLetter(c); });
        end = std::find_if_not(start, last, [](char c) { return isWordLetter(c); });
        if (start != end)
            m_words.emplace_back(start, std::size_t(end - start));
    }
    addWords(m_words);
}

void TableBuilder::addTexts(const CatalogueItem& item, CatalogueTables::Sound& sound)
{
    std::vector<char>& texts = m_tables.m_texts;
    const auto add = [&texts](std::string_view text) {
        const auto start = std::uint32_t(texts.size());
        texts.insert(texts.end(), text.begin(), text.end());
        return start;
    };
    const std::string_view lower = lowercase(item.title, m_lower);
    sound.id = add(item.id);
    sound.title = add(item.title);
    const auto addAddress = [&](std::string_view address, Symbol& shared) {
        const std::size_t split = sharedStart(address);
        shared = m_tables.m_symbols.intern(address.substr(0, split));
        return add(address.substr(split));
    };
    sound.url = addAddress(item.url, sound.urlStart);
    sound.page = std::uint32_t(texts.size());
    if (item.page)
        addAddress(*item.page, sound.pageStart);
    sound.lower = add(lower == item.title ? std::string_view() : lower);
    sound.end = std::uint32_t(texts.size());
    addTitleWords(lower);
}

// Room for what a document of the size has at most, or nearly: memory that isn't written to costs
// nothing, growing and shrinking does.
void TableBuilder::begin(std::size_t documentBytes)
{
    constexpr std::size_t kBytesOfASound = 160;
    constexpr std::size_t kBytesOfATag = 16;
    constexpr std::size_t kBytesOfAWord = 32;
    m_tables.m_texts.reserve(documentBytes);
    m_tables.m_sounds.reserve(documentBytes / kBytesOfASound);
    m_tables.m_durations.reserve(documentBytes / kBytesOfASound);
    m_tables.m_popularities.reserve(documentBytes / kBytesOfASound);
    m_tables.m_tags.reserve(documentBytes / kBytesOfATag);
    m_tables.m_words.reserve(documentBytes / kBytesOfAWord);
}

void TableBuilder::take(const CatalogueItem& item)
{
    if (item.fate != CatalogueItem::Fate::kept)
        return;
    CatalogueTables::Sound sound;
    sound.tags = std::uint32_t(m_tables.m_tags.size());
    sound.words = std::uint32_t(m_tables.m_words.size());
    addTexts(item, sound);
    addTags(item.tags);
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
            Known& lower = m_known[m_known[tag].lower];
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
    m_tables.m_lower.reserve(m_known.size());
    for (const Known& one : m_known)
        m_tables.m_lower.push_back(one.lower);
    m_known = {};
    return std::move(m_tables);
}

} // namespace tonequill
