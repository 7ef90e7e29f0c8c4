#include "platform/files/FileDescriptor.h"

#include "support/MediaFactory.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

bool isOpenInTheSystem(int fd)
{
    return ::fcntl(fd, F_GETFD) != -1;
}

} // namespace

TEST(FileDescriptor, IsClosedWithItsOwner)
{
    const QString path = test::makeFile(u"descriptor.txt"_s, "text");
    int fd = -1;
    {
        FileDescriptor first(path, O_RDONLY);
        fd = first.get();
        const FileDescriptor owner(std::move(first));
        EXPECT_EQ(owner.get(), fd);
        EXPECT_FALSE(first.isOpen()); // NOLINT(bugprone-use-after-move): this is what it is about
        EXPECT_TRUE(isOpenInTheSystem(fd));
    }
    EXPECT_FALSE(isOpenInTheSystem(fd));
}

TEST(FileDescriptor, ClosesWhatItIsGivenAnotherFor)
{
    const QString path = test::makeFile(u"descriptor.txt"_s, "text");
    FileDescriptor file(path, O_RDONLY);
    const int before = file.get();
    file = FileDescriptor(path, O_RDONLY);
    EXPECT_NE(file.get(), before);
    EXPECT_FALSE(isOpenInTheSystem(before));
    EXPECT_TRUE(isOpenInTheSystem(file.get()));
}

TEST(FileDescriptor, IsNotInherited)
{
    const FileDescriptor file(test::makeFile(u"descriptor.txt"_s, "text"), O_RDONLY);
    EXPECT_EQ(::fcntl(file.get(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST(FileDescriptor, LeavesTheReasonOfAFailure)
{
    FileDescriptor file(test::scratchPath(u"nothing/here"_s), O_RDONLY);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(file.isOpen());
    EXPECT_TRUE(file.close()) << "nothing is open, so nothing can fail";
}

TEST(FileDescriptor, TellsAWriteThatFailedLate)
{
    FileDescriptor file(test::makeFile(u"descriptor.txt"_s, "text"), O_RDONLY);
    ASSERT_EQ(::close(file.get()), 0); // the system's close fails from now on
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(file.isOpen());
    EXPECT_TRUE(file.close());
}
