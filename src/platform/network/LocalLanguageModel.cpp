#include "platform/network/LocalLanguageModel.h"

#include "base/FlowGroup.h"
#include "platform/network/Http.h"
#include "platform/process/Defaults.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>

namespace tonequill {

using namespace Qt::StringLiterals;
using Kind = LanguageModelError::Kind;

struct LocalLanguageModel::State {
    Settings settings;
    std::optional<Http> http; // none: the model is gone
    QElapsedTimer asked;      // since the server was last looked for
    QElapsedTimer tired;      // since it took too long for an answer
    QString model;            // what it has; empty: it wasn't there
    FlowGroup flows;

    bool knows() const { return asked.isValid() && asked.elapsed() < settings.keepTime.count(); }
    bool rests() const { return tired.isValid() && tired.elapsed() < settings.restTime.count(); }
};

namespace {

QUrl addressOf(const QUrl& base, const QString& path)
{
    QUrl address = base;
    QString start = base.path();
    while (start.endsWith(u'/'))
        start.chop(1);
    address.setPath(start + path);
    return address;
}

// The wanted model, or the first that can chat; empty if there is none.
QString chosenModel(const QByteArray& answer, const QString& wanted)
{
    const QJsonArray models = QJsonDocument::fromJson(answer)[u"data"_s].toArray();
    QString first;
    for (const QJsonValue& model : models) {
        const QString id = model[u"id"_s].toString();
        if (!wanted.isEmpty() && id == wanted)
            return id;
        if (first.isEmpty() && !id.contains(u"embed", Qt::CaseInsensitive))
            first = id;
    }
    return wanted.isEmpty() ? first : QString();
}

QJsonObject message(const QString& role, const QString& content)
{
    return {{u"role"_s, role}, {u"content"_s, content}};
}

QByteArray question(const QString& model, const QString& instructions, const QString& prompt, const RecordSchema& schema,
                    const QJsonObject& format)
{
    const QString told = prompt + u"\n\nAnswer with one JSON object that follows this schema:\n"_s +
                         QString::fromUtf8(QJsonDocument(schema.jsonSchema()).toJson(QJsonDocument::Compact));
    const QJsonObject body{{u"model"_s, model},
                           {u"messages"_s, QJsonArray{message(u"system"_s, instructions), message(u"user"_s, told)}},
                           {u"response_format"_s, format},
                           {u"stream"_s, false}};
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

QJsonObject schemaFormat(const RecordSchema& schema)
{
    return {{u"type"_s, u"json_schema"_s},
            {u"json_schema"_s, QJsonObject{{u"name"_s, schema.name}, {u"strict"_s, true}, {u"schema"_s, schema.jsonSchema()}}}};
}

QJsonObject anyObject()
{
    return {{u"type"_s, u"json_object"_s}};
}

// The HTTP states by which servers that know no schemas answer.
bool refusesSchemas(const HttpReply& reply)
{
    return reply.outcome == HttpReply::Outcome::answered &&
           (reply.status == 400 || reply.status == 422 || reply.status == 500 || reply.status == 501);
}

QJsonObject recordIn(const HttpReply& reply, const RecordSchema& schema)
{
    switch (reply.outcome) {
    case HttpReply::Outcome::answered:
        break;
    case HttpReply::Outcome::offline:
        throw LanguageModelError(Kind::unavailable);
    case HttpReply::Outcome::timedOut:
        throw LanguageModelError(Kind::timedOut);
    case HttpReply::Outcome::badResponse:
        throw LanguageModelError(Kind::badAnswer);
    case HttpReply::Outcome::cancelled:
        throw LanguageModelError(Kind::cancelled);
    }
    if (reply.status != 200)
        throw LanguageModelError(Kind::refused);
    const QJsonValue said = QJsonDocument::fromJson(reply.body)[u"choices"_s][0][u"message"_s];
    if (!said[u"refusal"_s].toString().isEmpty())
        throw LanguageModelError(Kind::refused);
    // Without a schema in the request, models like to put a fence around their JSON.
    const QString content = said[u"content"_s].toString();
    const qsizetype first = content.indexOf(u'{');
    const qsizetype last = content.lastIndexOf(u'}');
    if (first < 0 || last < first)
        throw LanguageModelError(Kind::badAnswer);
    const auto record = schema.accepted(QJsonDocument::fromJson(content.sliced(first, last - first + 1).toUtf8()).object());
    if (!record)
        throw LanguageModelError(Kind::badAnswer);
    return *record;
}

using Shared = std::shared_ptr<LocalLanguageModel::State>;

QCoro::Task<HttpReply> fetch(Shared state, QString path, QByteArray body, std::chrono::milliseconds time)
{
    HttpRequest request;
    request.url = addressOf(state->settings.base, path);
    request.body = body;
    request.headers = {{"Content-Type", "application/json"}};
    request.timeOut = time;
    request.deadline = time;
    request.largestBody = state->settings.largestAnswer;
    try {
        co_return co_await state->http->fetch(state->flows, request);
    } catch (const Cancelled&) {
    }
    co_return HttpReply{HttpReply::Outcome::cancelled, 0, {}, {}, {}};
}

QCoro::Task<HttpReply> probe(const Shared& state)
{
    return fetch(state, u"/models"_s, {}, state->settings.probeTime);
}

QCoro::Task<HttpReply> post(const Shared& state, const QByteArray& body, std::chrono::milliseconds time)
{
    return fetch(state, u"/chat/completions"_s, body, std::max(time, std::chrono::milliseconds(0)));
}

bool canBeAsked(const Shared& state)
{
    const QString scheme = state->settings.base.scheme();
    return state->http && (scheme == u"http" || scheme == u"https");
}

// The coroutines hold the state, never the model: it may go while they wait. They
// return copies, because QCoro 0.8 moves out of whatever variable it is given.
QCoro::Task<QString> findModel(Shared state)
{
    if (state->rests())
        co_return QString(); // it would keep the next one waiting as well
    if (state->knows())
        co_return QString(state->model);
    if (!canBeAsked(state))
        co_return QString();
    const HttpReply reply = co_await probe(state);
    if (reply.outcome == HttpReply::Outcome::cancelled)
        co_return QString();
    const bool isThere = reply.outcome == HttpReply::Outcome::answered && reply.status == 200;
    state->model = isThere ? chosenModel(reply.body, state->settings.model) : QString();
    state->asked.start();
    co_return QString(state->model);
}

QCoro::Task<bool> hasModel(Shared state)
{
    const QString model = co_await findModel(state);
    co_return !model.isEmpty();
}

QCoro::Task<QJsonObject> ask(Shared state, QString instructions, QString prompt, RecordSchema schema)
{
    const QString model = co_await findModel(state);
    if (!state->http)
        throw LanguageModelError(Kind::cancelled);
    if (model.isEmpty())
        throw LanguageModelError(Kind::unavailable);
    QElapsedTimer timer;
    timer.start();
    const QByteArray strict = question(model, instructions, prompt, schema, schemaFormat(schema));
    HttpReply reply = co_await post(state, strict, state->settings.answerTime);
    if (state->http && refusesSchemas(reply)) {
        const QByteArray loose = question(model, instructions, prompt, schema, anyObject());
        const auto left = state->settings.answerTime - std::chrono::milliseconds(timer.elapsed());
        reply = co_await post(state, loose, left);
    }
    if (reply.outcome == HttpReply::Outcome::offline)
        state->asked.invalidate(); // it has gone: look again before the next question
    if (reply.outcome == HttpReply::Outcome::timedOut)
        state->tired.start();
    co_return recordIn(reply, schema);
}

} // namespace

LocalLanguageModel::Settings LocalLanguageModel::Settings::from(const Defaults& defaults)
{
    const auto named = [&](const char* variable, const QString& key) {
        const QString value = qEnvironmentVariable(variable);
        return value.isEmpty() ? defaults.text(key).value_or(QString()) : value;
    };
    Settings settings;
    const QString address = named("TONEQUILL_LANGUAGE_MODEL", u"languageModel"_s);
    if (!address.isEmpty())
        settings.base = QUrl(address, QUrl::StrictMode);
    settings.model = named("TONEQUILL_LANGUAGE_MODEL_NAME", u"languageModelName"_s);
    return settings;
}

LocalLanguageModel::LocalLanguageModel(Settings settings) : m_state(std::make_shared<State>())
{
    m_state->settings = std::move(settings);
    // It is on this machine, where no proxy leads.
    m_state->http.emplace(Http::Settings{"Tonequill", Http::Proxy::none, {m_state->settings.base}});
}

LocalLanguageModel::~LocalLanguageModel()
{
    m_state->http.reset(); // the flows see that it is gone
    m_state->flows.end();
}

QCoro::Task<bool> LocalLanguageModel::isAvailable()
{
    return hasModel(m_state);
}

QCoro::Task<QJsonObject> LocalLanguageModel::respond(QString instructions, QString prompt, RecordSchema schema)
{
    return ask(m_state, std::move(instructions), std::move(prompt), std::move(schema));
}

} // namespace tonequill
