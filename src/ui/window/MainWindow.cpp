#include "ui/window/MainWindow.h"

#include "ui/window/QmlModules.h"
#include "ui/window/SceneGraph.h"

#include <QQuickWindow>

using namespace Qt::StringLiterals;

namespace tonequill {

void prepareEngine(QQmlEngine& engine)
{
    registerQmlModules();
    engine.addImportPath(u"qrc:/qt/qml"_s);
}

MainWindow::MainWindow(AppModel& app, Defaults& defaults)
    : m_themes(defaults),
      m_addPanel(OpenPanel::Wanted::sounds, u"Add Files"_s, u"Add"_s,
                 [this](const QStringList& paths) { m_model.files()->add(paths); }),
      m_model(app, [this] { m_addPanel.open(m_window); })
{
    m_themes.applyFont();
    SceneGraph::choose();
    // Hinted glyphs instead of distance fields: small text is crisper.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    prepareEngine(m_engine);
    m_engine.setInitialProperties({{u"model"_s, QVariant::fromValue(&m_model)}});
    m_engine.load(QUrl(u"qrc:/qt/qml/Tonequill/Window/Main.qml"_s));
    if (m_engine.rootObjects().isEmpty())
        qFatal("The window could not be made.");
    m_window = qobject_cast<QQuickWindow*>(m_engine.rootObjects().first());
}

MainWindow::~MainWindow() = default;

void MainWindow::bringToFront()
{
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

} // namespace tonequill
