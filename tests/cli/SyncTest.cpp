#include "cli/Cli.h"
#include "platform/process/LibraryLock.h"
#include "support/Wav.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class SyncTest : public testing::Test {
protected:
    SyncTest()
    {
        test::writeTone(cli.at(u"Door.wav"_s), 0.5);
        QDir(cli.home.path()).mkdir(u"Movies"_s);
    }
    QStringList files() const { return QDir(cli.at(u"Movies"_s)).entryList(QDir::Files, QDir::Name); }

    test::Cli cli;
};

} // namespace

TEST_F(SyncTest, CopiesWhatIsMissingOnce)
{
    cli.run({u"add"_s, u"--raw"_s, u"Door.wav"_s});
    const auto first = cli.run({u"sync"_s, u"--folder"_s, u"Movies"_s});
    EXPECT_EQ(first.exitCode, 0) << first.error.toStdString();
    EXPECT_EQ(QString::fromUtf8(first.out), u"Copied 1 sound to Movies.\n"_s);
    EXPECT_EQ(files(), QStringList{u"Door.wav"_s});
    EXPECT_EQ(QString::fromUtf8(cli.run({u"sync"_s}).out), u"Movies is up to date.\n"_s);
    EXPECT_EQ(QString::fromUtf8(cli.run({u"sync"_s, u"--folder"_s, u"Movies/../Movies"_s}).out),
              u"Movies is up to date.\n"_s); // it is that folder already
    EXPECT_EQ(files(), QStringList{u"Door.wav"_s});
    QFile::remove(cli.at(u"Movies/Door.wav"_s));
    EXPECT_EQ(cli.run({u"sync"_s, u"--json"_s}).json()[u"copied"].toInt(-1), 0); // what was removed there stays away
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(SyncTest, AFolderThatIsNotThereIsSaid)
{
    EXPECT_EQ(cli.run({u"sync"_s}).error, u"The Auto Folder is off. Choose one with --folder.\n"_s);
    EXPECT_EQ(cli.run({u"sync"_s, u"--folder"_s, u"nowhere"_s}).exitCode, 1);
    cli.run({u"sync"_s, u"--folder"_s, u"Movies"_s});
    QDir(cli.at(u"Movies"_s)).removeRecursively();
    const auto gone = cli.run({u"sync"_s});
    EXPECT_EQ(gone.exitCode, 1);
    EXPECT_EQ(gone.error, u"Tonequill can't open that folder any more. Choose it again.\n"_s);
}

TEST_F(SyncTest, TheOwnerOfTheLibraryKeepsTheFolderItself)
{
    cli.run({u"add"_s, u"--raw"_s, u"Door.wav"_s});
    LibraryLock owner(cli.library());
    ASSERT_TRUE(owner.acquire());
    EXPECT_EQ(cli.run({u"sync"_s, u"--folder"_s, u"Movies"_s}).exitCode, 3);
    // The settings are the window's, whatever library is meant.
    EXPECT_EQ(cli.run({u"sync"_s, u"--folder"_s, u"Movies"_s, u"--library"_s, cli.at(u"other"_s)}).exitCode, 2);
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(SyncTest, AFolderThatCannotBeRememberedGetsNothing)
{
    cli.run({u"add"_s, u"--raw"_s, u"Door.wav"_s});
    for (int i = 0; i < 2; ++i) {
        const auto full = cli.runOnFullDisk({u"sync"_s, u"--folder"_s, u"Movies"_s}, 0);
        EXPECT_EQ(full.exitCode, 1);
        EXPECT_EQ(full.error, u"The settings could not be saved: the disk may be full or read-only.\n"_s);
        EXPECT_TRUE(files().isEmpty());
    }
    EXPECT_EQ(cli.run({u"sync"_s, u"--folder"_s, u"Movies"_s}).exitCode, 0);
    EXPECT_EQ(files(), QStringList{u"Door.wav"_s});
}
