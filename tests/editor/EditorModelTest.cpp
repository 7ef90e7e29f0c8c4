#include "editor/EditorModel.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class EditorModelTest : public testing::Test {
protected:
    static SoundItem item(const QString& name, double duration = 1)
    {
        SoundItem sound;
        sound.id = QUuid::createUuid();
        sound.name = name;
        sound.duration = duration;
        return sound;
    }
    void settle()
    {
        for (QDeadlineTimer deadline(20000);
             editor.analysisState() == EditorModel::AnalysisState::loading && !deadline.hasExpired();)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }

    QTemporaryDir folder;
    EditorModel editor;
};

} // namespace

TEST_F(EditorModelTest, StartsEmpty)
{
    EXPECT_FALSE(editor.item());
    EXPECT_EQ(editor.analysisState(), EditorModel::AnalysisState::idle);
    EXPECT_FALSE(editor.loadError());
    EXPECT_EQ(editor.duration(), 0);
}

TEST_F(EditorModelTest, OpensASoundAndAnalysesIt)
{
    const SoundItem sound = item(u"Door"_s, 7);
    editor.load(sound, test::writeTone(folder.filePath(u"a.wav"_s), 0.5));
    EXPECT_EQ(editor.item(), sound);
    settle();
    ASSERT_EQ(editor.analysisState(), EditorModel::AnalysisState::ready);
    EXPECT_EQ(editor.analysis().rms.size(), 50U);
    EXPECT_EQ(editor.duration(), 0.5); // the analysis knows better than the record
    editor.load(std::nullopt, {});
    EXPECT_FALSE(editor.item());
    EXPECT_EQ(editor.analysisState(), EditorModel::AnalysisState::idle);
    EXPECT_EQ(editor.duration(), 0);
}

TEST_F(EditorModelTest, SaysWhyASoundCannotBeOpened)
{
    editor.load(item(u"Gone"_s, 3), folder.filePath(u"gone.wav"_s));
    settle();
    EXPECT_EQ(editor.analysisState(), EditorModel::AnalysisState::idle);
    ASSERT_TRUE(editor.loadError());
    EXPECT_TRUE(editor.loadError()->contains(u"gone.wav"_s)) << editor.loadError()->toStdString();
    EXPECT_EQ(editor.duration(), 3);
    editor.load(item(u"Door"_s), test::writeTone(folder.filePath(u"a.wav"_s)));
    EXPECT_FALSE(editor.loadError());
    settle();
    EXPECT_EQ(editor.analysisState(), EditorModel::AnalysisState::ready);
}

TEST_F(EditorModelTest, DropsTheAnswerOfAnEarlierSound)
{
    const QString slow = test::writeTone(folder.filePath(u"slow.wav"_s), 60, 48000);
    const QString quick = test::writeTone(folder.filePath(u"quick.wav"_s), 0.2);
    editor.load(item(u"Slow"_s), slow);
    editor.load(item(u"Missing"_s), folder.filePath(u"missing.wav"_s));
    editor.load(item(u"Quick"_s), quick);
    int answers = 0;
    QObject::connect(&editor, &EditorModel::analysisChanged, [&] { ++answers; });
    settle();
    for (QDeadlineTimer later(300); !later.hasExpired();)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    EXPECT_EQ(editor.item()->name, u"Quick"_s);
    EXPECT_EQ(editor.duration(), 0.2);
    EXPECT_FALSE(editor.loadError());
    EXPECT_LE(answers, 1); // the earlier ones never showed
}

TEST_F(EditorModelTest, AChangedRecordDoesNotReopenTheSound)
{
    SoundItem sound = item(u"Door"_s);
    editor.load(sound, test::writeTone(folder.filePath(u"a.wav"_s)));
    settle();
    QSignalSpy analyses(&editor, &EditorModel::analysisChanged);
    sound.name = u"Gate"_s;
    editor.refresh(sound);
    EXPECT_EQ(editor.item()->name, u"Gate"_s);
    editor.refresh(item(u"Another"_s));
    EXPECT_EQ(editor.item()->name, u"Gate"_s);
    EXPECT_EQ(analyses.count(), 0);
}
