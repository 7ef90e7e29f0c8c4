#include "platform/files/ScratchFile.h"

#include "support/MediaFactory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

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

namespace {

QStringList notes()
{
    return QDir(QDir::tempPath()).entryList({u"tonequill-scratch-*"_s}, QDir::Dirs);
}

// Does the work in a process that is killed then.
template <typename Work>
void inAKilledProcess(const Work& work)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        work();
        ::raise(SIGKILL);
    }
    ::waitpid(child, nullptr, 0);
}

} // namespace

TEST(ScratchFile, WhatAKilledProcessLeavesIsSweptWhereverItLies)
{
    const QTemporaryDir folder;
    const QString mine = folder.filePath(u"Door.wav"_s);
    inAKilledProcess([&] {
        const auto fill = [](const QString& path) {
            if (!QFile(path).open(QIODevice::WriteOnly))
                ::_exit(1);
        };
        const auto* sound = new ScratchFile(ScratchFile::withExtension(u"wav"_s));
        const auto* aside = new ScratchFile(ScratchFile::hiddenIn(folder.path()));
        const auto* settings = new ScratchFile(ScratchFile::privateFolder());
        auto* kept = new ScratchFile(mine);
        for (const QString& path : {sound->path(), aside->path(), settings->path() + u"/settings.ini"_s, kept->path()})
            fill(path);
        kept->keep();
    });
    const QDir temporary(QDir::tempPath());
    const auto left = [&] {
        return temporary.entryList({u"*-*-*-*-*.wav"_s, u"tonequill-folder-*"_s}) +
               QDir(folder.path()).entryList({u".export-*"_s}, QDir::Files | QDir::Hidden);
    };
    EXPECT_EQ(left().size(), 3);
    EXPECT_EQ(notes().size(), 1);
    ScratchFile::sweepStrays();
    EXPECT_TRUE(left().isEmpty()) << left().join(u' ').toStdString();
    EXPECT_TRUE(notes().isEmpty());
    EXPECT_TRUE(QFile::exists(mine)); // it was no longer temporary
}

TEST(ScratchFile, WhatALivingProcessHasStays)
{
    const ScratchFile file = ScratchFile::withExtension(u"wav"_s);
    ASSERT_TRUE(QFile(file.path()).open(QIODevice::WriteOnly));
    EXPECT_EQ(notes().size(), 1);
    inAKilledProcess([] { ScratchFile::sweepStrays(); });
    EXPECT_TRUE(QFile::exists(file.path()));
    EXPECT_EQ(notes().size(), 1);
}

TEST(ScratchFile, NothingIsNotedOnceNothingIsThere)
{
    {
        const ScratchFile one = ScratchFile::withExtension(u"wav"_s);
        const ScratchFile same(one.path());
        const ScratchFile folder = ScratchFile::privateFolder();
        EXPECT_EQ(notes().size(), 1);
        EXPECT_EQ(QFileInfo(folder.path()).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    }
    EXPECT_TRUE(notes().isEmpty());
}

TEST(ScratchFile, NotesThatAreNotOursAreLeftAlone)
{
    const QString folder = QDir::tempPath() + u"/tonequill-scratch-foreign"_s;
    const QString treasure = QDir::tempPath() + u"/treasure"_s;
    ASSERT_TRUE(QDir().mkdir(folder));
    ASSERT_EQ(::chmod(QFile::encodeName(folder).constData(), 0777), 0); // anybody may have put a link there
    ASSERT_TRUE(QFile(treasure).open(QIODevice::WriteOnly));
    ASSERT_TRUE(QFile::link(treasure, folder + u"/1"_s));
    ScratchFile::sweepStrays();
    EXPECT_TRUE(QFile::exists(treasure));
    QDir(folder).removeRecursively();
    QFile::remove(treasure);
}

TEST(ScratchFile, OneOfTwoOwnersMayLetGo)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"two.wav"_s);
    const ScratchFile outer(path);
    {
        ScratchFile inner(path);
        EXPECT_TRUE(QFile(path).open(QIODevice::WriteOnly));
        inner.keep();
    }
    ScratchFile::removeAll();
    EXPECT_FALSE(QFile::exists(path));
}
