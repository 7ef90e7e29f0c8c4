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
