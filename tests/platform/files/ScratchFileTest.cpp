#include "platform/files/ScratchFile.h"

#include "support/MediaFactory.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(ScratchFile, GoesWithItsOwner)
{
    const QString path = test::makeFile(u"scratch.wav"_s, "sound");
    {
        ScratchFile first(path);
        const ScratchFile owner(std::move(first));
        EXPECT_TRUE(QFile::exists(path));
        EXPECT_EQ(owner.path(), path);
    }
    EXPECT_FALSE(QFile::exists(path));
}

TEST(ScratchFile, RemovesWhatItIsGivenAnotherFor)
{
    const QString one = test::makeFile(u"one.wav"_s, "sound");
    const QString two = test::makeFile(u"two.wav"_s, "sound");
    ScratchFile file(one);
    file = ScratchFile(two);
    EXPECT_FALSE(QFile::exists(one));
    EXPECT_TRUE(QFile::exists(two));
    file = {};
    EXPECT_FALSE(QFile::exists(two));
}

TEST(ScratchFile, HasAFreshNameInTheTemporaryFolder)
{
    const ScratchFile one = ScratchFile::withExtension(u"wav"_s);
    const ScratchFile two = ScratchFile::withExtension(u"wav"_s);
    EXPECT_NE(one.path(), two.path());
    EXPECT_TRUE(one.path().startsWith(QDir::tempPath() + u'/'));
    EXPECT_TRUE(one.path().endsWith(u".wav"_s));
    EXPECT_FALSE(QFile::exists(one.path()));
}

TEST(ScratchFile, StaysOnceItIsKept)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"kept.wav"_s);
    {
        ScratchFile file(path);
        EXPECT_TRUE(QFile(path).open(QIODevice::WriteOnly));
        file.keep();
        ScratchFile::removeAll(); // it is none of them any more
    }
    EXPECT_TRUE(QFile::exists(path));
}

TEST(ScratchFile, AllThatAreThereCanBeRemovedAtOnce)
{
    const QTemporaryDir folder;
    const QString first = folder.filePath(u"first.wav"_s);
    const QString second = folder.filePath(u"second.wav"_s);
    ScratchFile one(first);
    const ScratchFile moved(std::move(one));
    const ScratchFile two(second);
    for (const QString& path : {first, second})
        EXPECT_TRUE(QFile(path).open(QIODevice::WriteOnly));
    ScratchFile::removeAll();
    EXPECT_FALSE(QFile::exists(first) || QFile::exists(second));
}
