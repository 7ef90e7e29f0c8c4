#include "editor/EditorModel.h"
#include "fakes/FakeAudioPlayer.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeEditorWork.h"
#include "platform/AudioFile.h"
#include "support/Printing.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace tonequill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Part = EditorModel::Part;
using State = EditorModel::AnalysisState;

class EditorModelTest : public testing::Test {
protected:
    static SoundItem item(const QString& name, double duration = 10)
    {
        SoundItem sound;
        sound.id = QUuid::createUuid();
        sound.name = name;
        sound.duration = duration;
        sound.descriptors = {u"of the record"_s};
        return sound;
    }

    // Ten seconds of a quiet room with bursts, as loud as told, of half a second.
    static AudioAnalysis analysis(const std::vector<std::pair<double, float>>& bursts)
    {
        AudioAnalysis sound;
        sound.duration = 10;
        sound.sampleRate = 48000;
        sound.hopSeconds = 0.01;
        sound.rms.assign(1000, 0.001F);
        sound.peak.assign(1000, 0.002F);
        for (const auto& [start, level] : bursts) {
            for (int hop = int(start * 100); hop < int(start * 100) + 50; ++hop) {
                sound.rms[std::size_t(hop)] = level * 0.5F;
                sound.peak[std::size_t(hop)] = level;
            }
        }
        sound.descriptors = {u"of the analysis"_s};
        return sound;
    }

    // What was finished by hand is carried on by the event loop.
    static void settle()
    {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }

    void open(const SoundItem& sound)
    {
        editor.load(sound, u"/sounds/%1.wav"_s.arg(sound.name));
        player = std::make_shared<test::FakeAudioPlayer>(10);
        work.openings.back().answer(player);
        settle();
    }
    // Opened and analysed, three events proposed, the loudest at 5 seconds.
    void openWithEvents()
    {
        open(item(u"Door"_s));
        work.analyses.back().answer(analysis({{1, 0.2F}, {5, 0.9F}, {8, 0.4F}}));
        settle();
    }
    const CutCandidate& candidateAt(double seconds) const
    {
        for (const CutCandidate& candidate : editor.candidates()) {
            if (!candidate.isWhole && candidate.start <= seconds && candidate.end >= seconds)
                return candidate;
        }
        throw std::runtime_error("no such candidate");
    }

    test::FakeEditorWork work;
    test::FakeClock clock;
    EditorModel editor{work, clock};
    std::shared_ptr<test::FakeAudioPlayer> player;
};

EditorModel::Extend extend()
{
    return EditorModel::Extend::yes;
}

} // namespace

// Loading

TEST_F(EditorModelTest, StartsEmpty)
{
    EXPECT_FALSE(editor.item());
    EXPECT_EQ(editor.analysisState(), State::idle);
    EXPECT_FALSE(editor.loadError());
    EXPECT_EQ(editor.duration(), 0);
    EXPECT_EQ(editor.parts(), (std::vector<Part>{{0, 0, {}}}));
}

TEST_F(EditorModelTest, LoadingNothingEmptiesItAndStartsNothing)
{
    openWithEvents();
    const auto questions = [this] { return work.analyses.size() + work.openings.size() + work.hearings.size(); };
    const auto before = questions();
    editor.load(std::nullopt, {});
    EXPECT_FALSE(editor.item());
    EXPECT_TRUE(editor.candidates().empty());
    EXPECT_TRUE(editor.marked().isEmpty());
    EXPECT_EQ(editor.analysisState(), State::idle);
    EXPECT_FALSE(editor.isListening());
    EXPECT_EQ(editor.duration(), 0);
    EXPECT_EQ(editor.end(), 0);
    EXPECT_EQ(questions(), before);
    editor.load(item(u"No file"_s, 3), {});
    EXPECT_EQ(editor.item()->name, u"No file"_s);
    EXPECT_EQ(editor.end(), 3);
    EXPECT_EQ(editor.analysisState(), State::idle);
    EXPECT_EQ(questions(), before);
}

