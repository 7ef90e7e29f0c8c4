#include <QCoreApplication>
#include <QStandardPaths>

#include <gmock/gmock.h>

// One main for every test program: coroutines need an application object, and
// nothing a test does may reach the user's own folders.
int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
