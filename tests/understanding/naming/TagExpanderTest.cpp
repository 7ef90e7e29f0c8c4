#include "understanding/naming/TagExpander.h"

#include "fakes/FakeLanguageModel.h"
#include "support/Await.h"
#include "support/Printing.h"

#include <QJsonArray>

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

QJsonObject idea(const QString& meaning, const QStringList& tags)
{
    return {{u"meaning"_s, meaning}, {u"tags"_s, QJsonArray::fromStringList(tags)}};
}

} // namespace

TEST(TagExpander, KeepsSingleWordsOfLettersOnce)
{
    const QString word21(21, u'a');
    EXPECT_THAT(TagExpander::sanitize({u"Door"_s, u" door "_s, u"door knob"_s, u"knock-knock"_s, u"Pow!"_s, word21}),
                ElementsAre(u"door"_s, u"knock-knock"_s));
    EXPECT_THAT(TagExpander::sanitize({QString(20, u'b')}), ElementsAre(QString(20, u'b')));
    EXPECT_THAT(TagExpander::sanitize({u"\n Bang\t\n"_s, QString(), u" "_s, u"mp3"_s}), ElementsAre(u"bang"_s));
    EXPECT_THAT(TagExpander::sanitize({u"باب"_s, u"É́cho"_s}), ElementsAre(u"باب"_s, u"é́cho"_s));
}

TEST(TagExpander, KeepsTheFirstTen)
{
    QStringList twelve;
    for (char c = 'a'; c < 'm'; ++c)
        twelve << QString(3, QLatin1Char(c));
    EXPECT_EQ(TagExpander::sanitize(twelve), twelve.first(10));
    // What is dropped doesn't count.
    EXPECT_EQ(TagExpander::sanitize(QStringList{u"no good"_s, u"aaa"_s} + twelve), twelve.first(10));
}

TEST(TagExpander, UnderstandsAPhrase)
{
    test::FakeLanguageModel model;
    model.answer = idea(u"someone is knocking"_s, {u"Knock"_s, u"Door"_s, u"wooden door"_s});
    const auto understood = test::await(TagExpander::understand(model, u"حدا عم يخبط عالباب"_s, u"one hits the door"_s));
    EXPECT_EQ(understood, (TagExpander::Understanding{u"someone is knocking"_s, {u"knock"_s, u"door"_s}}));
    EXPECT_EQ(model.prompt, u"Phrase: حدا عم يخبط عالباب (a literal translation gave: one hits the door)"_s);
    EXPECT_EQ(model.instructions,
              u"You help a video editor find sound effects. The editor types a word or phrase in any language, often "
              "Arabic, including everyday dialect (Egyptian, Levantine, Gulf). First work out exactly what it means. Then "
              "list the tags a sound-effects library would use for the noises that happen in that situation. Common "
              "dialect words: عم or عم ب means is doing right now; بدي and عايز mean I want; حدا means someone; شو means "
              "what; كتير means very; هلق means now; يخبط means knocks; عالباب means on the door; طفشان means bored; "
              "متضايق means upset; مبسوط means happy; جوعان means hungry; عطشان means thirsty. Examples: \"I am hungry\" "
              "gives stomach, growl, eating, chewing. \"Someone is knocking at the door\" gives knock, door. \"My phone is "
              "ringing\" gives phone, ringtone, ring. \"Congratulations\" gives celebration, cheer, applause, fanfare. \"I "
              "am scared\" gives gasp, scream, heartbeat. Pick sounds that match the exact meaning, never a different "
              "situation. Use single English words only."_s);
    ASSERT_EQ(model.schema.fields.size(), 2);
    EXPECT_EQ(model.schema.fields[0].name, u"meaning"_s);
    EXPECT_EQ(model.schema.fields[0].guide, u"What the phrase means, in a few plain English words, for example 'I am hungry'."_s);
    EXPECT_EQ(model.schema.fields[1].name, u"tags"_s);
    EXPECT_EQ(model.schema.fields[1].guide,
              u"Six to ten single English words that sound-effect libraries use as tags for the noises you would actually "
              "hear in this situation. Lowercase, no phrases."_s);
}

TEST(TagExpander, AsksWithoutATranslationWhereThereIsNone)
{
    test::FakeLanguageModel model;
    model.answer = idea(QString(), {u"rain"_s});
    EXPECT_TRUE(test::await(TagExpander::understand(model, u"wet day"_s, {})));
    EXPECT_EQ(model.prompt, u"Phrase: wet day"_s);
}

TEST(TagExpander, HasNoAnswerWithoutAUsableOne)
{
    test::FakeLanguageModel model;
    EXPECT_FALSE(test::await(TagExpander::understand(model, u"wet day"_s, {}))) << "it refused";
    model.answer = idea(u"rain"_s, {u"heavy rain"_s, u"99"_s});
    EXPECT_FALSE(test::await(TagExpander::understand(model, u"wet day"_s, {}))) << "no tag survived";
    EXPECT_EQ(model.questions, 2);
    model.available = false;
    model.answer = idea(u"rain"_s, {u"rain"_s});
    EXPECT_FALSE(test::await(TagExpander::understand(model, u"wet day"_s, {})));
    EXPECT_EQ(model.questions, 2) << "no session without a model";
}
