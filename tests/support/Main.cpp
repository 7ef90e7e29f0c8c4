#include "support/OwnFolders.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

// One main for every test program: coroutines need an application object.
int main(int argc, char** argv)
{
    const tonequill::test::OwnFolders folders;
    QCoreApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
