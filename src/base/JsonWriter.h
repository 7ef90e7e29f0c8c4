#pragma once

#include <QByteArray>
#include <QString>

#include <concepts>
#include <string>

namespace tonequill {

// Writes compact JSON with its keys in the order they are given (Qt's own
// objects sort theirs) and numbers in the shortest form that reads back exactly.
//
//     JsonWriter json;
//     json.beginObject().key("name").text(name).key("duration").number(2.5).endObject();
//
// It checks nothing: the calls make a document, or they don't.
class JsonWriter {
public:
    JsonWriter& beginObject();
    JsonWriter& endObject();
    JsonWriter& beginArray();
    JsonWriter& endArray();
    JsonWriter& key(const char* name);
    JsonWriter& text(const QString& value);
    // A number that isn't finite becomes 0: JSON has no word for it.
    JsonWriter& number(double value);
    JsonWriter& number(float value);
    JsonWriter& number(qint64 value);
    JsonWriter& boolean(bool value);
    // A value that is JSON already.
    JsonWriter& json(const QByteArray& value);

    // An array of texts or numbers.
    template <typename List>
    JsonWriter& list(const List& values)
    {
        beginArray();
        for (const auto& value : values) {
            if constexpr (std::convertible_to<decltype(value), QString>)
                text(value);
            else
                number(value);
        }
        return endArray();
    }

    // A copy of exactly its size.
    QByteArray bytes() const { return QByteArray(m_out.data(), qsizetype(m_out.size())); }

private:
    void separate();

    std::string m_out;
    bool m_needsComma = false;
};

} // namespace tonequill
