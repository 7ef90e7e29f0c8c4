#include "app/smart/SmartActions.h"
#include "app/handover/HandedOver.h"
#include "app/library/ImportFlows.h"
#include "app/smart/NamingFlows.h"
#include "base/Background.h"
#include "base/Uuid.h"
#include "support/Await.h"
#include "support/LibraryFolder.h"
#include "support/Printing.h"
#include "support/Program.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

const QString kLeftAlone = u"These sounds already have names you chose, so I left them alone."_s;

QJsonObject idea(const QString& name, const QStringList& tags)
{
    return {{u"name"_s, name}, {u"tags"_s, QJsonArray::fromStringList(tags)}};
}

// Two camera files and a door with a chosen name; the first is open.
class SmartActionsTest : public testing::Test, public test::Machine {
protected:
    SmartActionsTest() { open({u"IMG_0042"_s, u"MVI_0007"_s, u"Cellar Door"_s}); }

    void open(const QStringList& names)
    {
        model.reset();
        folder = std::make_unique<test::LibraryFolder>();
        for (const QString& name : names) {
            SoundItem& item = folder->add(name);
            item.nameIsAuto = name != u"Cellar Door";
            item.tags = {u"door"_s};
            item.descriptors = {u"punchy"_s, u"medium"_s};
        }
        folder->write();
        model = program(folder->path());
        settle();
    }
    void settle() const
    {
        Machine::settle();
        if (model)
            Machine::settle(*model);
    }
    const SoundItem& sound(qsizetype index) const { return model->library().items()[index]; }
    QList<SoundItem> all() const { return model->library().items(); }

    void rename(const QList<SoundItem>& items)
    {
        startFlow(smartRename(*model, items));
        settle();
    }
    void suggest(const SoundItem& item)
    {
        startFlow(suggestSmartName(*model, item));
        settle();
    }
    void hear(std::vector<HeardLabel> labels)
    {
        ASSERT_FALSE(work.hearings.empty());
        work.hearings.back().answer(std::move(labels));
        settle();
    }
    // What the editor hears in the open sound.
    void hearInEditor(std::vector<HeardLabel> labels)
    {
        AudioAnalysis analysis;
        analysis.duration = 1;
        analysis.hopSeconds = 0.01;
        analysis.rms.assign(100, 0.2F);
        analysis.peak.assign(100, 0.4F);
        work.analyses.back().answer(analysis);
        settle();
        hear(std::move(labels));
    }
    // The line of the model's prompt that begins so.
    QString told(const QString& start) const
    {
        for (const QString& line : languageModel.prompt.split(u'\n')) {
            if (line.startsWith(start))
                return line.sliced(start.size());
        }
        return u"nothing"_s;
    }
    QString toldLabels() const { return told(u"What the recognizer heard, most likely first: "_s); }

    QTemporaryDir settings;
    std::unique_ptr<test::LibraryFolder> folder;
    std::unique_ptr<AppModel> model;
};

} // namespace

TEST_F(SmartActionsTest, AModelNamesAndTagsTheSound)
{
    languageModel.answer = idea(u"\"heavy DOOR slam\""_s, {u"door"_s, u"Wood"_s});
    rename({sound(1)});
    hear({{u"door"_s, 0.6}});
    EXPECT_EQ(sound(1).name, u"Heavy Door Slam"_s);
    EXPECT_EQ(sound(1).tags, (QStringList{u"door"_s, u"wood"_s})); // beside those it had
    EXPECT_EQ(model->notices().text(), u"Named it and added tags."_s);
    EXPECT_FALSE(model->notices().isError());
}

