#include "discovery/catalogue/CatalogueReader.h"

#include "discovery/catalogue/CatalogueUrl.h"
#include "discovery/catalogue/Inflater.h"

#include <simdjson.h>

namespace tonequill {

namespace {

namespace ondemand = simdjson::ondemand;
using Outcome = CatalogueReader::Outcome;

// The document isn't what it must be; it fails the whole file. Inside this file only.
struct Failed {
    Outcome outcome;
};

template <typename T>
T valueOf(simdjson::simdjson_result<T>&& result)
{
    T value;
    if (std::move(result).get(value) != simdjson::SUCCESS)
        throw Failed{Outcome::notJson};
    return value;
}

// A string without its quotes, escapes as they stand. The string is passed.
std::string_view rawText(ondemand::value& value)
{
    std::string_view token = value.raw_json_token(); // up to what follows, white space included
    ondemand::raw_json_string passed;
    if (value.get_raw_json_string().get(passed) != simdjson::SUCCESS)
        throw Failed{Outcome::notJson};
    token = token.substr(0, token.find_last_not_of(" \t\r\n") + 1);
    if (token.size() < 2 || token.back() != '"')
        throw Failed{Outcome::notJson};
    return token.substr(1, token.size() - 2);
}

bool isString(ondemand::value& value)
{
    return valueOf(value.type()) == ondemand::json_type::string;
}

// None for a string that can't be read: half a surrogate, an unknown escape.
std::optional<std::string_view> textOf(ondemand::value& value)
{
    const std::string_view token = value.raw_json_token();
    if (token.find('\\') == std::string_view::npos)
        return rawText(value);
    std::string_view text;
    if (value.get_string().get(text) != simdjson::SUCCESS)
        return std::nullopt;
    return text;
}

class Walk {
public:
    Walk(CatalogueVisitor& visitor, Progress* progress) : m_visitor(visitor), m_progress(progress) {}

    // REQUIRES: InflatedText::kPadding bytes may be read behind the text.
    void readDocument(std::string_view text)
    {
        // A byte-order mark may stand before the document.
        constexpr std::string_view kMark = "\xEF\xBB\xBF";
        if (text.starts_with(kMark))
            text.remove_prefix(kMark.size());
        m_start = text.data();
        m_size = text.size();
        m_visitor.begin(m_size);
        ondemand::parser parser;
        ondemand::document document = valueOf(parser.iterate(m_start, m_size, m_size + InflatedText::kPadding));
        if (valueOf(document.type()) != ondemand::json_type::object)
            throw Failed{Outcome::noItems};
        bool hasItems = false;
        for (auto result : valueOf(document.get_object())) {
            ondemand::field field = valueOf(std::move(result));
            if (keyOf(field) == "items") {
                if (std::exchange(hasItems, true))
                    m_visitor.startAgain(); // of equal keys the last one counts
                readItems(field.value());
            } else {
                pass(field.value(), 2);
            }
        }
        if (document.current_location().error() != simdjson::OUT_OF_BOUNDS) // else there is more behind it
            throw Failed{Outcome::notJson};
        if (!hasItems)
            throw Failed{Outcome::noItems};
    }

private:
    static std::string_view keyOf(ondemand::field& field)
    {
        const char* raw = field.key().raw();
        // Nearly every key is one plain letter.
        if (raw[0] != '\\' && raw[0] != '"' && raw[1] == '"')
            return {raw, 1};
        std::string_view key;
        // A key that can't be read is none of ours.
        return field.unescaped_key().get(key) == simdjson::SUCCESS ? key : std::string_view();
    }

    // Looks at the structure of what isn't used: ondemand checks what it walks over.
    // `depth` is that of the value.
    void pass(ondemand::value& value, int depth)
    {
        if (depth > CatalogueReader::kDeepest)
            throw Failed{Outcome::notJson};
        switch (valueOf(value.type())) {
        case ondemand::json_type::object:
            for (auto result : valueOf(value.get_object())) {
                ondemand::field field = valueOf(std::move(result));
                pass(field.value(), depth + 1);
            }
            break;
        case ondemand::json_type::array:
            for (auto result : valueOf(value.get_array())) {
                ondemand::value entry = valueOf(std::move(result));
                pass(entry, depth + 1);
            }
            break;
        case ondemand::json_type::string:
            rawText(value);
            break;
        case ondemand::json_type::number:
        case ondemand::json_type::boolean:
        case ondemand::json_type::null:
            break; // the iteration steps over it
        }
    }

    void readItems(ondemand::value& value)
    {
        if (valueOf(value.type()) != ondemand::json_type::array)
            throw Failed{Outcome::noItems};
        for (auto result : valueOf(value.get_array())) {
            ondemand::value entry = valueOf(std::move(result));
            if (valueOf(entry.type()) != ondemand::json_type::object)
                throw Failed{Outcome::noItems};
            readItem(entry);
            if (++m_count % kBlock == 0)
                tell();
        }
    }

    void readItem(ondemand::value& entry)
    {
        m_item = CatalogueItem{CatalogueItem::Fate::kept, {}, {}, {}, {}, std::move(m_item.tags), 0, {}, {}, false, 0};
        m_item.tags.clear();
        m_id = m_title = m_url = m_license = m_page = {};
        m_isMarked = false;
        for (auto result : valueOf(entry.get_object())) {
            ondemand::field field = valueOf(std::move(result));
            const std::string_view key = keyOf(field);
            readField(key.size() == 1 ? key.front() : '\0', field.value());
        }
        finish();
        m_visitor.take(m_item);
    }

