#include "platform/process/ExitDeadline.h"

#include "platform/files/ScratchFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>

using namespace tonequill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(ExitDeadline, LeavesOnlyWhenTheTimeHasPassed)
{
    std::atomic<int> left = 0;
    {
        const ExitDeadline deadline(1h, [&left] { ++left; });
    }
    EXPECT_EQ(left, 0);
    {
        const ExitDeadline deadline(1ms, [&left] { ++left; });
        while (left == 0)
            std::this_thread::yield();
    }
    EXPECT_EQ(left, 1);
}

TEST(ExitDeadline, RemovesWhatIsTemporaryBeforeItLeaves)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"half.wav"_s);
    const auto hang = [&path] {
        const ScratchFile file(path);
        QFile(path).open(QIODevice::WriteOnly);
        const ExitDeadline deadline(1ms);
        std::this_thread::sleep_for(1h); // what the kernel holds
    };
    EXPECT_EXIT(hang(), testing::ExitedWithCode(0), "");
    EXPECT_FALSE(QFile::exists(path));
}
