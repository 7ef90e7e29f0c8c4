#include "platform/files/FolderIdentity.h"

#include "support/Printing.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <linux/magic.h>
#include <unistd.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class FolderIdentityTest : public testing::Test {
protected:
    FolderIdentityTest() { QDir().mkpath(folder); }

    QTemporaryDir base;
    QString folder = base.filePath(u"Sounds"_s);
};

} // namespace

TEST_F(FolderIdentityTest, GoesWithTheFolderAndNotWithTheName)
{
    const auto before = FolderIdentity::of(folder);
    ASSERT_TRUE(before);
    const QString renamed = base.filePath(u"New name"_s);
    ASSERT_TRUE(QDir().rename(folder, renamed));
    EXPECT_TRUE(FolderIdentity::of(renamed) == before);
    ASSERT_TRUE(QDir().mkpath(folder));
    EXPECT_FALSE(FolderIdentity::of(folder) == before);
}

TEST_F(FolderIdentityTest, ALinkIsTheFolderThatItLeadsTo)
{
    const QString link = base.filePath(u"link"_s);
    ASSERT_EQ(::symlink(QFile::encodeName(folder).constData(), QFile::encodeName(link).constData()), 0);
    EXPECT_TRUE(FolderIdentity::of(link) == FolderIdentity::of(folder));
}

TEST_F(FolderIdentityTest, OnlyFoldersHaveOne)
{
    const QString path = base.filePath(u"file"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_FALSE(FolderIdentity::of(path));
    EXPECT_FALSE(FolderIdentity::of(base.filePath(u"missing"_s)));
    EXPECT_FALSE(FolderIdentity::of({}));
}

TEST_F(FolderIdentityTest, TellsTheKindOfFileSystem)
{
    EXPECT_EQ(fileSystemAt(u"/proc"_s), quint64(PROC_SUPER_MAGIC));
    EXPECT_TRUE(fileSystemAt(folder));
    EXPECT_FALSE(fileSystemAt(base.filePath(u"missing"_s)));
}

TEST_F(FolderIdentityTest, KnowsWhereInodesDoNotLast)
{
    EXPECT_TRUE(hasLastingInodes(EXT4_SUPER_MAGIC));
    EXPECT_TRUE(hasLastingInodes(BTRFS_SUPER_MAGIC));
    EXPECT_FALSE(hasLastingInodes(MSDOS_SUPER_MAGIC));
    EXPECT_FALSE(hasLastingInodes(FUSE_SUPER_MAGIC));
    EXPECT_FALSE(hasLastingInodes(0x2011BAB0)); // exFAT
    EXPECT_FALSE(hasLastingInodes(0xFF534D42)); // the folders of Windows networks
    EXPECT_FALSE(hasLastingInodes(0xFE534D42));
}