    void readField(char key, ondemand::value& value)
    {
        switch (key) {
        case 'i':
            m_id = text(value);
            break;
        case 't':
            m_title = text(value);
            break;
        case 'u':
            m_url = text(value);
            break;
        case 'g':
            readTags(value);
            break;
        case 'a':
            m_isMarked = number(value) == 1;
            break;
        case 'd':
            m_item.duration = number(value);
            break;
        case 'l':
            m_license = text(value);
            break;
        case 'c':
            m_item.creator = text(value);
            break;
        case 'p':
            m_page = text(value);
            break;
        case 's':
            m_item.isFromWikimedia = text(value) == "w";
            break;
        case 'r':
            m_item.popularity = number(value);
            break;
        default:
            pass(value, kItemDepth + 1);
        }
    }

    std::optional<std::string_view> text(ondemand::value& value)
    {
        if (isString(value))
            return textOf(value);
        pass(value, kItemDepth + 1);
        return std::nullopt;
    }

    // 0 for what is no number, or none that can be read.
    double number(ondemand::value& value)
    {
        double read = 0;
        if (valueOf(value.type()) != ondemand::json_type::number)
            pass(value, kItemDepth + 1);
        else if (value.get_double().get(read) != simdjson::SUCCESS)
            return 0;
        return read;
    }

    // An array of texts and nothing else, or no tags.
    void readTags(ondemand::value& value)
    {
        m_item.tags.clear();
        if (valueOf(value.type()) != ondemand::json_type::array) {
            pass(value, kItemDepth + 1);
            return;
        }
        bool areTexts = true;
        for (auto result : valueOf(value.get_array())) {
            ondemand::value entry = valueOf(std::move(result));
            std::optional<std::string_view> tag;
            if (isString(entry))
                tag = textOf(entry);
            else
                pass(entry, kItemDepth + 2);
            areTexts = areTexts && tag;
            if (areTexts)
                m_item.tags.push_back(*tag);
        }
        if (!areTexts)
            m_item.tags.clear();
    }

    void finish()
    {
        using Fate = CatalogueItem::Fate;
        m_item.license = m_license.value_or("cc0");
        m_item.page = m_page && CatalogueUrl::isUrl(*m_page) ? m_page : std::nullopt;
        m_item.id = m_id.value_or(std::string_view());
        m_item.title = m_title.value_or(std::string_view());
        m_item.url = m_url.value_or(std::string_view());
        if (!m_id || !m_title || !m_url || !CatalogueUrl::isUrl(*m_url))
            m_item.fate = Fate::unusable;
        else if (CatalogueUrl::hasUnloadedFormat(*m_url))
            m_item.fate = Fate::format;
        else if (m_isMarked)
            m_item.fate = Fate::marked;
    }

    void tell() const
    {
        if (!m_progress)
            return;
        if (m_progress->isCancelled())
            throw Cancelled();
        if (!m_item.url.empty() && m_item.url.data() >= m_start && m_item.url.data() <= m_start + m_size)
            m_progress->set(double(m_item.url.data() - m_start) / double(m_size));
    }

    static constexpr int kItemDepth = 3; // root, "items", the item
    static constexpr std::size_t kBlock = 1024;

    CatalogueVisitor& m_visitor;
    Progress* m_progress;
    const char* m_start = nullptr;
    std::size_t m_size = 0;
    std::size_t m_count = 0;
    CatalogueItem m_item; // one for all, for the sake of its tags' memory
    std::optional<std::string_view> m_id, m_title, m_url, m_license, m_page;
    bool m_isMarked = false;
};

Outcome outcomeOf(Inflater::Outcome outcome)
{
    switch (outcome) {
    case Inflater::Outcome::done:
        return Outcome::done;
    case Inflater::Outcome::notDeflate:
        return Outcome::notDeflate;
    case Inflater::Outcome::tooLarge:
        return Outcome::tooLarge;
    case Inflater::Outcome::goesOn:
        return Outcome::goesOn;
    case Inflater::Outcome::noMemory:
        return Outcome::noMemory;
    }
    return Outcome::notDeflate;
}

Outcome walk(std::string_view text, CatalogueVisitor& visitor, Progress* progress)
{
    try {
        Walk(visitor, progress).readDocument(text);
        return Outcome::done;
    } catch (const Failed& failed) {
        return failed.outcome;
    }
}

} // namespace

CatalogueReader::Outcome CatalogueReader::read(std::span<const char> file, CatalogueVisitor& visitor, Progress* progress)
{
    InflatedText text;
    const Outcome outcome = outcomeOf(Inflater::inflate(file, kMostBytes, text));
    if (outcome != Outcome::done)
        return outcome;
    if (progress && progress->isCancelled())
        throw Cancelled();
    return walk(text.text(), visitor, progress);
}

CatalogueReader::Outcome CatalogueReader::readItems(std::string_view items, CatalogueVisitor& visitor)
{
    const std::string document = "{\"items\":[" + std::string(items) + "]}";
    const std::string padded = document + std::string(InflatedText::kPadding, '\0');
    return walk(std::string_view(padded).substr(0, document.size()), visitor, nullptr);
}

} // namespace tonequill
