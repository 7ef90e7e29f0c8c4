#include "platform/network/LanguageModel.h"

#include <QJsonArray>

#include <algorithm>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

QString sentence(LanguageModelError::Kind kind)
{
    switch (kind) {
    case LanguageModelError::Kind::unavailable:
        return u"The language model isn't running."_s;
    case LanguageModelError::Kind::refused:
        return u"The language model refused to answer."_s;
    case LanguageModelError::Kind::timedOut:
        return u"The language model took too long to answer."_s;
    case LanguageModelError::Kind::badAnswer:
        return u"The language model's answer couldn't be used."_s;
    case LanguageModelError::Kind::cancelled:
        return u"The question to the language model was cancelled."_s;
    }
    Q_UNREACHABLE();
}

bool isTexts(const QJsonValue& value)
{
    const QJsonArray array = value.toArray();
    return value.isArray() && std::all_of(array.begin(), array.end(), [](const QJsonValue& entry) { return entry.isString(); });
}

} // namespace

LanguageModelError::LanguageModelError(Kind kind) : UserError(sentence(kind)), m_kind(kind)
{}

QJsonObject RecordSchema::jsonSchema() const
{
    QJsonObject properties;
    QJsonArray required;
    for (const Field& field : fields) {
        QJsonObject property{{u"description"_s, field.guide}};
        property[u"type"_s] = field.kind == Kind::text ? u"string"_s : u"array"_s;
        if (field.kind == Kind::texts)
            property[u"items"_s] = QJsonObject{{u"type"_s, u"string"_s}};
        properties[field.name] = property;
        required << field.name;
    }
    return {
        {u"type"_s, u"object"_s}, {u"properties"_s, properties}, {u"required"_s, required}, {u"additionalProperties"_s, false}};
}

std::optional<QJsonObject> RecordSchema::accepted(const QJsonObject& answer) const
{
    QJsonObject record;
    for (const Field& field : fields) {
        const QJsonValue value = answer[field.name];
        if (field.kind == Kind::text ? !value.isString() : !isTexts(value))
            return {};
        record[field.name] = value;
    }
    return record;
}

} // namespace tonequill
