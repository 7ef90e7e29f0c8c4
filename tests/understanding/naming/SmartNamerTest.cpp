#include "understanding/naming/SmartNamer.h"

#include "fakes/FakeLanguageModel.h"
#include "support/Await.h"
#include "support/Printing.h"

#include <QJsonArray>

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

QJsonObject idea(const QString& name, const QStringList& tags)
{
    return {{u"name"_s, name}, {u"tags"_s, QJsonArray::fromStringList(tags)}};
}

} // namespace

TEST(SmartNamer, CleansNames)
{
    const std::pair<QString, std::optional<QString>> cases[] = {
        {u"“Door Slam”."_s, u"Door Slam"_s},
        {u"DOOR_slam sound"_s, u"Door Slam"_s},
        {u"sound effect"_s, u"Sound Effect"_s},
        {u"A Very Large Wooden Door"_s, {}},
        {u"Big Door Slam Sound Effect"_s, u"Big Door Slam"_s},
        {u"One Two Three Four"_s, u"One Two Three Four"_s},
        {u"Take 2"_s, {}},
        {u"Take ²"_s, {}},
        {u"Take ٣"_s, {}},
        {u"---"_s, {}},
        {QString(), {}},
        {u" \n\t"_s, {}},
        {u"\"Glass\" Break!"_s, u"Glass Break"_s},
        {u"-_: crowd\tapplause ;,"_s, u"Crowd Applause"_s},
        {u"mcDONALD's don't"_s, u"Mcdonald's Don't"_s},
        {u"élan VITAL"_s, u"Élan Vital"_s},
        {u"باب خشب"_s, u"باب خشب"_s},
    };
    for (const auto& [text, name] : cases)
        EXPECT_EQ(SmartNamer::cleanName(text), name) << text.toStdString();
    EXPECT_EQ(SmartNamer::cleanName({}), std::nullopt);
}

TEST(SmartNamer, TakesNamesOfUpToFortyCharacters)
{
    const QString twenty = u'A' + QString(19, u'b');
    const QString nineteen = twenty.first(19);
    EXPECT_EQ(SmartNamer::cleanName(twenty + u' ' + nineteen), twenty + u' ' + nineteen);
    EXPECT_EQ(SmartNamer::cleanName(twenty + u' ' + twenty), std::nullopt);
}

TEST(SmartNamer, AsksWithEverythingThatIsKnown)
{
    test::FakeLanguageModel model;
    model.answer = idea(u"\"door SLAM\"."_s, {u"Door"_s, u"wooden door"_s, u"slam"_s});
    const SoundFacts facts{u"clip_01"_s, {u"Door"_s, u"Thud"_s}, {u"hit"_s}, 1.26, {u"punchy"_s, u"deep"_s}};
    EXPECT_EQ(test::await(SmartNamer::askModel(model, facts)), (SoundNaming{u"Door Slam"_s, {u"door"_s, u"slam"_s}}));
    EXPECT_EQ(model.prompt, u"Current name: clip_01\n"
                            "What the recognizer heard, most likely first: Door, Thud\n"
                            "Length: 1.3 seconds\n"
                            "Traits: punchy, deep\n"
                            "Existing tags: hit"_s);
    EXPECT_EQ(model.instructions,
              u"You name sound effects for a video editor's library. Name only what the sound is, in two or three plain "
              "words, like \"Door Slam\" or \"Crowd Applause\". Use what the audio recognizer heard as the strongest clue. "
              "Do not describe the quality of the sound (no deep, punchy, loud, short) and never use the words \"sound\", "
              "\"effect\", \"audio\" or \"clip\", numbers, file extensions or quotes. Put qualities in the tags instead, as "
              "single words."_s);
    ASSERT_EQ(model.schema.fields.size(), 2);
    EXPECT_EQ(model.schema.fields[0].name, u"name"_s);
    EXPECT_EQ(model.schema.fields[0].guide,
              u"What the sound is, in two or three plain words in Title Case, like 'Door Slam', 'Crowd Applause', 'Glass "
              "Break'. Only the thing and its action. No adjectives like deep, punchy or loud, and never the words sound, "
              "effect, audio or clip. No numbers, file extension or quotes."_s);
    EXPECT_EQ(model.schema.fields[1].name, u"tags"_s);
    EXPECT_EQ(model.schema.fields[1].guide,
              u"Four to six single lowercase English words that people would search for to find this sound."_s);
}

TEST(SmartNamer, SaysWhatIsNotKnown)
{
    test::FakeLanguageModel model;
    model.answer = idea(u"Wind"_s, {});
    EXPECT_EQ(test::await(SmartNamer::askModel(model, {u"x"_s, {}, {}, 12, {}})), (SoundNaming{u"Wind"_s, {}}));
    EXPECT_EQ(model.prompt, u"Current name: x\n"
                            "What the recognizer heard, most likely first: unknown\n"
                            "Length: 12.0 seconds\n"
                            "Traits: none\n"
                            "Existing tags: none"_s);
}

TEST(SmartNamer, HasNoAnswerWhenTheModelHasNoGoodName)
{
    test::FakeLanguageModel model;
    EXPECT_EQ(test::await(SmartNamer::askModel(model, {})), std::nullopt);
    model.answer = idea(u"The Sound Of A Big Heavy Door"_s, {u"door"_s});
    EXPECT_EQ(test::await(SmartNamer::askModel(model, {})), std::nullopt);
}

TEST(SmartNamer, FallsBackOnWhatWasHeard)
{
    const SoundFacts facts{
        u"x"_s, {u"Glass Break"_s, u"Vehicle Horn Car"_s}, {u"old"_s}, 1, {u"short"_s, u"bright"_s, u"punchy"_s, u"hit"_s}};
    EXPECT_EQ(
        SmartNamer::fallback(facts),
        (SoundNaming{u"Glass Break"_s, {u"bright"_s, u"punchy"_s, u"glass"_s, u"break"_s, u"vehicle"_s, u"horn"_s, u"car"_s}}));
    EXPECT_EQ(SmartNamer::fallback({u"x"_s, {}, {}, 1, {u"punchy"_s}}), (SoundNaming{QString(), {u"punchy"_s}}));
    EXPECT_EQ(SmartNamer::fallback({u"x"_s, {u"Door 2"_s}, {}, 1, {}}), (SoundNaming{QString(), {u"door"_s}}));
}
