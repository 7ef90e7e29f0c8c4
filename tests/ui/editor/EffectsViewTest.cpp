#include "ui/editor/EffectsView.h"

#include "support/Printing.h"
#include "ui/OpenSound.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class EffectsViewTest : public testing::Test {
protected:
    const EffectSettings& now() { return open.editor().effects(); }

    test::OpenSound open;
    EffectsView view{open.editor()};
};

} // namespace

TEST_F(EffectsViewTest, SaysWhatEachControlStandsAt)
{
    EXPECT_EQ(view.speedText(), u"1×"_s);
    EXPECT_EQ(view.gainText(), u"+0 dB"_s);
    EXPECT_EQ(view.pitchText(), u"+0 semitones"_s);
    EXPECT_EQ(view.fadeInText(), u"0.00 s"_s);
    EXPECT_EQ(view.fadeOutText(), u"0.00 s"_s);
    EXPECT_EQ(view.echoText(), u"0%"_s);
    EXPECT_EQ(view.reverbText(), u"0%"_s);
    EXPECT_TRUE(view.isNeutral());
    view.setGain(-3);
    view.setPitch(7);
    view.setFadeIn(0.25);
    view.setFadeOut(0.12);
    view.setEcho(0.4);
    view.setReverb(0.18);
    view.setReverse(true);
    EXPECT_EQ(view.gainText(), u"-3 dB"_s);
    EXPECT_EQ(view.pitchText(), u"+7 semitones"_s);
    EXPECT_EQ(view.fadeInText(), u"0.25 s"_s);
    EXPECT_EQ(view.fadeOutText(), u"0.12 s"_s);
    EXPECT_EQ(view.echoText(), u"40%"_s);
    EXPECT_EQ(view.reverbText(), u"18%"_s);
    EXPECT_EQ(now(), (EffectSettings{1, 7, -3, 0.25, 0.12, true, 0.4, 0.18, VoiceStyle::natural}));
    EXPECT_FALSE(view.isNeutral());
}

TEST_F(EffectsViewTest, TheSpeedSliderIsLogarithmic)
{
    view.setSpeed(1);
    EXPECT_EQ(now().speed, 2);
    EXPECT_EQ(view.speed(), 1);
    view.setSpeed(-2);
    EXPECT_EQ(now().speed, 0.25);
    view.setSpeed(0);
    EXPECT_TRUE(view.isNeutral());
}

TEST_F(EffectsViewTest, ThePresetsAreTheSpeedsAskedForMost)
{
    EXPECT_EQ(EffectsView::presetTexts().join(u' '), u"0.5× 0.75× 1× 1.5× 2×"_s);
    EXPECT_EQ(view.preset(), 2);
    view.choosePreset(4);
    EXPECT_EQ(now().speed, 2);
    EXPECT_EQ(view.preset(), 4);
    view.setSpeed(0.3);
    EXPECT_EQ(view.preset(), -1);
    view.choosePreset(9);
    EXPECT_EQ(view.preset(), -1);
}

TEST_F(EffectsViewTest, ResetPutsEverythingBack)
{
    view.setEcho(0.5);
    view.voices()->choose(5);
    view.reset();
    EXPECT_TRUE(view.isNeutral());
    EXPECT_EQ(now(), EffectSettings());
}

TEST_F(EffectsViewTest, FadesReachToTheMiddleOfWhatIsHeard)
{
    open.finishWithThree(); // one second is chosen
    EXPECT_EQ(view.maxFade(), 0.5);
    open.editor().setRange(1.0, 5.0);
    EXPECT_EQ(view.maxFade(), 2);
    view.setSpeed(1);
    EXPECT_EQ(view.maxFade(), 1);
    open.editor().setRange(0.0, 10.0);
    EXPECT_EQ(view.maxFade(), 2.5);
    view.setSpeed(-2);
    EXPECT_EQ(view.maxFade(), 5);
    open.editor().setRange(1.0, 1.1);
    EXPECT_EQ(view.maxFade(), 0.5);
}

TEST_F(EffectsViewTest, AFadeThatIsSetStaysWithinReachOfItsSlider)
{
    open.finishWithThree();
    open.editor().setRange(1.0, 9.0);
    view.setFadeOut(3);
    open.editor().setRange(1.0, 2.0);
    EXPECT_EQ(view.maxFade(), 3);
}

TEST_F(EffectsViewTest, TheVoicesAreListedAndOneIsChosen)
{
    VoicesModel& voices = *view.voices();
    const QAbstractItemModelTester tester(&voices, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(voices.rowCount(), 9);
    EXPECT_EQ(voices.data(voices.index(0), VoicesModel::LabelRole), u"Natural"_s);
    EXPECT_EQ(voices.data(voices.index(8), VoicesModel::LabelRole), u"Megaphone"_s);
    EXPECT_EQ(voices.data(voices.index(7), VoicesModel::IconRole), u"phone"_s);
    EXPECT_TRUE(voices.data(voices.index(0), VoicesModel::CurrentRole).toBool());
    EXPECT_EQ(voices.hint(), u"The voice as it was recorded."_s);
    voices.choose(5);
    EXPECT_EQ(now().voice, VoiceStyle::robot);
    EXPECT_EQ(voices.hint(), u"Metallic and buzzing."_s);
    EXPECT_TRUE(voices.data(voices.index(5), VoicesModel::CurrentRole).toBool());
    EXPECT_FALSE(voices.data(voices.index(0), VoicesModel::CurrentRole).toBool());
    voices.choose(-1);
    EXPECT_EQ(now().voice, VoiceStyle::robot);
}