TEST_F(EditorModelTest, TheRangeIsTheWholeRecordUntilTheAnalysisIsThere)
{
    const SoundItem sound = item(u"Door"_s, 7);
    editor.load(sound, u"/sounds/door.wav"_s);
    EXPECT_EQ(editor.item(), sound);
    EXPECT_EQ(editor.analysisState(), State::loading);
    EXPECT_EQ(editor.start(), 0);
    EXPECT_EQ(editor.end(), 7);
    work.analyses.back().question.progress->set(0.25);
    EXPECT_EQ(editor.analysisProgress(), 0.25);
    work.analyses.back().answer(analysis({}));
    settle();
    EXPECT_EQ(editor.analysisState(), State::ready);
    EXPECT_EQ(editor.duration(), 10); // the analysis knows better than the record
    EXPECT_EQ(editor.analysisProgress(), 0);
}

TEST_F(EditorModelTest, ProposesPartsAndChoosesTheBest)
{
    openWithEvents();
    ASSERT_GE(editor.candidates().size(), 3U);
    const CutCandidate best = editor.candidates().front();
    EXPECT_TRUE(best.isBest);
    EXPECT_EQ(best.id, candidateAt(5.2).id);
    EXPECT_EQ(editor.marked(), QSet<QUuid>{best.id});
    EXPECT_EQ(editor.start(), best.start);
    EXPECT_EQ(editor.end(), best.end);
    ASSERT_EQ(work.hearings.size(), 1U);
    EXPECT_EQ(work.hearings.back().question, (test::FakeEditorWork::Range{u"/sounds/Door.wav"_s, best.start, best.end}));
    EXPECT_TRUE(editor.isListening());
}

TEST_F(EditorModelTest, SaysWhyASoundCannotBeOpened)
{
    const SoundItem sound = item(u"Gone"_s, 3);
    editor.load(sound, u"/sounds/gone.wav"_s);
    work.openings.back().fail(AudioFileError(AudioFileError::Kind::open, u"/sounds/gone.wav"_s));
    work.analyses.back().fail(AudioFileError(AudioFileError::Kind::open, u"/sounds/gone.wav"_s));
    settle();
    EXPECT_EQ(editor.analysisState(), State::idle);
    EXPECT_EQ(editor.item(), sound);
    ASSERT_TRUE(editor.loadError());
    EXPECT_TRUE(editor.loadError()->contains(u"gone.wav"_s)) << editor.loadError()->toStdString();
    EXPECT_EQ(editor.duration(), 3);
    editor.play(); // without a player nothing happens, and nothing is said
    EXPECT_FALSE(editor.isPlaying());
    editor.load(item(u"Door"_s), u"/sounds/door.wav"_s);
    EXPECT_FALSE(editor.loadError());
}

TEST_F(EditorModelTest, DropsTheAnswersOfAnEarlierSound)
{
    editor.load(item(u"Slow"_s), u"/sounds/slow.wav"_s);
    auto slow = work.analyses.back();
    auto slowOpening = work.openings.back();
    editor.load(item(u"Missing"_s), u"/sounds/missing.wav"_s);
    auto missing = work.analyses.back();
    EXPECT_TRUE(slow.question.progress->isCancelled());
    openWithEvents();
    const auto candidates = editor.candidates();
    auto oldLabels = work.labellings.back();
    auto oldHearing = work.hearings.back();
    slow.answer(analysis({{2, 0.9F}}));
    slowOpening.answer(nullptr);
    missing.fail(AnalysisError());
    settle();
    EXPECT_EQ(editor.item()->name, u"Door"_s);
    EXPECT_EQ(editor.candidates(), candidates);
    EXPECT_FALSE(editor.loadError());
    editor.play();
    EXPECT_TRUE(editor.isPlaying()); // the player is this sound's
    editor.load(item(u"Gate"_s), u"/sounds/gate.wav"_s);
    oldLabels.answer(candidates);
    oldHearing.answer({{u"door"_s, 0.9}});
    settle();
    EXPECT_TRUE(editor.candidates().empty());
    EXPECT_FALSE(editor.heard());
}

