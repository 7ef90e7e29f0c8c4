#pragma once

#include "base/UserError.h"

#include <QCoroTask>

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace tonequill {

// A record that a language model fills in: fields of text, each with words that
// guide the model.
struct RecordSchema {
    enum class Kind { text, texts };
    struct Field {
        QString name;
        Kind kind = Kind::text;
        QString guide;
    };

    QString name;
    QList<Field> fields;

    // As JSON Schema; every field is required.
    QJsonObject jsonSchema() const;

    // Exactly the fields of the schema, or nothing if one is missing or of
    // another kind. What a model answers is never used without this.
    std::optional<QJsonObject> accepted(const QJsonObject& answer) const;
};

// Why a language model gave no answer, with the user's sentence.
class LanguageModelError : public UserError {
public:
    enum class Kind { unavailable, refused, timedOut, badAnswer, cancelled };
    explicit LanguageModelError(Kind kind);
    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

// A language model on this machine. A port: there may be none, and tests refuse
// and fail. One thread, the one with the event loop; nothing blocks it.
class LanguageModel {
public:
    virtual ~LanguageModel() = default;

    // Whether it would answer now. Quick enough to be asked before every use.
    virtual QCoro::Task<bool> isAvailable() = 0;

    // Fills in a record, in a session of its own. The result has been checked
    // against the schema. Throws LanguageModelError. May outlive the model: then
    // it ends with `cancelled`.
    virtual QCoro::Task<QJsonObject> respond(QString instructions, QString prompt, RecordSchema schema) = 0;
};

} // namespace tonequill
