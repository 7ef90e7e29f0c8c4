#pragma once

#include "platform/network/LanguageModel.h"

#include <QUrl>

#include <chrono>
#include <memory>

namespace tonequill {

class Defaults;

// A language model behind a server of this machine that speaks the OpenAI
// protocol (Ollama, llama-server, LM Studio and others): GET models to see
// whether it is there, POST chat/completions to ask. No server: not available.
//
// The server isn't trusted: every answer is capped in bytes and time (Http), redirects
// are not followed, and records are checked against their schema here. One that takes too
// long is left alone for some minutes, so that forty sounds don't wait for it one by one.
class LocalLanguageModel final : public LanguageModel {
public:
    struct Settings {
        QUrl base{QStringLiteral("http://127.0.0.1:11434/v1")}; // Ollama's own address
        QString model;                                          // empty: the first that the server has
        std::chrono::milliseconds probeTime{1000};
        std::chrono::milliseconds answerTime{30000};
        std::chrono::milliseconds keepTime{30000};  // how long an answer to "is it there" holds
        std::chrono::milliseconds restTime{180000}; // how long nobody asks again when it took too long to answer
        qint64 largestAnswer = 256 * 1024;          // bytes; real answers have about 1,000

        // From the environment (TONEQUILL_LANGUAGE_MODEL, an address, and
        // TONEQUILL_LANGUAGE_MODEL_NAME) or else the defaults (keys
        // "languageModel" and "languageModelName"). An address that isn't http or
        // https is as good as none, and then no model is ever available.
        static Settings from(const Defaults& defaults);
    };

    explicit LocalLanguageModel(Settings settings);
    Q_DISABLE_COPY_MOVE(LocalLanguageModel)
    // Cancels what is under way.
    ~LocalLanguageModel() override;

    QCoro::Task<bool> isAvailable() override;
    QCoro::Task<QJsonObject> respond(QString instructions, QString prompt, RecordSchema schema) override;

    struct State; // what the questions under way share; a detail of the implementation

private:
    std::shared_ptr<State> m_state;
};

} // namespace tonequill