TEST_F(EditorModelTest, AChangedRecordDoesNotReopenTheSound)
{
    openWithEvents();
    QSignalSpy analyses(&editor, &EditorModel::analysisChanged);
    SoundItem sound = *editor.item();
    sound.name = u"Gate"_s;
    editor.refresh(sound);
    EXPECT_EQ(editor.item()->name, u"Gate"_s);
    editor.refresh(item(u"Another"_s));
    EXPECT_EQ(editor.item()->name, u"Gate"_s);
    EXPECT_EQ(analyses.count(), 0);
}

TEST_F(EditorModelTest, ItCanGoWhileWorkIsOnItsWay)
{
    {
        EditorModel gone(work, clock);
        gone.load(item(u"Door"_s), u"/sounds/door.wav"_s);
        gone.setRange(1, 2);
    }
    EXPECT_TRUE(work.analyses.back().question.progress->isCancelled());
    work.analyses.back().answer(analysis({{2, 0.9F}}));
    work.openings.back().answer(nullptr);
    clock.advance(1s);
    settle();
    EXPECT_TRUE(work.hearings.empty());
}

// Labels

TEST_F(EditorModelTest, TheNewBestIsFollowedWhileTheRangeIsUntouched)
{
    openWithEvents();
    auto list = editor.candidates();
    const CutCandidate other = candidateAt(8.2);
    for (CutCandidate& candidate : list) {
        if (candidate.id == other.id)
            candidate.score = 1000;
    }
    work.labellings.back().answer(SmartCutter::ranked(list, 7));
    settle();
    EXPECT_EQ(editor.candidates().front().id, other.id);
    EXPECT_EQ(editor.marked(), QSet<QUuid>{other.id});
    EXPECT_EQ(editor.start(), other.start);
    EXPECT_EQ(editor.end(), other.end);
    EXPECT_EQ(work.hearings.back().question.start, other.start);
}

TEST_F(EditorModelTest, AHandleThatWasMovedBeforeTheLabelsCameStaysWhereItIs)
{
    openWithEvents();
    const CutCandidate best = editor.candidates().front();
    editor.setRange(best.start - 0.5, {});
    auto list = editor.candidates();
    list.back().score = 1000;
    list.back().label = u"Boom"_s;
    work.labellings.back().answer(SmartCutter::ranked(list, 7));
    settle();
    EXPECT_EQ(editor.candidates().front().label, u"Boom"_s);
    EXPECT_DOUBLE_EQ(editor.start(), best.start - 0.5);
    EXPECT_EQ(editor.end(), best.end);
    EXPECT_TRUE(editor.marked().isEmpty());
}

TEST_F(EditorModelTest, TheSameBestIsNotListenedToAgain)
{
    openWithEvents();
    auto list = editor.candidates();
    list.front().label = u"Slam"_s;
    work.labellings.back().answer(list);
    settle();
    EXPECT_EQ(work.hearings.size(), 1U);
    EXPECT_EQ(editor.parts(), (std::vector<Part>{{list.front().start, list.front().end, u"Slam"_s}}));
}

// Choosing

TEST_F(EditorModelTest, ChoosingReplacesAndExtendingCollects)
{
    openWithEvents();
    const CutCandidate first = candidateAt(1.2);
    const CutCandidate best = candidateAt(5.2);
    const CutCandidate last = candidateAt(8.2);
    editor.choose(last, EditorModel::Extend::no);
    EXPECT_EQ(editor.marked(), QSet<QUuid>{last.id});
    EXPECT_EQ(editor.start(), last.start);
    editor.choose(first, extend());
    EXPECT_EQ(editor.parts(), (std::vector<Part>{{first.start, first.end, {}}, {last.start, last.end, {}}}));
    EXPECT_EQ(editor.start(), first.start);
    // The chip that was just unmarked still takes the range.
    editor.choose(last, extend());
    EXPECT_EQ(editor.marked(), QSet<QUuid>{first.id});
    EXPECT_EQ(editor.start(), last.start);
    EXPECT_EQ(editor.parts(), (std::vector<Part>{{first.start, first.end, {}}}));
    // The last one can't be unmarked.
    editor.choose(first, extend());
    EXPECT_EQ(editor.marked(), QSet<QUuid>{first.id});
    EXPECT_EQ(work.hearings.back().question.start, first.start);
    editor.choose(best, EditorModel::Extend::no);
    EXPECT_EQ(editor.marked(), QSet<QUuid>{best.id});
}

