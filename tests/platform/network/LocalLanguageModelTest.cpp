#include "platform/network/LocalLanguageModel.h"

#include "fakes/FakeModelServer.h"
#include "platform/process/Defaults.h"
#include "support/Await.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Kind = LanguageModelError::Kind;
using Mood = test::FakeModelServer::Mood;

namespace {

const RecordSchema kIdea{
    u"Idea"_s,
    {{u"name"_s, RecordSchema::Kind::text, u"A short name."_s}, {u"tags"_s, RecordSchema::Kind::texts, u"Some tags."_s}}};

class LocalLanguageModelTest : public testing::Test {
protected:
    // Patient, for a busy machine, unless it is the impatience that is tested.
    LocalLanguageModel::Settings settings(std::chrono::milliseconds probe = kPatience,
                                          std::chrono::milliseconds answer = kPatience) const
    {
        LocalLanguageModel::Settings own;
        own.base = server.base();
        own.probeTime = probe;
        own.answerTime = answer;
        return own;
    }
    static constexpr std::chrono::milliseconds kPatience{10000};
    static constexpr std::chrono::milliseconds kImpatience{300};

    // How a question fails.
    static std::optional<Kind> failureOf(LanguageModel& model)
    {
        try {
            test::await(model.respond(u"Be brief."_s, u"What is it?"_s, kIdea));
            return {};
        } catch (const LanguageModelError& error) {
            return error.kind();
        }
    }

    test::FakeModelServer server;
};

} // namespace

TEST_F(LocalLanguageModelTest, FillsInARecord)
{
    server.content = uR"({"name": "Door Slam", "tags": ["door", "slam"], "mood": "extra"})"_s;
    LocalLanguageModel model(settings());
    const QJsonObject record = test::await(model.respond(u"Be brief."_s, u"What is it?"_s, kIdea));
    EXPECT_EQ(record, (QJsonObject{{u"name"_s, u"Door Slam"_s}, {u"tags"_s, QJsonArray{u"door"_s, u"slam"_s}}}));
    EXPECT_THAT(server.paths, ElementsAre(u"/v1/models"_s, u"/v1/chat/completions"_s));

    const QJsonObject question = server.questions.at(0);
    EXPECT_EQ(question[u"model"_s].toString(), u"small-chat"_s);
    EXPECT_FALSE(question.contains(u"temperature"_s));
    const QJsonValue messages = question[u"messages"_s];
    EXPECT_EQ(messages[0][u"role"_s].toString(), u"system"_s);
    EXPECT_EQ(messages[0][u"content"_s].toString(), u"Be brief."_s);
    EXPECT_EQ(messages[1][u"role"_s].toString(), u"user"_s);
    EXPECT_TRUE(messages[1][u"content"_s].toString().startsWith(u"What is it?\n"_s));
    EXPECT_TRUE(messages[1][u"content"_s].toString().contains(u"A short name."_s)) << "the schema stands in the prompt";
    const QJsonValue format = question[u"response_format"_s];
    EXPECT_EQ(format[u"type"_s].toString(), u"json_schema"_s);
    EXPECT_EQ(format[u"json_schema"_s][u"schema"_s].toObject(), kIdea.jsonSchema());
}

TEST_F(LocalLanguageModelTest, AsksAgainWithoutASchemaWhereAServerRefusesThem)
{
    server.mood = Mood::refuseSchemas;
    server.content = u"Here it is:\n```json\n{\"name\": \"Bell\", \"tags\": []}\n```"_s;
    LocalLanguageModel model(settings());
    const QJsonObject record = test::await(model.respond(u"Be brief."_s, u"What is it?"_s, kIdea));
    EXPECT_EQ(record[u"name"_s].toString(), u"Bell"_s);
    ASSERT_EQ(server.questions.size(), 2);
    EXPECT_EQ(server.questions[1][u"response_format"_s].toObject(), (QJsonObject{{u"type"_s, u"json_object"_s}}));
}

TEST_F(LocalLanguageModelTest, AsksNoThirdTime)
{
    server.mood = Mood::refuse;
    LocalLanguageModel model(settings());
    EXPECT_EQ(failureOf(model), Kind::refused);
    EXPECT_EQ(server.questions.size(), 2);
}

TEST_F(LocalLanguageModelTest, DoesNotBelieveAnAnswer)
{
    for (const QString& said :
         {u"I think it is a door."_s, u"{"_s, u"}{"_s, u"[]"_s, uR"({"name": "Door"})"_s, uR"({"name": 3, "tags": []})"_s,
          uR"({"name": "Door", "tags": "door"})"_s, uR"({"name": "Door", "tags": ["a", 1]})"_s, QString()}) {
        server.content = said;
        LocalLanguageModel model(settings());
        EXPECT_EQ(failureOf(model), Kind::badAnswer) << said.toStdString();
    }
}

