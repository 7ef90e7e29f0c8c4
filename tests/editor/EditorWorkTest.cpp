#include "editor/EditorWork.h"

#include "platform/media/AudioFile.h"
#include "platform/playback/NoAudioOutput.h"
#include "support/Await.h"
#include "support/Wav.h"
#include "understanding/listening/SoundClassifier.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class EditorWorkTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString tone = test::writeTone(folder.filePath(u"tone.wav"_s), 1);
    QString gone = folder.filePath(u"gone.wav"_s);
    SoundClassifier classifier;
    NoAudioOutput output;
    Workers workers;
    BackgroundEditorWork work{classifier, output, workers};
};

} // namespace

TEST_F(EditorWorkTest, AnalysesAndRendersAFile)
{
    EXPECT_EQ(test::await(work.analyze(tone, std::make_shared<Progress>())).duration, 1);
    const ScratchFile rendered = test::await(work.render(tone, 0, 1, {}, std::make_shared<Progress>()));
    EXPECT_DOUBLE_EQ(AudioFile(rendered.path()).durationSeconds(), 1);
    EXPECT_THROW(test::await(work.analyze(gone, std::make_shared<Progress>())), AudioFileError);
    EXPECT_THROW(test::await(work.open(tone)), AudioFileError);
}

TEST_F(EditorWorkTest, HearsNothingWhereItCannotListen)
{
    EXPECT_FALSE(test::await(work.classify({tone, 0, 1, 6}, Lane::behind, std::make_shared<Progress>())).empty());
    EXPECT_TRUE(test::await(work.classify({gone, 0, 1, 6}, Lane::shown, std::make_shared<Progress>())).empty());
}

TEST_F(EditorWorkTest, ACandidateThatCannotBeHeardStaysAsItIs)
{
    std::vector<CutCandidate> candidates(2);
    candidates[0].end = candidates[1].end = 1;
    candidates[0].score = 2;
    const auto heard = test::await(work.label(candidates, tone, std::make_shared<Progress>()));
    EXPECT_TRUE(heard[0].label && heard[1].label);
    const auto unheard = test::await(work.label(candidates, gone, std::make_shared<Progress>()));
    EXPECT_FALSE(unheard[0].label || unheard[1].label);
    EXPECT_EQ(unheard[0].score, 2);
}