TEST_F(EditorModelTest, TheWholeFileIsARangeWithoutAChip)
{
    openWithEvents();
    editor.selectAll();
    EXPECT_TRUE(editor.marked().isEmpty());
    EXPECT_EQ(editor.parts(), (std::vector<Part>{{0, 10, {}}}));
    EXPECT_EQ(work.hearings.back().question.end, 10);
}

TEST_F(EditorModelTest, ARangeIsHeldWithinTheSoundAndNeverTooShort)
{
    editor.setRange(1, 2);
    EXPECT_EQ(editor.end(), 0); // without a sound there is no range
    openWithEvents();
    editor.setRange(2, 6);
    EXPECT_TRUE(editor.marked().isEmpty());
    EXPECT_EQ(editor.start(), 2);
    EXPECT_EQ(editor.end(), 6);
    editor.setRange(-3, {});
    EXPECT_EQ(editor.start(), 0);
    editor.setRange({}, 99);
    EXPECT_EQ(editor.end(), 10);
    editor.setRange(9.999, {});
    EXPECT_DOUBLE_EQ(editor.start(), 9.97);
    editor.setRange({}, 1);
    EXPECT_DOUBLE_EQ(editor.end(), 10);
    editor.setRange(std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity());
    EXPECT_DOUBLE_EQ(editor.start(), 9.97);
    EXPECT_DOUBLE_EQ(editor.end(), 10);
}

TEST_F(EditorModelTest, TheDistanceOfTheHandlesGoesBeforeTheFrontOfTheSound)
{
    open(item(u"Click"_s, 0.02));
    editor.setRange(0, {});
    EXPECT_DOUBLE_EQ(editor.start(), -0.01); // the end is 0.02
    editor.setRange({}, 0.02);
    EXPECT_DOUBLE_EQ(editor.end(), 0.02);
}

TEST_F(EditorModelTest, ADraggedHandleUnmarksAndListensOnlyWhenItIsLetGo)
{
    openWithEvents();
    work.hearings.clear();
    editor.dragStart(4.2);
    EXPECT_TRUE(editor.marked().isEmpty());
    EXPECT_EQ(editor.start(), 4.2);
    editor.dragEnd(4.21);
    EXPECT_DOUBLE_EQ(editor.end(), 4.23);
    editor.dragEnd(11);
    EXPECT_EQ(editor.end(), 10);
    editor.dragStart(-1);
    EXPECT_EQ(editor.start(), 0);
    editor.dragStart(9.99);
    EXPECT_DOUBLE_EQ(editor.start(), 9.97);
    clock.advance(10s);
    EXPECT_TRUE(work.hearings.empty());
    editor.endDrag();
    clock.advance(399ms);
    EXPECT_TRUE(work.hearings.empty());
    clock.advance(1ms);
    EXPECT_EQ(work.hearings.size(), 1U);
}

// Listening

TEST_F(EditorModelTest, TellsWhatTheRangeSoundsLike)
{
    QList<QString> told;
    editor.setOnHeard([&](const SoundItem& sound, const SoundHeard& heard) { told << sound.name << heard.name; });
    openWithEvents();
    work.hearings.back().answer({{u"door"_s, 0.9}, {u"thump_thud"_s, 0.3}});
    settle();
    ASSERT_TRUE(editor.heard());
    EXPECT_EQ(editor.heard()->headline, u"Sounds like door (90% sure)"_s);
    EXPECT_EQ(editor.heard()->summary, u"Door, with a hint of thud."_s);
    EXPECT_FALSE(editor.isListening());
    EXPECT_EQ(told, (QList<QString>{u"Door"_s, u"Door"_s}));
}

