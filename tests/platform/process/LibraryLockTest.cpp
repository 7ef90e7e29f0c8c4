#include "platform/process/LibraryLock.h"
#include "platform/files/Files.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

const QString kAddress = u"/run/user/1000/tonequill-0123456789abcdef"_s;

class LibraryLockTest : public testing::Test {
protected:
    // Takes and leaves the library, as an owner that listens does.
    void own() const
    {
        LibraryLock first(library);
        EXPECT_TRUE(first.acquire());
        first.publish(kAddress);
        LibraryLock second(library);
        EXPECT_FALSE(second.acquire()); // one owner, whatever stands at the lock's name
    }

    QTemporaryDir folder;
    QString library = folder.filePath(u"x"_s);
    QString lock = library + u".lock"_s;
};

} // namespace

TEST_F(LibraryLockTest, AFileOfTheUsersIsLockedAndNeverWrittenTo)
{
    for (const QByteArray& bytes : {QByteArray("my notes\n"), QByteArray("/run/x"), QByteArray(10'000, '/'),
                                    QByteArray("/tmp/tonequill-0123456789ABCDEF"), QByteArray("/run/tonequill-0123\0", 20)}) {
        test::writeBytes(lock, bytes);
        own();
        EXPECT_EQ(Files::readAll(lock, 1 << 20), bytes);
        EXPECT_FALSE(LibraryLock(library).ownerAddress());
    }
}

TEST_F(LibraryLockTest, WhatAKilledOwnerPublishedIsTakenAway)
{
    test::writeBytes(lock, kAddress.toUtf8());
    EXPECT_EQ(LibraryLock(library).ownerAddress(), kAddress);
    LibraryLock owner(library);
    EXPECT_TRUE(owner.acquire());
    EXPECT_FALSE(LibraryLock(library).ownerAddress());
}

TEST_F(LibraryLockTest, NoLinkIsFollowed)
{
    const QString treasure = folder.filePath(u"treasure"_s);
    test::writeBytes(treasure, kAddress.toUtf8()); // even if it looks like ours
    ASSERT_TRUE(QFile::link(treasure, lock));
    own();
    EXPECT_EQ(Files::readAll(treasure, 1000), kAddress.toUtf8());
    EXPECT_FALSE(LibraryLock(library).ownerAddress());
    ASSERT_TRUE(QFile::remove(treasure));
    own();
    EXPECT_FALSE(QFile::exists(treasure)); // nor is anything made behind it
}

TEST_F(LibraryLockTest, APipeOrAFolderAtItsNameKeepsNobodyWaiting)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(lock).constData(), 0600), 0);
    own();
    ASSERT_TRUE(QFile::remove(lock));
    ASSERT_TRUE(QDir().mkdir(lock));
    own();
}