TEST_F(SmartActionsTest, TheModelIsToldWhatIsKnown)
{
    languageModel.answer = idea(u"Door Slam"_s, {u"door"_s});
    rename({sound(1)});
    EXPECT_EQ(work.hearings.back().question.range.path, model->library().path(sound(1)));
    EXPECT_EQ(work.hearings.back().question.range.start, 0);
    EXPECT_EQ(work.hearings.back().question.range.end, sound(1).duration);
    EXPECT_EQ(work.hearings.back().question.top, 3);
    hear({{u"glass_breaking"_s, 0.6}, {u"door"_s, 0.2}});
    EXPECT_EQ(told(u"Current name: "_s), u"MVI_0007"_s);
    EXPECT_EQ(toldLabels(), u"Glass Break, Door"_s);
    EXPECT_EQ(told(u"Length: "_s), u"1.4 seconds"_s);
    EXPECT_EQ(told(u"Traits: "_s), u"punchy, medium"_s);
    EXPECT_EQ(told(u"Existing tags: "_s), u"door"_s);
}

TEST_F(SmartActionsTest, WithoutAModelTheLabelsNameTheSound)
{
    languageModel.available = false;
    rename({sound(1)});
    hear({{u"glass_breaking"_s, 0.3}});
    EXPECT_EQ(sound(1).name, u"Glass Break"_s);
    EXPECT_EQ(sound(1).tags, (QStringList{u"door"_s, u"punchy"_s, u"glass"_s, u"break"_s}));
    EXPECT_EQ(languageModel.questions, 0);
}

TEST_F(SmartActionsTest, AModelThatFailsOrTalksRubbishLeavesItToTheLabels)
{
    const std::optional<QJsonObject> answers[] = {
        std::nullopt, QJsonObject(), QJsonObject{{u"name"_s, 7}, {u"tags"_s, u"door"_s}}, idea(u"Take 2"_s, {u"door"_s}),
        idea(u"The Sound That A Very Large Door Makes"_s, {})};
    for (const auto& answer : answers) {
        open({u"IMG_0042"_s, u"MVI_0007"_s});
        languageModel.answer = answer;
        rename({sound(1)});
        hear({{u"glass_breaking"_s, 0.3}});
        EXPECT_EQ(sound(1).name, u"Glass Break"_s);
    }
    EXPECT_EQ(languageModel.questions, 5);
}

TEST_F(SmartActionsTest, ChosenNamesAreLeftAlone)
{
    QSignalSpy working(&model->work(), &FlowsAtWork::changed);
    const QList<SoundItem> before = all();
    rename({sound(2)});
    EXPECT_EQ(model->notices().text(), kLeftAlone);
    EXPECT_TRUE(work.hearings.empty());
    EXPECT_EQ(languageModel.questions, 0);
    EXPECT_TRUE(working.isEmpty());
    rename({});
    EXPECT_EQ(all(), before);
}

TEST_F(SmartActionsTest, AMarkedSoundWithAChosenNameStaysAmongOthers)
{
    languageModel.available = false;
    rename(all());
    EXPECT_TRUE(model->isWorking());
    EXPECT_EQ(model->work().text(), u"Naming 2"_s);
    hear({{u"dog"_s, 0.5}});
    EXPECT_TRUE(model->isWorking());
    hear({{u"rain"_s, 0.5}});
    EXPECT_EQ(sound(0).name, u"Dog"_s);
    EXPECT_EQ(sound(1).name, u"Rain"_s);
    EXPECT_EQ(sound(2).name, u"Cellar Door"_s);
    EXPECT_EQ(sound(2).tags, QStringList{u"door"_s});
    EXPECT_EQ(model->notices().text(), u"Renamed 2 sounds and added tags."_s);
    EXPECT_FALSE(model->isWorking());
    EXPECT_TRUE(model->work().text().isEmpty());
}

TEST_F(SmartActionsTest, WhatIsHardlyHeardIsNotTold)
{
    languageModel.answer = idea(u"Door Slam"_s, {});
    rename({sound(1)});
    hear({{u"glass_breaking"_s, 0.1}, {u"dog"_s, 0.09}});
    EXPECT_EQ(toldLabels(), u"Glass Break"_s);
}

TEST_F(SmartActionsTest, WhatTheOpenEditorHeardIsToldHoweverUnsure)
{
    hearInEditor({{u"glass_breaking"_s, 0.5}, {u"dog"_s, 0.09}, {u"door"_s, 0.08}, {u"rain"_s, 0.07}});
    const std::size_t hearings = work.hearings.size();
    languageModel.answer = idea(u"Door Slam"_s, {});
    rename({sound(0)});
    EXPECT_EQ(work.hearings.size(), hearings); // nothing is listened to again
    EXPECT_EQ(toldLabels(), u"Glass Break, Dog, Door"_s);
    EXPECT_EQ(sound(0).name, u"Door Slam"_s);
}

