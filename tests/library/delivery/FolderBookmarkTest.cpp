#include "library/delivery/FolderBookmark.h"

#include "platform/files/Files.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/vfs.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class FolderBookmarkTest : public testing::Test {
protected:
    FolderBookmarkTest() { QDir().mkpath(folder); }

    // As it is made where folders have nothing lasting.
    QByteArray byItsPath(quint64 fileSystem) const
    {
        return QJsonDocument(QJsonObject{{u"path"_s, folder}, {u"fileSystem"_s, QString::number(fileSystem)}}).toJson();
    }

    QTemporaryDir base;
    QString folder = base.filePath(u"Movies/Sounds"_s);
};

} // namespace

TEST_F(FolderBookmarkTest, FollowsItsFolderAndNoOther)
{
    const auto bookmark = FolderBookmark::make(folder + u"/../Sounds/"_s);
    ASSERT_TRUE(bookmark);
    EXPECT_EQ(FolderBookmark::resolve(*bookmark), folder);
    EXPECT_EQ(FolderBookmark::originalPath(*bookmark), folder);

    const QString beside = base.filePath(u"Movies/New name"_s);
    ASSERT_TRUE(QDir().rename(folder, beside));
    EXPECT_EQ(FolderBookmark::resolve(*bookmark), beside);
    QDir().mkpath(folder); // another folder in its place
    EXPECT_EQ(FolderBookmark::resolve(*bookmark), beside);
    ASSERT_TRUE(QDir().rename(beside, base.filePath(u"elsewhere"_s)));
    EXPECT_THROW(FolderBookmark::resolve(*bookmark), FileError);
}

TEST_F(FolderBookmarkTest, WithNothingLastingItIsThePathOnThatKindOfFileSystem)
{
    struct statfs here = {};
    ASSERT_EQ(::statfs(QFile::encodeName(folder).constData(), &here), 0);
    EXPECT_EQ(FolderBookmark::resolve(byItsPath(quint64(here.f_type))), folder);
    EXPECT_THROW(FolderBookmark::resolve(byItsPath(0x4d44)), FileError); // the empty mount point of a FAT disk
    ASSERT_TRUE(QDir().rmdir(folder));
    EXPECT_THROW(FolderBookmark::resolve(byItsPath(quint64(here.f_type))), FileError);
}

TEST_F(FolderBookmarkTest, WhatIsNoFolderHasNone)
{
    EXPECT_EQ(FolderBookmark::make(base.filePath(u"missing"_s)), std::nullopt);
    EXPECT_EQ(FolderBookmark::make(test::writeTone(base.filePath(u"a.wav"_s))), std::nullopt);
}

TEST_F(FolderBookmarkTest, GarbageLeadsNowhere)
{
    for (const QByteArray& garbage : {QByteArray(), QByteArray("{}"), QByteArray("\xff\xfe"), QByteArray("[1]")})
        EXPECT_THROW(FolderBookmark::resolve(garbage), FileError);
}
