#include "app/delivery/StagingFlows.h"
#include "library/delivery/DragStaging.h"
#include "platform/media/AudioFile.h"
#include "support/Environment.h"
#include "support/LibraryFolder.h"
#include "support/Printing.h"
#include "support/Program.h"

#include <QFileInfo>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class StagingFlowsTest : public testing::Test, public test::Machine {
protected:
    StagingFlowsTest()
    {
        for (const QString& name : {u"Door/Slam"_s, u"Rain"_s})
            folder.add(name);
        folder.write();
        model = program(folder.path());
    }
    SoundItem item(int index) const { return model->library().items()[index]; }

    test::LibraryFolder folder;
    test::Environment cache{"XDG_CACHE_HOME", QFile::encodeName(folder.filePath(u"cache"_s))};
    std::unique_ptr<AppModel> model;
};

} // namespace

TEST_F(StagingFlowsTest, SoundsAreStagedUnderTheirNames)
{
    const auto staged = stageFiles(*model, {item(0), item(1)});
    ASSERT_EQ(staged.paths.size(), 2);
    EXPECT_EQ(staged.label, u"Door/Slam"_s);
    EXPECT_EQ(QFileInfo(staged.paths[0]).fileName(), u"Door-Slam.wav"_s);
    EXPECT_EQ(QFileInfo(staged.paths[1]).fileName(), u"Rain.wav"_s);
    EXPECT_TRUE(DragStaging::holds(staged.paths[0]));
    EXPECT_EQ(stageFiles(*model, {}), StagedFiles());
}

TEST_F(StagingFlowsTest, ASoundWhoseFileIsGoneIsLeftOut)
{
    QFile::remove(model->library().path(item(0)));
    const auto staged = stageFiles(*model, {item(0), item(1)});
    EXPECT_EQ(staged.paths.size(), 1);
    EXPECT_EQ(staged.label, u"Door/Slam"_s);
}

TEST_F(StagingFlowsTest, ASingleSoundIsDraggedUnderItsName)
{
    const auto drag = dragProvider(*model, item(0));
    EXPECT_EQ(drag.suggestedName, u"Door-Slam"_s);
    EXPECT_TRUE(DragStaging::holds(drag.path));
    test::writeBytes(folder.filePath(u"file"_s), "no folder");
    const test::Environment unusable("XDG_CACHE_HOME", QFile::encodeName(folder.filePath(u"file"_s)));
    const auto original = dragProvider(*model, item(0));
    EXPECT_EQ(original.path, model->library().path(item(0)));
    EXPECT_EQ(original.suggestedName, QFileInfo(item(0).fileName).baseName());
}

TEST_F(StagingFlowsTest, ThePartIsRenderedBeforeItIsDragged)
{
    model->editor().setRange(0.05, 0.15);
    const auto staged = stageSelectionFiles(*model);
    ASSERT_EQ(staged.paths.size(), 1);
    EXPECT_EQ(staged.label, u"Door/Slam"_s);
    EXPECT_EQ(QFileInfo(staged.paths[0]).fileName(), u"Door-Slam.wav"_s);
    const AudioFile file(staged.paths[0]);
    EXPECT_EQ(file.sampleRate(), 48000);
    EXPECT_DOUBLE_EQ(file.durationSeconds(), 0.1);
    EffectSettings effects;
    effects.speed = 2;
    model->editor().setEffects(effects);
    EXPECT_NEAR(AudioFile(stageSelectionFiles(*model).paths.value(0)).durationSeconds(), 0.05, 0.02);
}

TEST_F(StagingFlowsTest, APartThatFailsIsLeftOut)
{
    QFile::remove(model->library().path(item(0)));
    model->editor().setRange(0.05, 0.15);
    EXPECT_EQ(stageSelectionFiles(*model), (StagedFiles{{}, u"Door/Slam"_s}));
    model->setSelection(std::nullopt);
    EXPECT_EQ(stageSelectionFiles(*model), StagedFiles());
}
