#include "platform/process/Defaults.h"
#include "support/Printing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class DefaultsTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"deep/settings.ini"_s);
};

} // namespace

TEST_F(DefaultsTest, AbsentIsNotFalse)
{
    Defaults defaults(path);
    EXPECT_FALSE(defaults.boolean(u"a"_s));
    EXPECT_FALSE(defaults.text(u"a"_s));
    EXPECT_FALSE(defaults.data(u"a"_s));
    defaults.setBoolean(u"a"_s, false);
    defaults.setText(u"t"_s, u""_s);
    ASSERT_TRUE(defaults.boolean(u"a"_s));
    EXPECT_FALSE(*defaults.boolean(u"a"_s));
    EXPECT_EQ(defaults.text(u"t"_s), u""_s);
}

TEST_F(DefaultsTest, EveryChangeIsOnTheDiskAtOnce)
{
    Defaults defaults(path);
    const QString hard = u"/Users/ä b/, \"x\" \\ % صوت\nx;=[]"_s;
    QByteArray bytes("\0\1\2\xff@Variant", 12);
    defaults.setBoolean(u"yes"_s, true);
    defaults.setText(u"hard"_s, hard);
    defaults.setData(u"bytes"_s, bytes);
    const Defaults again(path);
    EXPECT_EQ(again.boolean(u"yes"_s), true);
    EXPECT_EQ(again.text(u"hard"_s), hard);
    EXPECT_EQ(again.data(u"bytes"_s), bytes);
    defaults.remove(u"hard"_s);
    defaults.remove(u"bytes"_s);
    defaults.remove(u"yes"_s);
    const Defaults empty(path);
    EXPECT_FALSE(empty.text(u"hard"_s));
    EXPECT_FALSE(empty.boolean(u"yes"_s));
}

TEST_F(DefaultsTest, APipeInTheirPlaceIsNeitherReadNorReplaced)
{
    QDir().mkpath(QFileInfo(path).path());
    ASSERT_EQ(::mkfifo(path.toLocal8Bit().constData(), 0600), 0);
    Defaults defaults(path); // would wait for a writer for ever
    defaults.setBoolean(u"a"_s, true);
    EXPECT_FALSE(defaults.isSaved());
    EXPECT_EQ(defaults.boolean(u"a"_s), true);
    EXPECT_FALSE(QFileInfo(path).isFile());
    EXPECT_TRUE(QFileInfo::exists(path));
}

TEST_F(DefaultsTest, ALinkLeadsToThemAndStays)
{
    const QString target = folder.filePath(u"kept elsewhere.ini"_s);
    QDir().mkpath(QFileInfo(path).path());
    ASSERT_TRUE(QFile::link(u"../kept elsewhere.ini"_s, path));
    Defaults(path).setText(u"a"_s, u"first"_s); // nothing was there yet
    EXPECT_TRUE(QFileInfo(path).isSymLink());
    EXPECT_EQ(Defaults(target).text(u"a"_s), u"first"_s);
    Defaults(path).setText(u"a"_s, u"second"_s);
    EXPECT_TRUE(QFileInfo(path).isSymLink());
    EXPECT_EQ(Defaults(target).text(u"a"_s), u"second"_s);
}

TEST_F(DefaultsTest, OnlyTheOwnerMayReadThem)
{
    Defaults(path).setText(u"token"_s, u"x"_s);
    const auto others = QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther;
    EXPECT_FALSE(QFileInfo(path).permissions() & others);
}

TEST_F(DefaultsTest, AFileOfGarbageIsNoFile)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("\x00\xff[[[=%%%\n@Invalid()\nalsoFinalCut=maybe\n", 38));
    file.close();
    Defaults defaults(path);
    EXPECT_FALSE(defaults.text(u"theme"_s));
    defaults.setText(u"theme"_s, u"ocean"_s);
    EXPECT_EQ(Defaults(path).text(u"theme"_s), u"ocean"_s);
}

TEST_F(DefaultsTest, WhatCannotBeWrittenStaysInMemory)
{
    ASSERT_TRUE(QDir().mkpath(path)); // a folder where the file should be
    Defaults defaults(path);
    defaults.setText(u"theme"_s, u"rose"_s);
    EXPECT_EQ(defaults.text(u"theme"_s), u"rose"_s);
    EXPECT_TRUE(QFileInfo(path).isDir());
    EXPECT_FALSE(defaults.isSaved());
    ASSERT_TRUE(QDir().rmdir(path));
    defaults.setBoolean(u"also"_s, true);
    EXPECT_TRUE(defaults.isSaved());
    EXPECT_EQ(Defaults(path).text(u"theme"_s), u"rose"_s);
}

TEST_F(DefaultsTest, NoCopyOfThemIsLeftAndAFailureCanBeTriedAgain)
{
    const QStringList before = QDir(QDir::tempPath()).entryList(QDir::AllEntries | QDir::Hidden);
    ASSERT_TRUE(QDir().mkpath(path));
    Defaults defaults(path);
    defaults.setText(u"token"_s, u"x"_s);
    EXPECT_FALSE(defaults.saveAgain());
    ASSERT_TRUE(QDir().rmdir(path));
    EXPECT_TRUE(defaults.saveAgain());
    EXPECT_TRUE(defaults.isSaved());
    EXPECT_EQ(Defaults(path).text(u"token"_s), u"x"_s);
    EXPECT_EQ(QDir(QDir::tempPath()).entryList(QDir::AllEntries | QDir::Hidden), before);
}
