#pragma once

#include "fakes/Asked.h"
#include "platform/network/LanguageModel.h"

#include <QStringList>

#include <deque>

namespace tonequill::test {

// A language model that is there or not and says what a test tells it to.
class FakeLanguageModel final : public LanguageModel {
public:
    bool available = true;
    std::optional<QJsonObject> answer; // none: it refuses
    bool thinks = false;               // its answers wait in `thoughts` for the test
    std::deque<Asked<QString, QJsonObject>> thoughts;
    QString instructions; // of the last question
    QString prompt;
    RecordSchema schema;
    int questions = 0;

    QCoro::Task<bool> isAvailable() override { co_return available; }

    QCoro::Task<QJsonObject> respond(QString told, QString asked, RecordSchema wanted) override
    {
        ++questions;
        instructions = told;
        prompt = asked;
        schema = wanted;
        if (thinks)
            return thoughts.emplace_back(asked).task();
        return say();
    }

private:
    QCoro::Task<QJsonObject> say() const
    {
        if (!answer)
            throw LanguageModelError(LanguageModelError::Kind::refused);
        co_return QJsonObject(*answer); // a copy: QCoro 0.8 moves out of variables
    }
};

} // namespace tonequill::test