TEST_F(SmartActionsTest, AnEditorThatHeardNothingIsNoEar)
{
    hearInEditor({});
    const std::size_t hearings = work.hearings.size();
    rename({sound(0)});
    EXPECT_EQ(work.hearings.size(), hearings + 1);
}

TEST_F(SmartActionsTest, ASoundThatNothingIsHeardInKeepsItsName)
{
    languageModel.available = false;
    rename({sound(1)});
    const SoundItem before = sound(1);
    hear({});
    EXPECT_EQ(sound(1), before);
    EXPECT_EQ(model->notices().text(), u"Renamed 0 sounds and added tags."_s);
    EXPECT_FALSE(model->isWorking());
}

TEST_F(SmartActionsTest, AGivenNameIsNotHeardOver)
{
    languageModel.answer = idea(u"Heavy Door Slam"_s, {});
    rename({sound(1)});
    hear({{u"door"_s, 0.9}});
    applyHeard(*model, sound(1), {u"Door"_s, {}, {}, {{u"door"_s, 0.95}}});
    EXPECT_EQ(sound(1).name, u"Heavy Door Slam"_s);
}

TEST_F(SmartActionsTest, WhatIsDeletedMeanwhileStaysDeleted)
{
    languageModel.available = false;
    rename(all());
    deleteItems(*model, {sound(0)}); // while it is listened to
    hear({{u"dog"_s, 0.5}});
    EXPECT_EQ(sound(0).name, u"MVI_0007"_s);
    deleteItems(*model, all()); // and while another is
    hear({{u"rain"_s, 0.5}});
    EXPECT_TRUE(all().isEmpty());
    EXPECT_FALSE(model->isWorking());
    EXPECT_EQ(model->notices().text(), u"Renamed 0 sounds and added tags."_s);
}

TEST_F(SmartActionsTest, ASoundThatIsDeletedBeforeItsTurnIsNotListenedTo)
{
    languageModel.available = false;
    rename(all());
    const std::size_t hearings = work.hearings.size();
    deleteItems(*model, {sound(1)});
    hear({{u"dog"_s, 0.5}});
    EXPECT_EQ(work.hearings.size(), hearings);
    EXPECT_EQ(model->notices().text(), u"Named it and added tags."_s);
}

TEST_F(SmartActionsTest, ANameThatIsGivenMeanwhileStays)
{
    languageModel.answer = idea(u"Dog Bark"_s, {u"dog"_s});
    rename({sound(0), sound(1)});
    model->library().rename(sound(0), u"My Dog"_s, false);
    model->library().rename(sound(1), u"Take A"_s, false);
    hear({{u"dog"_s, 0.5}});
    EXPECT_EQ(sound(0).name, u"My Dog"_s);
    EXPECT_EQ(sound(0).tags, QStringList{u"door"_s});
    EXPECT_EQ(sound(1).name, u"Take A"_s);
    EXPECT_EQ(languageModel.questions, 1); // the second wasn't asked about
}

TEST_F(SmartActionsTest, WhatTheEditorHearsFirstIsNoChosenName)
{
    languageModel.answer = idea(u"Heavy Door Slam"_s, {u"wood"_s});
    rename({sound(0)});
    applyHeard(*model, sound(0), {u"Door"_s, {}, {}, {{u"door"_s, 0.95}}});
    EXPECT_EQ(sound(0).name, u"Door"_s);
    hear({{u"door"_s, 0.9}});
    EXPECT_EQ(sound(0).name, u"Heavy Door Slam"_s);
    EXPECT_TRUE(sound(0).tags.contains(u"wood"_s));
    EXPECT_EQ(model->notices().text(), u"Named it and added tags."_s);
}