TEST_F(EditorModelTest, NothingHeardIsToldAsWell)
{
    openWithEvents();
    work.hearings.back().answer({});
    settle();
    EXPECT_EQ(editor.heard()->headline, u"Not sure what this is"_s);
}

TEST_F(EditorModelTest, ANewerQuestionMakesTheEarlierAnswerStale)
{
    openWithEvents();
    auto early = work.hearings.back();
    editor.setRange(2, 3);
    editor.setRange(2, 3.5); // the wait starts anew
    clock.advance(399ms);
    EXPECT_EQ(work.hearings.size(), 1U);
    early.answer({{u"door"_s, 0.9}});
    settle();
    EXPECT_FALSE(editor.heard());
    EXPECT_TRUE(editor.isListening());
    clock.advance(1ms);
    ASSERT_EQ(work.hearings.size(), 2U);
    EXPECT_EQ(work.hearings.back().question.end, 3.5);
    work.hearings.back().answer({{u"rain"_s, 0.8}});
    settle();
    EXPECT_EQ(editor.heard()->name, u"Rain"_s);
}

// Playing

TEST_F(EditorModelTest, PlaysTheRange)
{
    openWithEvents();
    editor.setRange(2, 4);
    editor.play();
    EXPECT_TRUE(editor.isPlaying());
    EXPECT_TRUE(player->playing);
    EXPECT_EQ(player->time, 2);
    player->time = 2.5;
    clock.advance(17ms);
    EXPECT_EQ(editor.playhead(), 2.5);
    player->power = {-20, -12};
    EXPECT_EQ(editor.levelDb(), -12);
    player->time = 4;
    clock.advance(17ms);
    EXPECT_FALSE(editor.isPlaying());
    EXPECT_FALSE(player->playing);
    EXPECT_FALSE(editor.playhead());
    EXPECT_EQ(editor.levelDb(), AudioPlayer::kSilenceDb);
    clock.advance(10s);
    EXPECT_EQ(clock.sleeperCount(), 0U); // the timer runs only while it plays
}

TEST_F(EditorModelTest, StopsWhenThePlayerHasStopped)
{
    openWithEvents();
    editor.play();
    player->playing = false;
    clock.advance(17ms);
    EXPECT_FALSE(editor.isPlaying());
}

TEST_F(EditorModelTest, ARangeOfAHundredthOfASecondDoesNotPlay)
{
    open(item(u"Click"_s, 0.01));
    editor.play();
    EXPECT_FALSE(editor.isPlaying());
    EXPECT_EQ(player->plays, 0);
}

TEST_F(EditorModelTest, WithoutADeviceNothingPlaysAndNothingHangs)
{
    openWithEvents();
    player->hasDevice = false;
    editor.setLoop(true);
    editor.play();
    EXPECT_FALSE(editor.isPlaying());
    player->hasDevice = true;
    editor.play();
    EXPECT_TRUE(editor.isPlaying());
    player->hasDevice = player->playing = false; // lost while it plays
    clock.advance(17ms);
    EXPECT_FALSE(editor.isPlaying());
}

TEST_F(EditorModelTest, PlaysFromACursorInsideTheRangeOnly)
{
    openWithEvents();
    editor.setRange(2, 4);
    editor.seek(3);
    EXPECT_EQ(editor.cursor(), 3);
    editor.play();
    EXPECT_EQ(player->time, 3);
    editor.stop();
    for (const double outside : {1.0, 3.99, 5.0}) {
        editor.seek(outside);
        editor.play();
        EXPECT_EQ(player->time, 2) << outside;
        editor.stop();
    }
    editor.seek(-1);
    EXPECT_EQ(editor.cursor(), 0);
    editor.seek(11);
    EXPECT_EQ(editor.cursor(), 10);
}

