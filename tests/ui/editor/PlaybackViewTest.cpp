#include "ui/editor/PlaybackView.h"

#include "fakes/FakeAudioPlayer.h"
#include "support/Printing.h"
#include "ui/OpenSound.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class PlaybackViewTest : public testing::Test {
protected:
    PlaybackViewTest()
    {
        open.work.openings.back().answer(player);
        open.finishWithThree(); // from 3 to 4 seconds
    }

    test::OpenSound open;
    std::shared_ptr<test::FakeAudioPlayer> player = std::make_shared<test::FakeAudioPlayer>(10);
    PlaybackView view{open.editor()};
};

} // namespace

TEST_F(PlaybackViewTest, TellsTheRangeToTheMillisecond)
{
    EXPECT_EQ(view.startText(), u"0:03.000"_s);
    EXPECT_EQ(view.endText(), u"0:04.000"_s);
    EXPECT_EQ(view.lengthText(), u"1.00s"_s);
    open.editor().setRange(3.61, 4.99);
    EXPECT_EQ(view.startText(), u"0:03.610"_s);
    EXPECT_EQ(view.lengthText(), u"1.38s"_s);
}

TEST_F(PlaybackViewTest, TheKeysMoveAnEdge)
{
    view.moveStart(-0.01);
    view.moveEnd(0.1);
    EXPECT_DOUBLE_EQ(view.start(), 2.99);
    EXPECT_DOUBLE_EQ(view.end(), 4.1);
    EXPECT_TRUE(open.editor().marked().isEmpty());
    view.moveEnd(-5);
    EXPECT_DOUBLE_EQ(view.end(), view.start() + 0.03);
}

TEST_F(PlaybackViewTest, OneButtonPlaysAndStops)
{
    view.toggle();
    EXPECT_TRUE(view.isPlaying());
    EXPECT_EQ(player->time, 3);
    view.toggle();
    EXPECT_FALSE(view.isPlaying());
    EXPECT_FALSE(player->playing);
}

TEST_F(PlaybackViewTest, ItCanPlayAsSoonAsThePlayerIsThereAndTheTimeRuns)
{
    test::OpenSound early;
    PlaybackView now(early.editor());
    EXPECT_FALSE(now.canPlay());
    int told = 0;
    QObject::connect(&now, &PlaybackView::playingChanged, &now, [&told] { ++told; });
    early.work.openings.back().answer(player);
    early.settle();
    EXPECT_GT(told, 0);
    EXPECT_TRUE(now.canPlay());
    EXPECT_EQ(early.editor().analysisState(), EditorModel::AnalysisState::loading);
    now.toggle();
    EXPECT_TRUE(now.isPlaying());
    EXPECT_EQ(now.placeText(), u"0:00.000"_s);
    int moved = 0;
    QObject::connect(&now, &PlaybackView::placeChanged, &now, [&moved] { ++moved; });
    player->time = 2.5;
    early.clock.advance(17ms);
    EXPECT_EQ(now.placeText(), u"0:02.500"_s);
    EXPECT_GT(moved, 0);
    now.toggle();
    EXPECT_EQ(now.placeText(), u"0:00.000"_s);
}

TEST_F(PlaybackViewTest, AnotherSoundHasNoPlayerYet)
{
    EXPECT_TRUE(view.canPlay());
    open.editor().load(open.item(), u"/elsewhere.wav"_s);
    EXPECT_FALSE(view.canPlay());
}

TEST_F(PlaybackViewTest, AnEdgeIsPutWhereTheCursorIs)
{
    view.setStartHere();
    EXPECT_EQ(view.start(), 3) << "there is no cursor";
    open.editor().seek(3.5);
    view.setStartHere();
    EXPECT_EQ(view.start(), 3.5);
    EXPECT_EQ(view.end(), 4);
    EXPECT_TRUE(open.editor().marked().isEmpty());
    open.editor().seek(3.75);
    view.setEndHere();
    EXPECT_EQ(view.start(), 3.5);
    EXPECT_EQ(view.end(), 3.75);
    const auto heard = open.work.hearings.size();
    open.clock.advance(400ms);
    EXPECT_EQ(open.work.hearings.size(), heard + 1) << "what it sounds like is found out";
}

TEST_F(PlaybackViewTest, AnEdgePutBeyondTheOtherGoesOnToTheSoundsEnd)
{
    open.editor().seek(8);
    view.setStartHere();
    EXPECT_EQ(view.start(), 8);
    EXPECT_EQ(view.end(), 10);
    open.editor().seek(2);
    view.setEndHere();
    EXPECT_EQ(view.start(), 0);
    EXPECT_EQ(view.end(), 2);
}

TEST_F(PlaybackViewTest, ThePlayheadGoesBeforeTheCursor)
{
    open.editor().seek(3.2);
    view.toggle();
    player->time = 3.6;
    open.clock.advance(17ms);
    view.setStartHere();
    EXPECT_EQ(view.start(), 3.6);
    player->time = 3.8;
    open.clock.advance(17ms);
    view.setEndHere();
    EXPECT_EQ(view.end(), 3.8);
    open.clock.advance(17ms);
    EXPECT_FALSE(view.isPlaying()) << "that is where the range ends now";
}

TEST_F(PlaybackViewTest, BeforeTheBestPartIsKnownNoEdgeIsPut)
{
    test::OpenSound early;
    PlaybackView now(early.editor());
    early.editor().seek(5);
    now.setStartHere();
    EXPECT_EQ(now.start(), 0);
}

TEST_F(PlaybackViewTest, ShowsTheLoudestChannelWhileItPlays)
{
    player->power = {-30, -12};
    view.toggle();
    open.clock.advance(16ms);
    EXPECT_DOUBLE_EQ(view.level(), 0.8);
    view.toggle();
    EXPECT_EQ(view.level(), 0);
}

TEST_F(PlaybackViewTest, TheMeterSpansSixtyDecibels)
{
    EXPECT_EQ(PlaybackView::meterShare(0), 1);
    EXPECT_EQ(PlaybackView::meterShare(3), 1);
    EXPECT_EQ(PlaybackView::meterShare(-30), 0.5);
    EXPECT_EQ(PlaybackView::meterShare(-60), 0);
    EXPECT_EQ(PlaybackView::meterShare(-160), 0);
}

TEST_F(PlaybackViewTest, RenderedEffectsShowTheirProgress)
{
    EffectSettings effects;
    effects.echo = 0.5;
    open.editor().setEffects(effects);
    int looks = 0;
    QObject::connect(&view, &PlaybackView::renderProgressChanged, &view, [&looks] { ++looks; });
    view.toggle();
    EXPECT_TRUE(view.isPlaying());
    EXPECT_TRUE(view.isRendering());
    looks = 0;
    open.work.renders.back().question.progress->set(0.5);
    EXPECT_TRUE(test::OpenSound::wait([&looks] { return looks > 0; }));
    EXPECT_EQ(view.renderProgress(), 0.5);
    view.toggle();
    EXPECT_FALSE(view.isRendering());
}