TEST_F(SmartActionsTest, TheWorkIsOverWhenItIsTold)
{
    languageModel.available = false;
    rename({sound(1)});
    std::optional<bool> wasWorking;
    QObject::connect(&model->notices(), &Notices::changed, model.get(), [&] { wasWorking = model->isWorking(); });
    hear({{u"dog"_s, 0.5}});
    EXPECT_EQ(wasWorking, false);
}

TEST_F(SmartActionsTest, TagsThatAreAddedMeanwhileStay)
{
    languageModel.available = false;
    rename({sound(1)});
    model->library().update(sound(1), [](SoundItem& item) { item.tags << u"mine"_s; });
    hear({{u"dog"_s, 0.5}});
    EXPECT_EQ(sound(1).tags, (QStringList{u"door"_s, u"mine"_s, u"punchy"_s, u"dog"_s}));
}

TEST_F(SmartActionsTest, TwoRunsAtOnceNameASoundOnce)
{
    languageModel.available = false;
    rename({sound(0)});
    rename({sound(0), sound(1)}); // the second has only one of them
    EXPECT_EQ(model->work().text(), u"Naming 1"_s);
    ASSERT_GE(work.hearings.size(), 2U);
    const std::size_t last = work.hearings.size() - 1;
    EXPECT_TRUE(model->names().isLookedAt(sound(0).id) && model->names().isLookedAt(sound(1).id));
    work.hearings[last - 1].answer({{u"dog"_s, 0.5}});
    settle();
    EXPECT_EQ(sound(0).name, u"Dog"_s);
    EXPECT_EQ(model->notices().text(), u"Named it and added tags."_s);
    EXPECT_TRUE(model->isWorking());
    work.hearings[last].answer({{u"rain"_s, 0.5}});
    settle();
    EXPECT_EQ(sound(0).name, u"Dog"_s);
    EXPECT_EQ(sound(1).name, u"Rain"_s);
    EXPECT_FALSE(model->isWorking());
}

TEST_F(SmartActionsTest, FortyCameraFilesAreNamedInOneRun)
{
    QStringList names;
    for (int i = 0; i < 40; ++i)
        names << u"IMG_%1"_s.arg(i, 4, 10, QChar(u'0'));
    open(names);
    languageModel.available = false;
    rename(all());
    EXPECT_EQ(model->work().text(), u"Naming 40"_s);
    for (int i = 0; i < 40; ++i)
        hear({{i % 2 == 0 ? u"dog"_s : u"rain"_s, 0.5}});
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(sound(i).name, i % 2 == 0 ? u"Dog"_s : u"Rain"_s);
    EXPECT_EQ(model->notices().text(), u"Renamed 40 sounds and added tags."_s);
    EXPECT_EQ(LibraryStore(clock, workers, folder->path()).items(), all()); // and so they are on the disk
}

TEST_F(SmartActionsTest, SuggestsANameForTheOpenSound)
{
    languageModel.answer = idea(u"Heavy Door Slam"_s, {u"wood"_s});
    languageModel.thinks = true;
    QSignalSpy smart(&model->editor(), &EditorModel::smartChanged);
    const SoundItem before = sound(0);
    suggest(before);
    EXPECT_TRUE(model->editor().isThinking());
    EXPECT_FALSE(model->isWorking());
    hear({{u"door"_s, 0.5}});
    EXPECT_TRUE(model->editor().isThinking()); // the model does
    EXPECT_FALSE(model->editor().smartSuggestion());
    ASSERT_EQ(languageModel.thoughts.size(), 1U);
    languageModel.thoughts.back().answer(*languageModel.answer);
    settle();
    EXPECT_FALSE(model->editor().isThinking());
    const EditorModel::SmartSuggestion expected{u"Heavy Door Slam"_s, {u"wood"_s}};
    EXPECT_EQ(model->editor().smartSuggestion(), expected);
    EXPECT_EQ(sound(0), before); // it is only a suggestion
    EXPECT_EQ(smart.count(), 3);
}

