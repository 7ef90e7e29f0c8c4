#include "platform/process/Memory.h"

#include <gtest/gtest.h>

#include <unistd.h>

using namespace tonequill;

TEST(Memory, TellsWhatIsLeft)
{
    const qint64 machine = qint64(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGESIZE);
    EXPECT_GT(availableMemoryBytes(), qint64(1) << 20);
    EXPECT_LE(availableMemoryBytes(), machine);
}
