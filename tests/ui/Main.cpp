#include <QApplication>
#include <QQuickWindow>
#include <QStandardPaths>

#include <gmock/gmock.h>

// The window's tests need fonts and a scene graph; the software one draws the
// same on every machine.
int main(int argc, char** argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
