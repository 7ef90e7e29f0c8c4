#include "platform/files/FreeRename.h"
#include "platform/files/Files.h"
#include "support/Wav.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(FreeRename, NoWayEverReplacesAFile)
{
    for (const auto way : {FreeRename::inOneStep, FreeRename::byLink, FreeRename::byReservation}) {
        const QTemporaryDir folder;
        const auto at = [&folder](const char* name) { return QFile::encodeName(folder.filePath(QString::fromLatin1(name))); };
        test::writeBytes(folder.filePath(u"new"_s), "new");
        test::writeBytes(folder.filePath(u"taken"_s), "theirs");
        QFile::link(u"/nowhere"_s, folder.filePath(u"link"_s));
        EXPECT_EQ(way(at("new"), at("taken")), EEXIST);
        EXPECT_EQ(way(at("new"), at("link")), EEXIST);
        EXPECT_EQ(way(at("new"), at("new")), EEXIST);
        EXPECT_EQ(way(at("gone"), at("free")), ENOENT);
        EXPECT_EQ(way(at("new"), at("no/folder")), ENOENT);
        EXPECT_EQ(Files::readAll(folder.filePath(u"taken"_s), 10), "theirs");
        EXPECT_EQ(way(at("new"), at("free")), 0);
        EXPECT_EQ(Files::readAll(folder.filePath(u"free"_s), 10), "new");
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::System), (QStringList{u"free"_s, u"link"_s, u"taken"_s}));
    }
}

TEST(FreeRename, AFileSystemThatDoesNotKnowAWayIsNoFailure)
{
    for (const int failure : {EINVAL, ENOSYS, EOPNOTSUPP, EPERM})
        EXPECT_TRUE(FreeRename::isUnknown(failure));
    for (const int failure : {0, EEXIST, ENOENT, EACCES, ENOSPC, EROFS, EXDEV})
        EXPECT_FALSE(FreeRename::isUnknown(failure));
}
