#include "editor/EditorModel.h"

#include "editor/EditorFixture.h"
#include "platform/media/AudioFile.h"

#include <QSignalSpy>

#include <limits>

using namespace tonequill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Part = EditorModel::Part;
using State = EditorModel::AnalysisState;

// Loading, choosing and listening; EditorPlaybackTest has the rest.
class EditorModelTest : public test::EditorFixture {};

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
    EXPECT_EQ(work.hearings.back().question.range, (test::FakeEditorWork::Range{u"/sounds/Door.wav"_s, best.start, best.end}));
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
    EXPECT_EQ(*editor.loadError(), u"“Gone” couldn't be opened."_s); // as the user knows it
    EXPECT_EQ(editor.duration(), 3);
    editor.play(); // without a player nothing happens, and nothing is said
    EXPECT_FALSE(editor.isPlaying());
    editor.load(item(u"Door"_s), u"/sounds/door.wav"_s);
    EXPECT_FALSE(editor.loadError());
}

TEST_F(EditorModelTest, AnotherSoundStartsWithNothingOfTheOneBefore)
{
    openWithEvents();
    work.labellings.back().answer(editor.candidates());
    work.hearings.back().answer({{u"door"_s, 0.9}});
    settle();
    editor.choose(candidateAt(1), EditorModel::Extend::yes);
    editor.seek(2);
    editor.setThinking(true);
    editor.setSmartSuggestion(EditorModel::SmartSuggestion{u"Slam"_s, {u"wood"_s}});
    EffectSettings effects;
    effects.speed = 2;
    editor.setEffects(effects);
    editor.play();
    ASSERT_TRUE(editor.isPlaying() && editor.heard() && editor.marked().size() == 2);

    const SoundItem next = item(u"Gate"_s, 4);
    editor.load(next, u"/sounds/gate.wav"_s);
    EXPECT_FALSE(editor.isPlaying());
    EXPECT_TRUE(editor.effects().isNeutral());
    EXPECT_EQ(editor.item(), next);
    EXPECT_EQ(editor.analysisState(), State::loading);
    EXPECT_TRUE(editor.candidates().empty());
    EXPECT_TRUE(editor.marked().isEmpty());
    EXPECT_FALSE(editor.cursor());
    EXPECT_FALSE(editor.smartSuggestion());
    EXPECT_FALSE(editor.heard());
    EXPECT_FALSE(editor.loadError());
    EXPECT_FALSE(editor.isThinking());
    EXPECT_FALSE(editor.isListening());
    EXPECT_EQ(editor.start(), 0);
    EXPECT_EQ(editor.end(), 4);
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
    EXPECT_EQ(work.hearings.back().question.range.start, other.start);
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
    EXPECT_EQ(work.hearings.back().question.range.start, first.start);
    editor.choose(best, EditorModel::Extend::no);
    EXPECT_EQ(editor.marked(), QSet<QUuid>{best.id});
}

TEST_F(EditorModelTest, TheWholeFileIsARangeWithoutAChip)
{
    openWithEvents();
    editor.selectAll();
    EXPECT_TRUE(editor.marked().isEmpty());
    EXPECT_EQ(editor.parts(), (std::vector<Part>{{0, 10, {}}}));
    EXPECT_EQ(work.hearings.back().question.range.end, 10);
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
    EXPECT_EQ(work.hearings.back().question.range.end, 3.5);
    work.hearings.back().answer({{u"rain"_s, 0.8}});
    settle();
    EXPECT_EQ(editor.heard()->name, u"Rain"_s);
}

TEST_F(EditorModelTest, ProposesSixEventsAtMost)
{
    open(item(u"Clapping"_s));
    std::vector<std::pair<double, float>> claps;
    for (int i = 0; i < 9; ++i)
        claps.emplace_back(1.0 * i, 0.1F * float(i + 1));
    work.analyses.back().answer(analysis(claps));
    settle();
    const auto isEvent = [](const CutCandidate& candidate) { return !candidate.isWhole; };
    EXPECT_EQ(std::ranges::count_if(editor.candidates(), isEvent), 6);
    EXPECT_EQ(editor.candidates().size(), 7U); // and the whole
}

TEST_F(EditorModelTest, AsksForSixLabels)
{
    openWithEvents();
    EXPECT_EQ(work.hearings.back().question.top, 6);
}

TEST_F(EditorModelTest, ARangeWithinAMillisecondOfTheProposalIsUntouched)
{
    const auto isFollowed = [this](double startOff, double endOff) {
        openWithEvents();
        const double start = editor.start();
        const double end = editor.end();
        editor.setRange(start + startOff, end + endOff);
        std::vector<CutCandidate> list = editor.candidates();
        list.back().score = 1'000;
        const double newStart = list.back().start;
        work.labellings.back().answer(SmartCutter::ranked(list, 7));
        settle();
        return editor.start() == newStart;
    };
    EXPECT_TRUE(isFollowed(0.0009, -0.0009));
    EXPECT_TRUE(isFollowed(-0.0009, 0.0009));
    EXPECT_FALSE(isFollowed(0.0011, 0));
    EXPECT_FALSE(isFollowed(-0.0011, 0));
    EXPECT_FALSE(isFollowed(0, 0.0011));
    EXPECT_FALSE(isFollowed(0, -0.0011));
}
