#include "understanding/naming/RelatedWords.h"

#include "fakes/FakeClock.h"
#include "fakes/FakeLanguageModel.h"
#include "support/Printing.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QJsonArray>
#include <QPromise>

#include <gtest/gtest.h>

#include <list>

using namespace tonequill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Found = RelatedWords::Found;

namespace {

QJsonObject idea(const QStringList& tags)
{
    return {{u"meaning"_s, u"m"_s}, {u"tags"_s, QJsonArray::fromStringList(tags)}};
}

// A language model that takes until answer() is called.
class SlowModel final : public LanguageModel {
public:
    QStringList prompts;

    QCoro::Task<bool> isAvailable() override { co_return true; }

    QCoro::Task<QJsonObject> respond(QString, QString prompt, RecordSchema) override
    {
        prompts << prompt;
        QPromise<QJsonObject>& promise = m_answers.emplace_back();
        promise.start();
        co_return co_await promise.future();
    }

    // Answers the first question that has none.
    void answer(const QStringList& tags)
    {
        QPromise<QJsonObject> promise = std::move(m_answers.front());
        m_answers.pop_front();
        promise.addResult(idea(tags));
        promise.finish();
        for (int i = 0; i < 10; ++i)
            QCoreApplication::processEvents();
    }

private:
    std::list<QPromise<QJsonObject>> m_answers;
};

class RelatedWordsTest : public testing::Test {
protected:
    RelatedWordsTest()
    {
        model.answer = idea({u"Bell"_s, u"ring"_s});
        QObject::connect(&related, &RelatedWords::wordsChanged, [this] { ++changes; });
    }

    test::FakeLanguageModel model;
    test::FakeClock clock;
    RelatedWords related{model, clock};
    int changes = 0;
};

} // namespace

TEST_F(RelatedWordsTest, AreAskedForOnceTheQueryHasRested)
{
    related.setQuery(u" someone at the door\n"_s, Found::nothing);
    clock.advance(799ms);
    EXPECT_EQ(model.questions, 0);
    clock.advance(1ms);
    EXPECT_EQ(model.questions, 1);
    EXPECT_EQ(model.prompt, u"Phrase: someone at the door"_s);
    EXPECT_EQ(related.words(), (QStringList{u"bell"_s, u"ring"_s}));
    EXPECT_EQ(changes, 1);
}

TEST_F(RelatedWordsTest, EachChangeOfTheQueryStartsAnew)
{
    related.setQuery(u"doo"_s, Found::nothing);
    clock.advance(700ms);
    related.setQuery(u"doorb"_s, Found::nothing);
    clock.advance(700ms);
    EXPECT_EQ(model.questions, 0);
    clock.advance(100ms);
    EXPECT_EQ(model.questions, 1);
    EXPECT_EQ(model.prompt, u"Phrase: doorb"_s);

    related.setQuery(u"door"_s, Found::nothing);
    EXPECT_EQ(related.words(), QStringList());
    EXPECT_EQ(changes, 2);
    clock.advance(1h);
    EXPECT_EQ(model.questions, 2);
}

TEST_F(RelatedWordsTest, AShortQueryOrOneThatFindsSomethingAsksNothing)
{
    related.setQuery(u"door"_s, Found::something);
    related.setQuery(u" ab "_s, Found::nothing);
    related.setQuery(u"👩‍👩‍👧👍"_s, Found::nothing); // two characters
    related.setQuery(QString(), Found::nothing);
    clock.advance(1h);
    EXPECT_EQ(model.questions, 0);
    related.setQuery(u"باب"_s, Found::nothing);
    clock.advance(1h);
    EXPECT_EQ(model.questions, 1);
}

TEST_F(RelatedWordsTest, WithoutAModelOrWithoutAnAnswerThereAreNone)
{
    model.available = false;
    related.setQuery(u"door"_s, Found::nothing);
    clock.advance(1s);
    EXPECT_EQ(model.questions, 0);
    model.available = true;
    model.answer.reset(); // it refuses
    related.setQuery(u"door"_s, Found::nothing);
    clock.advance(1s);
    EXPECT_EQ(model.questions, 1);
    model.answer = idea({u"no single word"_s});
    related.setQuery(u"door"_s, Found::nothing);
    clock.advance(1s);
    EXPECT_EQ(related.words(), QStringList());
    EXPECT_EQ(changes, 0);
}

TEST(RelatedWords, AnAnswerThatComesTooLateIsDropped)
{
    SlowModel model;
    test::FakeClock clock;
    RelatedWords related(model, clock);
    related.setQuery(u"first"_s, Found::nothing);
    clock.advance(1s);
    related.setQuery(u"second"_s, Found::nothing);
    model.answer({u"old"_s});
    EXPECT_EQ(related.words(), QStringList());
    clock.advance(1s);
    model.answer({u"new"_s});
    EXPECT_EQ(related.words(), QStringList{u"new"_s});
    EXPECT_EQ(model.prompts, (QStringList{u"Phrase: first"_s, u"Phrase: second"_s}));
}

TEST(RelatedWords, MayGoWhileTheyWait)
{
    SlowModel model;
    test::FakeClock clock;
    auto related = std::make_unique<RelatedWords>(model, clock);
    related->setQuery(u"rests"_s, Found::nothing);
    related.reset();
    clock.advance(1s);
    EXPECT_EQ(model.prompts, QStringList());

    related = std::make_unique<RelatedWords>(model, clock);
    related->setQuery(u"asked"_s, Found::nothing);
    clock.advance(1s);
    related.reset();
    model.answer({u"late"_s});
    EXPECT_EQ(model.prompts.size(), 1);
}