TEST_F(SmartActionsTest, SuggestsForAChosenNameToo)
{
    model->setSelection(sound(2).id);
    languageModel.available = false;
    suggest(sound(2));
    hear({{u"door"_s, 0.5}});
    EXPECT_EQ(model->editor().smartSuggestion()->name, u"Door"_s);
}

TEST_F(SmartActionsTest, AUsedSuggestionIsTheSoundsNameAndIsGone)
{
    model->editor().setSmartSuggestion(EditorModel::SmartSuggestion{u"Heavy Door Slam"_s, {u"door"_s, u"wood"_s}});
    useSmartSuggestion(*model, sound(0));
    EXPECT_EQ(sound(0).name, u"Heavy Door Slam"_s);
    EXPECT_EQ(sound(0).tags, (QStringList{u"door"_s, u"wood"_s}));
    EXPECT_EQ(model->editor().item()->name, u"Heavy Door Slam"_s);
    EXPECT_FALSE(model->editor().smartSuggestion());
    const SoundItem named = sound(0);
    useSmartSuggestion(*model, named); // there is none any more
    EXPECT_EQ(sound(0), named);
}

TEST_F(SmartActionsTest, AnEmptySuggestionDoesNothing)
{
    languageModel.available = false;
    suggest(sound(0));
    hear({});
    ASSERT_TRUE(model->editor().smartSuggestion());
    EXPECT_TRUE(model->editor().smartSuggestion()->name.isEmpty());
    const SoundItem before = sound(0);
    useSmartSuggestion(*model, before);
    EXPECT_EQ(sound(0), before);
    EXPECT_TRUE(model->editor().smartSuggestion());
}

TEST_F(SmartActionsTest, ASuggestionForASoundThatIsNoLongerOpenIsDropped)
{
    languageModel.available = false;
    suggest(sound(0));
    model->setSelection(sound(1).id);
    EXPECT_FALSE(model->editor().isThinking());
    work.hearings.back().answer({{u"dog"_s, 0.5}});
    settle();
    EXPECT_FALSE(model->editor().smartSuggestion());
    suggest(sound(0)); // not open: nothing would show it
    EXPECT_FALSE(model->editor().isThinking());
}

TEST_F(SmartActionsTest, ASuggestionForADeletedSoundIsDropped)
{
    languageModel.available = false;
    suggest(sound(0));
    deleteItems(*model, all());
    hear({{u"dog"_s, 0.5}});
    EXPECT_FALSE(model->editor().smartSuggestion());
    EXPECT_FALSE(model->editor().isThinking());
}

TEST_F(SmartActionsTest, TheNewestQuestionCounts)
{
    languageModel.available = false;
    suggest(sound(0));
    suggest(sound(0));
    const std::size_t last = work.hearings.size() - 1;
    work.hearings[last].answer({{u"rain"_s, 0.5}});
    settle();
    EXPECT_EQ(model->editor().smartSuggestion()->name, u"Rain"_s);
    work.hearings[last - 1].answer({{u"dog"_s, 0.5}});
    settle();
    EXPECT_EQ(model->editor().smartSuggestion()->name, u"Rain"_s);
}

TEST_F(SmartActionsTest, TheProgramMayEndWhileItNames)
{
    languageModel.thinks = true;
    rename({sound(0), sound(1)});
    suggest(sound(0));
    model.reset(); // during the hearings
    hear({{u"dog"_s, 0.5}});
    EXPECT_EQ(languageModel.questions, 0);

    open({u"IMG_0042"_s, u"MVI_0007"_s});
    rename({sound(1)});
    hear({{u"dog"_s, 0.5}});
    ASSERT_EQ(languageModel.questions, 1);
    model.reset(); // while the model thinks
    languageModel.thoughts.back().fail(LanguageModelError(LanguageModelError::Kind::cancelled));
    settle();
    EXPECT_EQ(LibraryStore(clock, workers, folder->path()).items()[1].name, u"MVI_0007"_s);
}

