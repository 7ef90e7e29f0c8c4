#include "platform/files/Files.h"
#include "platform/files/FileDescriptor.h"
#include "platform/files/FolderIdentity.h"
#include "platform/files/ScratchFile.h"
#include "support/Printing.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class FilesTest : public testing::Test {
protected:
    QString at(const QString& name) const { return folder.filePath(name); }
    QStringList everything() const
    {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static void put(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    static void write(const QString& path, const QByteArray& bytes) { Files::writeDurably(path, std::span(&bytes, 1)); }

    QTemporaryDir folder;
};

FileError::Reason reasonOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const FileError& error) {
        return error.reason();
    }
    ADD_FAILURE() << "nothing was thrown";
    return FileError::Reason::other;
}

} // namespace

TEST_F(FilesTest, SplitsANameAtItsLastDot)
{
    const std::tuple<QString, QString, QString> cases[] = {
        {u"/a/Take.WAV"_s, u"Take"_s, u"WAV"_s}, {u"/a/b.c.mp3"_s, u"b.c"_s, u"mp3"_s}, {u"/a/none"_s, u"none"_s, {}},
        {u"/a/.hidden"_s, u".hidden"_s, {}},     {u"/a/end."_s, u"end."_s, {}},         {u"/a.b/c"_s, u"c"_s, {}},
    };
    for (const auto& [path, stem, extension] : cases) {
        EXPECT_EQ(Files::stem(path), stem);
        EXPECT_EQ(Files::extension(path), extension);
    }
}

TEST_F(FilesTest, WritesAllChunksAndLeavesNoTemporary)
{
    std::vector<QByteArray> chunks{"[", QByteArray(3 << 20, 'x'), "", QByteArray(700000, 'y'), QByteArray(700000, 'z'), "]"};
    Files::writeDurably(at(u"a"_s), chunks);
    EXPECT_EQ(Files::readAll(at(u"a"_s), 1 << 30), QByteArrayList(chunks.begin(), chunks.end()).join());
    write(at(u"a"_s), "short");
    EXPECT_EQ(Files::readAll(at(u"a"_s), 100), "short");
    EXPECT_EQ(everything(), QStringList{u"a"_s});
}

