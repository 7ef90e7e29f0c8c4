#include "base/JsonWriter.h"

#include <charconv>
#include <cmath>
#include <iterator>

namespace tonequill {

namespace {

void appendEscaped(std::string& out, const QString& text)
{
    out += '"';
    for (const char byte : text.toUtf8()) {
        if (byte == '"' || byte == '\\') {
            out += '\\';
            out += byte;
        } else if (byte == '\n') {
            out += "\\n";
        } else if (static_cast<unsigned char>(byte) < 0x20) {
            out += "\\u00" + QByteArray(1, byte).toHex().toStdString();
        } else {
            out += byte;
        }
    }
    out += '"';
}

template <typename... How>
void appendNumber(std::string& out, How... how)
{
    char digits[40];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), how...).ptr;
    out.append(digits, end);
}

template <typename Float>
void appendFloat(std::string& out, Float value)
{
    // A whole number of twenty digits is one that readers take for an integer,
    // and that no integer of theirs can hold.
    constexpr Float kLargestPlain = 1e15F;
    if (!std::isfinite(value))
        out += '0';
    else if (std::abs(value) < kLargestPlain)
        appendNumber(out, value);
    else
        appendNumber(out, value, std::chars_format::scientific);
}

} // namespace

void JsonWriter::separate()
{
    if (m_needsComma)
        m_out += ',';
    m_needsComma = true;
}

JsonWriter& JsonWriter::beginObject()
{
    separate();
    m_out += '{';
    m_needsComma = false;
    return *this;
}

JsonWriter& JsonWriter::endObject()
{
    m_out += '}';
    m_needsComma = true;
    return *this;
}

JsonWriter& JsonWriter::beginArray()
{
    separate();
    m_out += '[';
    m_needsComma = false;
    return *this;
}

JsonWriter& JsonWriter::endArray()
{
    m_out += ']';
    m_needsComma = true;
    return *this;
}

JsonWriter& JsonWriter::key(const char* name)
{
    separate();
    m_out += '"';
    m_out += name;
    m_out += "\":";
    m_needsComma = false;
    return *this;
}

JsonWriter& JsonWriter::text(const QString& value)
{
    separate();
    appendEscaped(m_out, value);
    return *this;
}

JsonWriter& JsonWriter::number(double value)
{
    separate();
    appendFloat(m_out, value);
    return *this;
}

JsonWriter& JsonWriter::number(float value)
{
    separate();
    appendFloat(m_out, value);
    return *this;
}

JsonWriter& JsonWriter::number(qint64 value)
{
    separate();
    appendNumber(m_out, value);
    return *this;
}

JsonWriter& JsonWriter::boolean(bool value)
{
    separate();
    m_out += value ? "true" : "false";
    return *this;
}

JsonWriter& JsonWriter::json(const QByteArray& value)
{
    separate();
    m_out.append(value.constData(), std::size_t(value.size()));
    return *this;
}

} // namespace tonequill
