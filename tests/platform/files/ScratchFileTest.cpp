#include "platform/files/ScratchFile.h"

#include "support/MediaFactory.h"

#include <QDir>
#include <QFile>

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
