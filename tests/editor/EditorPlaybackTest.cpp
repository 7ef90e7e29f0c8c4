#include "editor/EditorFixture.h"
#include "platform/media/AudioFile.h"

#include <QFile>
#include <QTemporaryDir>

using namespace tonequill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class EditorPlaybackTest : public test::EditorFixture {};

} // namespace

TEST_F(EditorPlaybackTest, PlaysTheRange)
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

TEST_F(EditorPlaybackTest, StopsWhenThePlayerHasStopped)
{
    openWithEvents();
    editor.play();
    player->playing = false;
    clock.advance(17ms);
    EXPECT_FALSE(editor.isPlaying());
}

TEST_F(EditorPlaybackTest, ARangeOfAHundredthOfASecondDoesNotPlay)
{
    open(item(u"Click"_s, 0.01));
    editor.play();
    EXPECT_FALSE(editor.isPlaying());
    EXPECT_EQ(player->plays, 0);
}

TEST_F(EditorPlaybackTest, WithoutADeviceNothingPlaysAndNothingHangs)
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

TEST_F(EditorPlaybackTest, PlaysFromACursorInsideTheRangeOnly)
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

TEST_F(EditorPlaybackTest, AClickWhileItPlaysJumpsAtOnce)
{
    openWithEvents();
    editor.setRange(2, 4);
    editor.play();
    editor.seek(3.5);
    EXPECT_TRUE(editor.isPlaying());
    EXPECT_EQ(player->time, 3.5);
}

TEST_F(EditorPlaybackTest, ALoopStartsAgainAtTheFrontOfTheRange)
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

class EditorEffectsTest : public EditorPlaybackTest {
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
        work.renders.back().answer(ScratchFile(file.fileName()));
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

TEST_F(EditorPlaybackTest, ACursorTwentyMillisecondsBeforeTheEndStartsFromTheFront)
{
    openWithEvents();
    editor.setRange(2, 4);
    editor.seek(4 - 0.0201);
    editor.play();
    EXPECT_EQ(player->currentTime(), 4 - 0.0201);
    editor.stop();
    editor.seek(4 - 0.0199);
    editor.play();
    EXPECT_EQ(player->currentTime(), 2);
}