TEST_F(EditorModelTest, AClickWhileItPlaysJumpsAtOnce)
{
    openWithEvents();
    editor.setRange(2, 4);
    editor.play();
    editor.seek(3.5);
    EXPECT_TRUE(editor.isPlaying());
    EXPECT_EQ(player->time, 3.5);
}

TEST_F(EditorModelTest, ALoopStartsAgainAtTheFrontOfTheRange)
{
    openWithEvents();
    editor.setRange(2, 4);
    editor.setLoop(true);
    editor.seek(3);
    editor.play();
    EXPECT_EQ(player->time, 3);
    player->time = 4.001;
    clock.advance(17ms);
    EXPECT_TRUE(editor.isPlaying());
    EXPECT_EQ(player->time, 2);
    player->playing = false; // the file ended
    clock.advance(17ms);
    EXPECT_TRUE(editor.isPlaying());
    EXPECT_TRUE(player->playing);
    editor.setLoop(false);
    player->time = 4.001;
    clock.advance(17ms);
    EXPECT_FALSE(editor.isPlaying());
}

// Effects

namespace {

class EditorEffectsTest : public EditorModelTest {
protected:
    EditorEffectsTest()
    {
        openWithEvents();
        editor.setRange(2, 4);
    }
    // A rendered file, as far as the editor can see.
    QString render()
    {
        QFile file(folder.filePath(u"render.wav"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        work.renders.back().answer(file.fileName());
        settle();
        return file.fileName();
    }
    void playRendered(double seconds)
    {
        rendered = std::make_shared<test::FakeAudioPlayer>(seconds);
        path = render();
        EXPECT_EQ(work.openings.back().question, path);
        work.openings.back().answer(rendered);
        settle();
    }
    static EffectSettings speed(double value)
    {
        EffectSettings effects;
        effects.speed = value;
        return effects;
    }

    QTemporaryDir folder;
    QString path;
    std::shared_ptr<test::FakeAudioPlayer> rendered;
};

} // namespace

TEST_F(EditorEffectsTest, AreRenderedAndThenHeard)
{
    editor.setEffects(speed(2));
    editor.play();
    EXPECT_TRUE(editor.isPlaying());
    EXPECT_TRUE(editor.isRendering());
    EXPECT_EQ(player->plays, 0);
    EXPECT_EQ(work.renders.back().question.range, (test::FakeEditorWork::Range{u"/sounds/Door.wav"_s, 2, 4}));
    EXPECT_EQ(work.renders.back().question.effects, speed(2));
    work.renders.back().question.progress->set(0.5);
    EXPECT_EQ(editor.renderProgress(), 0.5);
    playRendered(1);
    EXPECT_FALSE(editor.isRendering());
    EXPECT_TRUE(rendered->playing);
    EXPECT_EQ(rendered->loops, 0);
    rendered->time = 0.25; // of the file, which runs twice as fast as the source
    clock.advance(17ms);
    EXPECT_EQ(editor.playhead(), 2.5);
    rendered->time = 1.2; // an echo behind the range
    clock.advance(17ms);
    EXPECT_EQ(editor.playhead(), 4);
    EXPECT_TRUE(QFile::exists(path));
    rendered->playing = false;
    clock.advance(17ms);
    EXPECT_FALSE(editor.isPlaying());
    EXPECT_FALSE(QFile::exists(path)); // nothing is left behind
}

TEST_F(EditorEffectsTest, StartAtTheCursorInTheTimeOfTheRenderedFile)
{
    editor.seek(3);
    editor.setEffects(speed(2));
    editor.play();
    playRendered(1);
    EXPECT_EQ(rendered->time, 0.5);
    editor.stop();
    editor.setEffects(speed(0.1)); // rendered at a quarter, which is as slow as it goes
    editor.play();
    playRendered(8);
    EXPECT_EQ(rendered->time, 4);
    editor.stop();
    editor.setEffects(speed(0.25));
    editor.play();
    playRendered(3); // shorter than expected
    EXPECT_DOUBLE_EQ(rendered->time, 2.99);
}

TEST_F(EditorEffectsTest, InReverseItStartsAtTheTopAndCountsInItsOwnTime)
{
    EffectSettings effects = speed(2);
    effects.reverse = true;
    editor.seek(3);
    editor.setEffects(effects);
    editor.play();
    playRendered(1);
    EXPECT_EQ(rendered->time, 0);
    rendered->time = 0.25;
    clock.advance(17ms);
    EXPECT_EQ(editor.playhead(), 2.25);
}

TEST_F(EditorEffectsTest, LoopInTheirPlayer)
{
    editor.setLoop(true);
    editor.setEffects(speed(2));
    editor.play();
    playRendered(1);
    EXPECT_EQ(rendered->loops, AudioPlayer::kEndless);
    editor.setLoop(false);
    EXPECT_EQ(rendered->loops, 0);
    editor.setLoop(true);
    EXPECT_EQ(rendered->loops, AudioPlayer::kEndless);
}

TEST_F(EditorEffectsTest, AChangeStopsTheSound)
{
    editor.setEffects(speed(2));
    editor.play();
    playRendered(1);
    rendered->time = 0.25;
    clock.advance(17ms);
    editor.setEffects(speed(2));
    EXPECT_TRUE(editor.isPlaying()); // no change
    editor.setEffects(speed(1.5));
    EXPECT_FALSE(editor.isPlaying());
    EXPECT_FALSE(rendered->playing);
    EXPECT_FALSE(editor.playhead());
    editor.setEffects({});
    editor.play();
    EXPECT_TRUE(player->playing);
    editor.setEffects(speed(3));
    EXPECT_FALSE(player->playing);
}

TEST_F(EditorEffectsTest, AStoppedRenderIsCancelledAndItsFileRemoved)
{
    editor.setEffects(speed(2));
    editor.play();
    EXPECT_TRUE(editor.isRendering());
    editor.stop();
    EXPECT_FALSE(editor.isPlaying());
    EXPECT_FALSE(editor.isRendering());
    EXPECT_TRUE(work.renders.back().question.progress->isCancelled());
    work.openings.clear();
    const QString late = render(); // it was too late to cancel it
    EXPECT_FALSE(QFile::exists(late));
    EXPECT_TRUE(work.openings.empty());
    EXPECT_FALSE(editor.isPlaying());
}

TEST_F(EditorEffectsTest, ASoundThatIsLeftWhileItsPlayerOpensIsNotHeard)
{
    editor.setEffects(speed(2));
    editor.play();
    const QString file = render();
    auto opening = work.openings.back();
    editor.load(item(u"Gate"_s), u"/sounds/gate.wav"_s);
    EXPECT_TRUE(editor.effects().isNeutral()); // effects belong to one visit
    const auto late = std::make_shared<test::FakeAudioPlayer>(1);
    opening.answer(late);
    settle();
    EXPECT_FALSE(late->playing);
    EXPECT_FALSE(editor.isPlaying());
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(EditorEffectsTest, AFailureIsSaid)
{
    editor.setEffects(speed(2));
    editor.play();
    work.renders.back().fail(AnalysisError());
    settle();
    EXPECT_FALSE(editor.isPlaying());
    EXPECT_FALSE(editor.isRendering());
    EXPECT_EQ(editor.loadError(), u"Couldn't play this with the effects."_s);

    editor.play();
    const QString file = render();
    work.openings.back().fail(AudioFileError(AudioFileError::Kind::open, file));
    settle();
    EXPECT_FALSE(editor.isPlaying());
    EXPECT_FALSE(QFile::exists(file));

    editor.play();
    rendered = std::make_shared<test::FakeAudioPlayer>(1);
    rendered->hasDevice = false;
    render();
    work.openings.back().answer(rendered);
    settle();
    EXPECT_FALSE(editor.isPlaying());
    EXPECT_EQ(editor.loadError(), u"Couldn't play this with the effects."_s);
}