TEST_F(LocalLanguageModelTest, EndsHoweverAServerMisbehaves)
{
    const std::pair<Mood, Kind> cases[] = {{Mood::hang, Kind::timedOut},
                                           {Mood::drip, Kind::timedOut},
                                           {Mood::tenMegabytes, Kind::badAnswer},
                                           {Mood::dieInTheMiddle, Kind::unavailable},
                                           {Mood::redirect, Kind::refused}};
    server.content = uR"({"name": "Door", "tags": []})"_s;
    for (const auto& [mood, kind] : cases) {
        server.mood = mood;
        LocalLanguageModel model(settings(kPatience, kind == Kind::timedOut ? kImpatience : kPatience));
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(failureOf(model), kind) << static_cast<int>(mood);
        EXPECT_LT(timer.elapsed(), 5000) << static_cast<int>(mood);
    }
}

TEST_F(LocalLanguageModelTest, IsNotAvailableWithoutAServerThatHasAModel)
{
    for (const Mood mood : {Mood::refuse, Mood::hang, Mood::drip, Mood::tenMegabytes, Mood::dieInTheMiddle}) {
        server.probeMood = mood;
        LocalLanguageModel model(settings(kImpatience));
        EXPECT_FALSE(test::await(model.isAvailable())) << static_cast<int>(mood);
        EXPECT_EQ(failureOf(model), Kind::unavailable);
    }
    server.probeMood = Mood::answer;
    server.models = {u"nomic-embed-text"_s};
    LocalLanguageModel embedder(settings());
    EXPECT_FALSE(test::await(embedder.isAvailable()));
    server.stop();
    LocalLanguageModel nobody(settings());
    EXPECT_FALSE(test::await(nobody.isAvailable()));
    EXPECT_TRUE(server.questions.isEmpty());
}

TEST_F(LocalLanguageModelTest, RemembersForAWhileWhetherItIsThere)
{
    LocalLanguageModel model(settings());
    EXPECT_TRUE(test::await(model.isAvailable()));
    EXPECT_TRUE(test::await(model.isAvailable()));
    EXPECT_EQ(server.paths.size(), 1);
}

TEST_F(LocalLanguageModelTest, RestsAfterATimeOut)
{
    server.mood = Mood::hang;
    LocalLanguageModel::Settings own = settings(kPatience, kImpatience);
    own.restTime = std::chrono::minutes(3);
    LocalLanguageModel model(own);
    EXPECT_EQ(failureOf(model), Kind::timedOut);
    EXPECT_FALSE(test::await(model.isAvailable()));
    server.mood = Mood::answer;
    EXPECT_EQ(failureOf(model), Kind::unavailable);
    EXPECT_EQ(server.questions.size(), 1) << "it was asked once";

    server.content = uR"({"name": "Door", "tags": []})"_s;
    own.restTime = std::chrono::milliseconds(0);
    LocalLanguageModel rested(own);
    server.mood = Mood::hang;
    EXPECT_EQ(failureOf(rested), Kind::timedOut);
    server.mood = Mood::answer;
    EXPECT_TRUE(test::await(rested.isAvailable()));
    EXPECT_EQ(failureOf(rested), std::nullopt);
}

TEST_F(LocalLanguageModelTest, TakesTheModelThatIsNamed)
{
    LocalLanguageModel::Settings named = settings();
    named.model = u"large-chat"_s;
    LocalLanguageModel absent(named);
    EXPECT_FALSE(test::await(absent.isAvailable()));
    server.models << u"large-chat"_s;
    server.content = uR"({"name": "Door", "tags": []})"_s;
    LocalLanguageModel present(named);
    test::await(present.respond(u"Be brief."_s, u"What is it?"_s, kIdea));
    EXPECT_EQ(server.questions.at(0)[u"model"_s].toString(), u"large-chat"_s);
}

TEST_F(LocalLanguageModelTest, CancelsAQuestionWhenItGoes)
{
    server.mood = Mood::hang;
    auto model = std::make_unique<LocalLanguageModel>(settings());
    server.onRequest = [&] {
        if (server.paths.size() == 2)
            QTimer::singleShot(0, [&] { model.reset(); });
    };
    std::optional<Kind> kind;
    try {
        test::await(model->respond(u"Be brief."_s, u"What is it?"_s, kIdea));
    } catch (const LanguageModelError& error) {
        kind = error.kind();
    }
    EXPECT_EQ(kind, Kind::cancelled);
    EXPECT_EQ(model, nullptr);
}

TEST_F(LocalLanguageModelTest, IsFoundThroughTheDefaults)
{
    Defaults defaults(test::scratchPath(u"model.ini"_s));
    EXPECT_EQ(LocalLanguageModel::Settings::from(defaults).base, QUrl(u"http://127.0.0.1:11434/v1"_s));
    defaults.setText(u"languageModel"_s, u"http://localhost:8080/v1"_s);
    defaults.setText(u"languageModelName"_s, u"tiny"_s);
    EXPECT_EQ(LocalLanguageModel::Settings::from(defaults).base, QUrl(u"http://localhost:8080/v1"_s));
    EXPECT_EQ(LocalLanguageModel::Settings::from(defaults).model, u"tiny"_s);
    defaults.setText(u"languageModel"_s, u"file:///etc/passwd"_s);
    LocalLanguageModel model(LocalLanguageModel::Settings::from(defaults));
    EXPECT_FALSE(test::await(model.isAvailable()));
}