TEST_F(FilesTest, OwnerOnlyFilesAreNeverReadableByOthers)
{
    const QByteArray secret = "token";
    Files::writeDurably(at(u"s"_s), std::span(&secret, 1), Files::Privacy::ownerOnly);
    struct stat info = {};
    ASSERT_EQ(::stat(QFile::encodeName(at(u"s"_s)).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0600U);
}

TEST_F(FilesTest, AFailedWriteKeepsTheOldFile)
{
    // A folder in the way makes the rename fail, whoever runs the test.
    ASSERT_TRUE(QDir(folder.path()).mkpath(u"taken/inside"_s));
    EXPECT_THROW(write(at(u"taken"_s), "new"), FileError);
    EXPECT_EQ(everything(), QStringList{u"taken"_s});
    EXPECT_EQ(reasonOf([&] { write(at(u"nowhere/x"_s), "new"); }), FileError::Reason::notFound);
}

TEST_F(FilesTest, ErrorsSayWhichFileAndWhy)
{
    EXPECT_EQ(reasonOf([&] { Files::readAll(at(u"missing"_s), 10); }), FileError::Reason::notFound);
    EXPECT_EQ(FileError(FileError::Action::copy, u"/a/Door.wav"_s, ENOSPC).message(),
              u"“Door.wav” couldn't be copied because the disk is full."_s);
    EXPECT_EQ(FileError(FileError::Action::write, u"/a/x"_s, EROFS).message(),
              u"“x” couldn't be written because the disk is read-only."_s);
    EXPECT_EQ(FileError(FileError::Action::read, u"/a/x"_s, EACCES).message(),
              u"“x” couldn't be read because you don't have permission."_s);
}

TEST_F(FilesTest, RenamesOnlyToAFreeName)
{
    write(at(u"a"_s), "a");
    write(at(u"b"_s), "b");
    QFile::link(u"nowhere"_s, at(u"link"_s));
    for (const QString& name : {u"a"_s, u"b"_s, u"link"_s})
        EXPECT_EQ(reasonOf([&] { Files::renameToFree(at(u"a"_s), at(name)); }), FileError::Reason::taken) << name.toStdString();
    EXPECT_EQ(reasonOf([&] { Files::renameToFree(at(u"missing"_s), at(u"c"_s)); }), FileError::Reason::notFound);
    EXPECT_EQ(reasonOf([&] { Files::renameToFree(at(u"a"_s), at(u"c"_s) + QChar(u'\0')); }), FileError::Reason::other);
    EXPECT_EQ(Files::readAll(at(u"b"_s), 10), "b");
    Files::renameToFree(at(u"a"_s), at(u"A"_s));
    Files::renameToFree(at(u"A"_s), at(u"c"_s));
    EXPECT_EQ(everything(), (QStringList{u"b"_s, u"c"_s})); // the link leads nowhere and isn't listed
    EXPECT_EQ(FileError(FileError::Action::rename, u"/a/Dog.wav"_s, EEXIST).message(),
              u"“Dog.wav” couldn't be renamed because there is another file of that name."_s);
}

TEST_F(FilesTest, ReadsOnlyRegularFilesUpToTheLimit)
{
    put(at(u"a"_s), "12345");
    EXPECT_EQ(Files::readAll(at(u"a"_s), 5), "12345");
    EXPECT_THROW(Files::readAll(at(u"a"_s), 4), FileError);
    EXPECT_THROW(Files::readAll(folder.path(), 100), FileError);
    ASSERT_EQ(::mkfifo(QFile::encodeName(at(u"pipe"_s)).constData(), 0600), 0);
    EXPECT_THROW(Files::readAll(at(u"pipe"_s), 100), FileError); // and doesn't wait for a writer
}

TEST_F(FilesTest, CopiesBytesAndShowsProgress)
{
    QByteArray bytes(9 << 20, 'a');
    bytes[bytes.size() - 1] = 'z';
    put(at(u"a"_s), bytes);
    Progress progress;
    Files::copy(at(u"a"_s), at(u"b"_s), &progress);
    EXPECT_EQ(Files::readAll(at(u"b"_s), 1 << 30), bytes);
    EXPECT_EQ(progress.fraction(), 1.0);
    put(at(u"empty"_s), "");
    Files::copy(at(u"empty"_s), at(u"empty2"_s));
    EXPECT_EQ(Files::readAll(at(u"empty2"_s), 10), "");
}

TEST_F(FilesTest, ACopyThatEndsEarlyLeavesNothing)
{
    put(at(u"a"_s), QByteArray(9 << 20, 'a'));
    Progress progress;
    progress.cancel();
    EXPECT_THROW(Files::copy(at(u"a"_s), at(u"b"_s), &progress), Cancelled);
    EXPECT_THROW(Files::copy(at(u"gone"_s), at(u"c"_s)), FileError);
    EXPECT_THROW(Files::copy(folder.path(), at(u"d"_s)), FileError);
    put(at(u"there"_s), "mine");
    EXPECT_THROW(Files::copy(at(u"a"_s), at(u"there"_s)), FileError);
    EXPECT_EQ(Files::readAll(at(u"there"_s), 10), "mine");
    EXPECT_EQ(everything(), (QStringList{u"a"_s, u"there"_s}));
}

TEST_F(FilesTest, TellsWhetherAFolderCanBeEntered)
{
    EXPECT_NO_THROW(Files::requireEnterable(folder.path()));
    EXPECT_EQ(reasonOf([&] { Files::requireEnterable(at(u"gone"_s)); }), FileError::Reason::notFound);
    put(at(u"file"_s), "");
    EXPECT_EQ(reasonOf([&] { Files::requireEnterable(at(u"file"_s)); }), FileError::Reason::noPermission);
}

TEST_F(FilesTest, FindsAFreePath)
{
    EXPECT_EQ(Files::uniqueFreePath(folder.path(), u"Door"_s, u"wav"_s), at(u"Door.wav"_s));
    put(at(u"Door.wav"_s), "");
    EXPECT_EQ(Files::uniqueFreePath(folder.path(), u"Door"_s, u"wav"_s), at(u"Door 2.wav"_s));
    put(at(u"Door 2.wav"_s), "");
    ASSERT_EQ(::symlink("/nowhere", QFile::encodeName(at(u"Door 3.wav"_s)).constData()), 0);
    EXPECT_EQ(Files::uniqueFreePath(folder.path(), u"Door"_s, u"wav"_s), at(u"Door 4.wav"_s));
    EXPECT_EQ(Files::uniqueFreePath(folder.path(), u"100%1 %2"_s, u"wav"_s), at(u"100%1 %2.wav"_s));
}

TEST_F(FilesTest, NamesFitTheFileSystem)
{
    const QString arabic(200, u'ب'); // 400 bytes
    EXPECT_LE(Files::fittingName(arabic, u"wav"_s).toUtf8().size(), 255);
    EXPECT_TRUE(Files::fittingName(arabic, u"wav"_s).endsWith(u"ب.wav"_s));
    for (int i = 0; i < 3; ++i) {
        const QString path = Files::uniqueFreePath(folder.path(), arabic, u"wav"_s);
        put(path, "x");
    }
    EXPECT_EQ(everything().size(), 3);
}

TEST_F(FilesTest, SweepsOnlyItsOwnStrays)
{
    put(at(u".tonequill-1a2b.tmp"_s), "half");
    put(at(u".other.tmp"_s), "x");
    put(at(u"tonequill-1.tmp"_s), "x");
    Files::sweepStrays(folder.path());
    EXPECT_EQ(everything(), (QStringList{u".other.tmp"_s, u"tonequill-1.tmp"_s}));
}

TEST_F(FilesTest, ACopyEndsWithTheBlockInWhichItIsCancelled)
{
    // A file in memory: no file system can share its bytes with the copy instead of writing them.
    constexpr int kMebibytes = 128;
    const int fd = ::memfd_create("source", MFD_CLOEXEC);
    ASSERT_EQ(::ftruncate(fd, kMebibytes << 20), 0);
    bool wasCancelled = false;
    for (int tries = 0; !wasCancelled && tries < 20; ++tries) { // a busy machine may copy all of it meanwhile
        Progress progress;
        double doneBefore = 0;
        std::thread canceller([&] {
            while (progress.fraction() < 0.2)
                std::this_thread::yield();
            progress.cancel();
            doneBefore = progress.fraction();
        });
        try {
            Files::copy(u"/proc/self/fd/%1"_s.arg(fd), at(u"copy"_s), &progress);
        } catch (const Cancelled&) {
            wasCancelled = true;
        }
        canceller.join();
        EXPECT_LE(progress.fraction() - doneBefore, 1.01 / kMebibytes);
        QFile::remove(at(u"copy"_s)); // of one that came to its end
    }
    EXPECT_TRUE(wasCancelled);
    EXPECT_EQ(everything(), QStringList());
    ::close(fd);
}

TEST_F(FilesTest, APathWithAZeroInItMeansNoFile)
{
    put(at(u"notes.txt"_s), "mine");
    put(at(u"other"_s), "other");
    const QString hostile = at(u"notes.txt"_s) + QChar(u'\0') + u"x.wav"_s;
    EXPECT_THROW(Files::readAll(hostile, 100), FileError);
    EXPECT_THROW(write(hostile, "theirs"), FileError);
    EXPECT_THROW(Files::copy(hostile, at(u"copy"_s)), FileError);
    EXPECT_THROW(Files::copy(at(u"other"_s), hostile), FileError);
    EXPECT_THROW(Files::renameToFree(hostile, at(u"renamed"_s)), FileError);
    EXPECT_THROW(Files::renameToFree(at(u"other"_s), hostile), FileError);
    EXPECT_THROW(Files::moveToFree(at(u"other"_s), folder.path(), u"a"_s + QChar(u'\0'), u"wav"_s), FileError);
    EXPECT_THROW(Files::syncFile(hostile), FileError);
    EXPECT_THROW(Files::syncFolder(folder.path() + QChar(u'\0')), FileError);
    EXPECT_THROW(Files::requireEnterable(folder.path() + QChar(u'\0')), FileError);
    EXPECT_THROW(Files::requireReadable(hostile), FileError);
    EXPECT_FALSE(FolderIdentity::of(folder.path() + QChar(u'\0')));
    EXPECT_FALSE(fileSystemAt(folder.path() + QChar(u'\0')));
    EXPECT_FALSE(FileDescriptor(hostile, O_RDONLY).isOpen());
    {
        const ScratchFile scratch(hostile);
    }
    EXPECT_EQ(everything(), (QStringList{u"notes.txt"_s, u"other"_s}));
    EXPECT_EQ(Files::readAll(at(u"notes.txt"_s), 100), "mine");
}

TEST_F(FilesTest, MovesToTheFirstNameThatIsFree)
{
    put(at(u"Door.wav"_s), "mine");
    ASSERT_EQ(::symlink("/nowhere", QFile::encodeName(at(u"Door 2.wav"_s)).constData()), 0);
    put(at(u".a"_s), "a");
    put(at(u".b"_s), "b");
    EXPECT_EQ(Files::moveToFree(at(u".a"_s), folder.path(), u"Door"_s, u"wav"_s), at(u"Door 3.wav"_s));
    EXPECT_EQ(Files::moveToFree(at(u".b"_s), folder.path(), u"Gate"_s, u"wav"_s), at(u"Gate.wav"_s));
    EXPECT_EQ(Files::readAll(at(u"Door.wav"_s), 10), "mine");
    EXPECT_EQ(Files::readAll(at(u"Door 3.wav"_s), 10), "a");
    EXPECT_EQ(reasonOf([&] { Files::moveToFree(at(u"gone"_s), folder.path(), u"x"_s, u"wav"_s); }), FileError::Reason::notFound);
}

TEST_F(FilesTest, TellsWhyAFileCannotBeRead)
{
    put(at(u"file"_s), "x");
    EXPECT_NO_THROW(Files::requireReadable(at(u"file"_s)));
    EXPECT_EQ(reasonOf([&] { Files::requireReadable(at(u"gone"_s)); }), FileError::Reason::notFound);
    EXPECT_EQ(reasonOf([&] { Files::requireReadable(folder.path()); }), FileError::Reason::folder);
    EXPECT_EQ(FileError(FileError::Action::read, u"/a/b"_s, EISDIR).message(), u"“b” couldn't be read because it is a folder."_s);
    EXPECT_EQ(FileError(FileError::Action::read, u"/a/b"_s, EISDIR).named(u"Door/Gate"_s).message(),
              u"“Door/Gate” couldn't be read because it is a folder."_s);
}
