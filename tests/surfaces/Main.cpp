#include "support/OwnFolders.h"
#include "surfaces/Fixture.h"
#include "ui/window/MainWindow.h"

#include <QApplication>
#include <QQuickWindow>
#include <QtQuickTest>

using namespace tonequill;

namespace {

// Gives each test file's engine the module and the fixture.
class Setup : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine* engine)
    {
        prepareEngine(*engine);
        QQmlEngine::setObjectOwnership(&m_fixture, QQmlEngine::CppOwnership);
        qmlRegisterSingletonInstance("Tonequill.Test", 1, 0, "Fixture", &m_fixture);
    }
    void cleanupTestCase() { m_fixture.stop(); }

private:
    test::Fixture m_fixture;
};

} // namespace

int main(int argc, char** argv)
{
    const test::OwnFolders folders;
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    QTEST_SET_MAIN_SOURCE_PATH
    Setup setup;
    return quick_test_main_with_setup(argc, argv, "surfaces", TONEQUILL_SURFACES, &setup);
}

#include "Main.moc"
