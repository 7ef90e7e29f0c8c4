#include "library/LibraryIndex.h"

#include "base/Uuid.h"

#include <simdjson.h>

#include <charconv>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tonequill::LibraryIndex {

namespace {

void appendText(QByteArray& out, const QString& text)
{
    out += '"';
    for (const char byte : text.toUtf8()) {
        switch (byte) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(byte) < 0x20)
                out += "\\u00" + QByteArray(1, byte).toHex();
            else
                out += byte;
        }
    }
    out += '"';
}

// The shortest decimal that reads back as the same number.
template <typename Float>
void appendNumber(QByteArray& out, Float number)
{
    char digits[40];
    const Float finite = std::isfinite(number) ? number : Float(0); // JSON has no word for the others
    const auto end = std::to_chars(std::begin(digits), std::end(digits), finite).ptr;
    out.append(digits, end - digits);
}

template <typename List, typename Append>
void appendList(QByteArray& out, const List& list, Append append)
{
    out += '[';
    bool isFirst = true;
    for (const auto& value : list) {
        if (!std::exchange(isFirst, false))
            out += ',';
        append(out, value);
    }
    out += ']';
}

void appendKey(QByteArray& out, const char* key)
{
    out += out.isEmpty() ? '{' : ',';
    out += '"';
    out += key;
    out += "\":";
}

void appendOptional(QByteArray& out, const char* key, const std::optional<QString>& text)
{
    if (!text)
        return;
    appendKey(out, key);
    appendText(out, *text);
}

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
    item.thumbnail = optional(record, "thumbnail", [](element field) {
        return listOf<std::vector<float>>(field, [](element one) { return static_cast<float>(numberOf(one)); });
    });
    return item;
}

} // namespace

QByteArray encode(const SoundItem& item)
{
    QByteArray out;
    out.reserve(1024); // a record with its thumbnail has about 900 bytes
    const auto text = [](QByteArray& to, const QString& value) { appendText(to, value); };
    appendKey(out, "id");
    appendText(out, uuidText(item.id));
    appendKey(out, "name");
    appendText(out, item.name);
    appendKey(out, "fileName");
    appendText(out, item.fileName);
    appendKey(out, "duration");
    appendNumber(out, item.duration);
    appendKey(out, "tags");
    appendList(out, item.tags, text);
    appendKey(out, "descriptors");
    appendList(out, item.descriptors, text);
    appendKey(out, "origin");
    appendText(out, originText(item.origin));
    appendKey(out, "createdAt");
    appendNumber(out, item.createdAt);
    if (item.nameIsAuto) {
        appendKey(out, "nameIsAuto");
        out += *item.nameIsAuto ? "true" : "false";
    }
    appendOptional(out, "sourceID", item.sourceID);
    appendOptional(out, "license", item.license);
    appendOptional(out, "credit", item.credit);
    appendOptional(out, "pageURL", item.pageURL);
    if (item.thumbnail) {
        appendKey(out, "thumbnail");
        appendList(out, *item.thumbnail, [](QByteArray& to, float value) { appendNumber(to, value); });
    }
    out += '}';
    out.squeeze();
    return out;
}

std::optional<QList<SoundItem>> decode(const QByteArray& json)
{
    simdjson::dom::parser parser;
    element root;
    // The parser copies the bytes to give them the padding that it reads over.
    if (parser.parse(json.constData(), static_cast<std::size_t>(json.size())).get(root) != simdjson::SUCCESS)
        return std::nullopt;
    try {
        return listOf<QList<SoundItem>>(root, recordOf);
    } catch (const Malformed&) {
        return std::nullopt;
    }
}

} // namespace tonequill::LibraryIndex
