#include "library/store/LibraryIndex.h"

#include "base/JsonWriter.h"
#include "base/Uuid.h"

#include <simdjson.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <vector>

namespace tonequill::LibraryIndex {

namespace {

using simdjson::dom::array;
using simdjson::dom::element;
using simdjson::dom::object;

// A record or a field that isn't what it must be; it fails the whole index.
struct Malformed {};

QString textOf(element value)
{
    std::string_view text;
    if (value.get(text) != simdjson::SUCCESS)
        throw Malformed();
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

double numberOf(element value)
{
    double number = 0;
    if (value.get(number) != simdjson::SUCCESS)
        throw Malformed();
    return number;
}

float floatOf(element value)
{
    const double number = numberOf(value);
    if (std::abs(number) > double(std::numeric_limits<float>::max()))
        throw Malformed();
    return static_cast<float>(number);
}

template <typename List, typename Read>
List listOf(element value, Read read)
{
    array values;
    if (value.get(values) != simdjson::SUCCESS)
        throw Malformed();
    List list;
    for (const element one : values)
        list.push_back(read(one));
    return list;
}

element required(object record, std::string_view key)
{
    element value;
    if (record.at_key(key).get(value) != simdjson::SUCCESS)
        throw Malformed();
    return value;
}

template <typename Read>
auto optional(object record, std::string_view key, Read read) -> std::optional<decltype(read(element()))>
{
    element value;
    if (record.at_key(key).get(value) != simdjson::SUCCESS || value.is_null())
        return std::nullopt;
    return read(value);
}

template <typename T>
T orMalformed(std::optional<T> value)
{
    if (!value)
        throw Malformed();
    return *value;
}

// Behind the quote that ends the text that begins at `at`; npos without one.
std::size_t endOfText(std::string_view json, std::size_t at)
{
    for (;;) {
        at = json.find_first_of("\"\\", at);
        if (at == std::string_view::npos)
            return at;
        if (json[at] == '"')
            return at + 1;
        at += 2; // what is escaped ends nothing
    }
}

SoundItem recordOf(element value)
{
    object record;
    if (value.get(record) != simdjson::SUCCESS)
        throw Malformed();
    SoundItem item;
    item.id = orMalformed(uuidFromText(textOf(required(record, "id"))));
    item.name = textOf(required(record, "name"));
    item.fileName = textOf(required(record, "fileName"));
    item.duration = numberOf(required(record, "duration"));
    item.tags = listOf<QStringList>(required(record, "tags"), textOf);
    item.descriptors = listOf<QStringList>(required(record, "descriptors"), textOf);
    item.origin = orMalformed(originFromText(textOf(required(record, "origin"))));
    item.createdAt = numberOf(required(record, "createdAt"));
    item.nameIsAuto = optional(record, "nameIsAuto", [](element field) {
        bool flag = false;
        if (field.get(flag) != simdjson::SUCCESS)
            throw Malformed();
        return flag;
    });
    item.sourceID = optional(record, "sourceID", textOf);
    item.license = optional(record, "license", textOf);
    item.credit = optional(record, "credit", textOf);
    item.pageURL = optional(record, "pageURL", textOf);
    item.thumbnail = optional(record, "thumbnail", [](element field) { return listOf<std::vector<float>>(field, floatOf); });
    return item;
}

// The records of an index as they stand in it, found by their brackets alone; none if
// it is no array of objects. Each is then read by itself: the tables of a parser over
// the whole of it would take several times its memory.
std::optional<std::vector<std::string_view>> recordsIn(std::string_view json)
{
    std::size_t at = 0;
    const auto next = [&] { // behind the white space; 0 at the end
        at = std::min(json.find_first_not_of(" \t\n\r", at), json.size());
        return at < json.size() ? json[at] : '\0';
    };
    std::vector<std::string_view> records;
    if (next() != '[')
        return std::nullopt;
    ++at;
    for (char expected = next() == ']' ? ']' : '{'; expected == '{';) {
        if (next() != '{')
            return std::nullopt;
        const std::size_t start = at;
        int depth = 0;
        do {
            at = json.find_first_of("{}[]\"", at);
            if (at == std::string_view::npos)
                return std::nullopt;
            const char found = json[at++];
            if (found == '"') {
                at = endOfText(json, at);
                if (at == std::string_view::npos)
                    return std::nullopt;
            } else {
                depth += found == '{' || found == '[' ? 1 : -1;
            }
        } while (depth > 0);
        records.push_back(json.substr(start, at - start));
        const char behind = next();
        if (behind != ',' && behind != ']')
            return std::nullopt;
        expected = behind == ',' ? '{' : ']';
        at += behind == ',' ? 1 : 0;
    }
    ++at; // the bracket
    return next() == '\0' && at == json.size() ? std::optional(std::move(records)) : std::nullopt;
}

} // namespace

QByteArray encode(const SoundItem& item)
{
    JsonWriter json;
    const auto optionalText = [&json](const char* key, const std::optional<QString>& value) {
        if (value)
            json.key(key).text(*value);
    };
    json.beginObject();
    json.key("id").text(uuidText(item.id));
    json.key("name").text(item.name);
    json.key("fileName").text(item.fileName);
    json.key("duration").number(item.duration);
    json.key("tags").list(item.tags);
    json.key("descriptors").list(item.descriptors);
    json.key("origin").text(originText(item.origin));
    json.key("createdAt").number(item.createdAt);
    if (item.nameIsAuto)
        json.key("nameIsAuto").boolean(*item.nameIsAuto);
    optionalText("sourceID", item.sourceID);
    optionalText("license", item.license);
    optionalText("credit", item.credit);
    optionalText("pageURL", item.pageURL);
    if (item.thumbnail)
        json.key("thumbnail").list(*item.thumbnail);
    return json.endObject().bytes();
}

std::optional<QList<SoundItem>> decode(const QByteArray& json)
{
    const std::string_view bytes(json.constData(), static_cast<std::size_t>(json.size()));
    const auto records = recordsIn(bytes);
    if (!records)
        return std::nullopt;
    QList<SoundItem> items;
    items.reserve(qsizetype(records->size()));
    simdjson::dom::parser parser;
    try {
        for (const std::string_view record : *records) {
            // It reads over the end, and copies what has no room for that.
            const auto behind = static_cast<std::size_t>(bytes.end() - record.end());
            const bool needsCopy = behind < simdjson::SIMDJSON_PADDING;
            element root;
            if (parser.parse(record.data(), record.size(), needsCopy).get(root) != simdjson::SUCCESS)
                return std::nullopt;
            items.append(recordOf(root));
        }
    } catch (const Malformed&) {
        return std::nullopt;
    }
    return items;
}

} // namespace tonequill::LibraryIndex
