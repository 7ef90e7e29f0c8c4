#include "app/delivery/AutoFolderSync.h"
#include "app/library/ImportFlows.h"
#include "support/Await.h"
#include "support/LibraryFolder.h"
#include "support/Printing.h"
#include "support/Program.h"
#include "support/Wav.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kPatienceMs = 20000;

class AutoFolderSyncTest : public testing::Test, public test::Machine {
protected:
    AutoFolderSyncTest()
    {
        for (const QString& name : {u"Door"_s, u"Rain"_s})
            library.add(name).duration = 0.25;
        library.write();
        QDir().mkpath(delivered());
        model = program(library.path());
    }
    QString delivered() const { return library.filePath(u"Movies"_s); }
    QStringList files() const { return QDir(delivered()).entryList(QDir::Files, QDir::Name); }
    bool becomes(const QStringList& names)
    {
        return QTest::qWaitFor([&] { return files() == names && !model->autoFolder().isSyncing(); }, kPatienceMs);
    }
    // Until whatever has been begun is done.
    void rest()
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return !model->autoFolder().isSyncing(); }, kPatienceMs));
    }
    void turnOn()
    {
        model->autoFolder().chooseFolder(delivered());
        model->autoFolder().setEnabled(true);
    }

    test::LibraryFolder library;
    std::unique_ptr<AppModel> model;
};

} // namespace

TEST_F(AutoFolderSyncTest, NothingHappensWhileItIsOff)
{
    watchAutoFolder(*model);
    model->autoFolder().chooseFolder(delivered());
    clock.advance(2s);
    rest();
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(AutoFolderSyncTest, SoundsAreDeliveredASecondAfterTheSwitch)
{
    watchAutoFolder(*model);
    turnOn();
    clock.advance(999ms);
    rest();
    EXPECT_TRUE(files().isEmpty());
    clock.advance(1ms);
    ASSERT_TRUE(becomes({u"Door.wav"_s, u"Rain.wav"_s}));
    EXPECT_EQ(model->notices().text(), u"Copied 2 sounds to Movies."_s);
    EXPECT_FALSE(model->notices().isError());
}

TEST_F(AutoFolderSyncTest, NothingIsSaidWhereNothingWasCopied)
{
    turnOn();
    watchAutoFolder(*model);
    ASSERT_TRUE(becomes({u"Door.wav"_s, u"Rain.wav"_s}));
    clock.advance(10s); // the notice goes
    ASSERT_EQ(model->notices().text(), QString());
    model->library().rename(model->library().items().first(), u"Gate"_s);
    clock.advance(1s);
    ASSERT_TRUE(becomes({u"Gate.wav"_s, u"Rain.wav"_s}));
    EXPECT_EQ(model->notices().text(), QString()); // a rename is no copy
    deleteItems(*model, model->library().items());
    const double before = *model->autoFolder().lastSync();
    clock.advance(1s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return *model->autoFolder().lastSync() > before; }, kPatienceMs));
    EXPECT_EQ(model->notices().text(), QString()); // an empty library is none either
}

TEST_F(AutoFolderSyncTest, ABurstOfChangesLeadsToOneRun)
{
    turnOn();
    watchAutoFolder(*model);
    ASSERT_TRUE(becomes({u"Door.wav"_s, u"Rain.wav"_s}));
    clock.advance(10s);
    int runs = 0;
    bool wasSyncing = false;
    QObject::connect(&model->autoFolder(), &AutoFolder::changed, &model->autoFolder(), [&] {
        const bool isSyncing = model->autoFolder().isSyncing();
        runs += isSyncing && !wasSyncing ? 1 : 0;
        wasSyncing = isSyncing;
    });
    for (int i = 1; i <= 10; ++i) {
        model->library().rename(model->library().items().first(), u"Gate %1"_s.arg(i));
        clock.advance(50ms);
    }
    clock.advance(1s);
    ASSERT_TRUE(becomes({u"Gate 10.wav"_s, u"Rain.wav"_s}));
    clock.advance(5s);
    rest();
    EXPECT_EQ(runs, 1);
}

TEST_F(AutoFolderSyncTest, ANewSoundIsDelivered)
{
    turnOn();
    watchAutoFolder(*model);
    ASSERT_TRUE(becomes({u"Door.wav"_s, u"Rain.wav"_s}));
    test::await(importURLs(*model, {test::writeTone(library.filePath(u"Bell.wav"_s))}));
    clock.advance(1s);
    EXPECT_TRUE(becomes({u"Bell.wav"_s, u"Door.wav"_s, u"Rain.wav"_s}));
}

TEST_F(AutoFolderSyncTest, AFolderThatWentAwayIsToldSoonAfterTheStart)
{
    turnOn();
    ASSERT_TRUE(QDir(delivered()).removeRecursively());
    watchAutoFolder(*model);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model->autoFolder().problem().isEmpty(); }, kPatienceMs));
    EXPECT_EQ(model->autoFolder().problem(), u"Tonequill can't open that folder any more. Choose it again."_s);
    EXPECT_EQ(model->notices().text(), QString());
}

TEST_F(AutoFolderSyncTest, ARunAtTheStartFollowsWhatHappenedMeanwhile)
{
    turnOn();
    watchAutoFolder(*model);
    EXPECT_TRUE(becomes({u"Door.wav"_s, u"Rain.wav"_s}));
}

TEST_F(AutoFolderSyncTest, ARenamedSoundIsARenamedFileAndADeletedFileStaysAway)
{
    turnOn();
    watchAutoFolder(*model);
    ASSERT_TRUE(becomes({u"Door.wav"_s, u"Rain.wav"_s}));
    QFile::remove(delivered() + u"/Rain.wav"_s);
    model->library().rename(model->library().items().first(), u"Gate"_s);
    clock.advance(1s);
    EXPECT_TRUE(becomes({u"Gate.wav"_s}));
    deleteItems(*model, {model->library().items().first()});
    clock.advance(1s);
    rest();
    EXPECT_EQ(files(), QStringList{u"Gate.wav"_s}); // nothing is ever deleted there
}

TEST_F(AutoFolderSyncTest, AChangeDuringARunIsCaughtByTheNext)
{
    turnOn();
    watchAutoFolder(*model);
    ASSERT_TRUE(model->autoFolder().isSyncing());
    model->library().rename(model->library().items().first(), u"Gate"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model->autoFolder().isSyncing(); }, kPatienceMs));
    clock.advance(1s);
    EXPECT_TRUE(becomes({u"Gate.wav"_s, u"Rain.wav"_s}));
}

TEST_F(AutoFolderSyncTest, SoundsThatGoDuringARunDoNoHarm)
{
    turnOn();
    watchAutoFolder(*model);
    ASSERT_TRUE(model->autoFolder().isSyncing());
    deleteItems(*model, model->library().items());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !model->autoFolder().isSyncing(); }, kPatienceMs));
}