TEST_F(SmartActionsTest, ASecondProgramMayHandSoundsOver)
{
    languageModel.available = false;
    const QJsonArray ids{uuidText(sound(1).id), uuidText(sound(2).id), uuidText(QUuid::createUuid()), 7};
    EXPECT_EQ(HandedOver::carryOut(*model, {{u"name"_s, ids}}), (QJsonObject{{u"ok"_s, true}}));
    settle();
    hear({{u"dog"_s, 0.5}});
    EXPECT_EQ(sound(1).name, u"Dog"_s);
    EXPECT_EQ(sound(2).name, u"Cellar Door"_s);
    EXPECT_EQ(HandedOver::carryOut(*model, {{u"name"_s, u"all"_s}}), (QJsonObject{{u"ok"_s, false}}));
    settle();
    EXPECT_EQ(model->notices().text(), u"Named it and added tags."_s); // of before
}

TEST_F(SmartActionsTest, ASoundThatIsBeingNamedIsRefusedASecondTime)
{
    auto first = smartRename(*model, all());
    settle();
    const NamingOutcome second = test::await(smartRename(*model, {sound(0), sound(1)}));
    EXPECT_TRUE(second.isAtWork);
    EXPECT_TRUE(second.renamed.isEmpty());
    EXPECT_TRUE(model->notices().text().isEmpty());
    for (int i = 0; i < 2; ++i)
        hear({{u"door"_s, 0.9}});
    EXPECT_EQ(test::await(std::move(first)).renamed, (QList<QUuid>{sound(0).id, sound(1).id}));
    EXPECT_FALSE(test::await(smartRename(*model, all())).isAtWork);
}

TEST_F(SmartActionsTest, ManyNamesAreSavedTogether)
{
    QStringList names;
    for (int i = 0; i < 120; ++i)
        names << u"IMG_%1"_s.arg(1000 + i);
    open(names);
    const int before = model->library().saveCount();
    auto flow = smartRename(*model, all());
    for (int i = 0; i < 120; ++i)
        hear({{u"door"_s, 0.9}});
    EXPECT_EQ(test::await(std::move(flow)).renamed.size(), 120);
    EXPECT_EQ(model->library().saveCount() - before, 3); // 50 at a time
    EXPECT_EQ(LibraryStore(clock, workers, folder->path()).items(), all());
}

TEST_F(SmartActionsTest, NamingCanBeStopped)
{
    open({u"IMG_1000"_s, u"IMG_1001"_s, u"IMG_1002"_s});
    auto flow = smartRename(*model, all());
    hear({{u"door"_s, 0.9}});
    EXPECT_TRUE(model->names().isClaimed(sound(2).id));
    model->names().stop(sound(2).id);
    EXPECT_TRUE(work.hearings.back().question.progress->isCancelled());
    hear({{u"rain"_s, 0.9}}); // of the second, which came too late
    EXPECT_EQ(test::await(std::move(flow)).renamed, QList{sound(0).id});
    EXPECT_EQ(sound(1).name, u"IMG_1001"_s);
    EXPECT_EQ(sound(2).name, u"IMG_1002"_s);
    EXPECT_FALSE(model->isWorking());
    EXPECT_EQ(model->notices().text(), u"Named it and added tags."_s);
    rename({sound(1)}); // and it can be asked for again
    hear({{u"rain"_s, 0.9}});
    EXPECT_NE(sound(1).name, u"IMG_1001"_s);
}

TEST_F(SmartActionsTest, WhatWasNamedBeforeTheProgramEndsIsKept)
{
    startFlow(smartRename(*model, all()));
    settle();
    hear({{u"door"_s, 0.9}});
    model->close();
    EXPECT_FALSE(model->isWorking());
    EXPECT_NE(sound(0).name, u"IMG_0042"_s);
    EXPECT_EQ(LibraryStore(clock, workers, folder->path()).items(), all());
}

TEST_F(SmartActionsTest, LeavingTheSoundCancelsTheQuestionForItsName)
{
    suggest(sound(0));
    ASSERT_FALSE(work.hearings.empty());
    const ProgressPtr asked = work.hearings.back().question.progress;
    EXPECT_EQ(work.hearings.back().question.lane, Lane::shown); // somebody waits for it
    model->setSelection(sound(2).id);
    EXPECT_TRUE(asked->isCancelled());
}
