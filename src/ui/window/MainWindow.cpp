#include "ui/window/MainWindow.h"

#include "ui/window/QmlModules.h"
#include "ui/window/SceneGraph.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

const QString kPlaceKey = u"windowPlace"_s;
constexpr int kPlaceRestsMs = 500;

} // namespace

void prepareEngine(QQmlEngine& engine)
{
    registerQmlModules();
    engine.addImportPath(u"qrc:/qt/qml"_s);
}

MainWindow::MainWindow(AppModel& app, Defaults& defaults)
    : m_defaults(defaults),
      m_themes(defaults),
      m_addPanel(OpenPanel::Wanted::sounds, u"Add Files"_s, u"Add"_s,
                 [this](const QStringList& paths) { m_model.files()->add(paths); }),
      m_model(app, [this] { m_addPanel.open(m_window); })
{
    m_themes.applyFont();
    SceneGraph::choose();
    // Hinted glyphs instead of distance fields: small text is crisper.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    prepareEngine(m_engine);
    QVariantMap properties = takePlace();
    properties.insert(u"model"_s, QVariant::fromValue(&m_model));
    m_engine.setInitialProperties(properties);
    m_engine.load(QUrl(u"qrc:/qt/qml/Tonequill/Window/Main.qml"_s));
    if (m_engine.rootObjects().isEmpty())
        qFatal("The window could not be made.");
    m_window = qobject_cast<QQuickWindow*>(m_engine.rootObjects().first());
    m_placeChanges.setSingleShot(true);
    m_placeChanges.setInterval(kPlaceRestsMs);
    connect(&m_placeChanges, &QTimer::timeout, this, &MainWindow::keepPlace);
    for (const auto signal : {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged})
        connect(m_window, signal, &m_placeChanges, qOverload<>(&QTimer::start));
    connect(m_window, &QWindow::visibilityChanged, &m_placeChanges, qOverload<>(&QTimer::start));
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
        if (m_placeChanges.isActive())
            keepPlace();
    });
}

MainWindow::~MainWindow() = default;

QVariantMap MainWindow::takePlace()
{
    const auto kept = WindowPlace::fromText(m_defaults.text(kPlaceKey).value_or(QString()));
    QList<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens << screen->availableGeometry();
    if (!kept || screens.isEmpty())
        return {};
    const Metrics& metrics = m_themes.metrics();
    m_place = kept->fitted(screens, QSize(int(metrics.windowMinWidth()), int(metrics.windowMinHeight())));
    QVariantMap properties{{u"width"_s, m_place.frame.width()}, {u"height"_s, m_place.frame.height()}};
    properties.insert(u"x"_s, m_place.frame.x()); // a platform without places of windows takes no notice
    properties.insert(u"y"_s, m_place.frame.y());
    if (m_place.isMaximized)
        properties.insert(u"visibility"_s, QWindow::Maximized);
    return properties;
}

void MainWindow::keepPlace()
{
    m_placeChanges.stop();
    const QWindow::Visibility visibility = m_window->visibility();
    if (visibility == QWindow::Windowed)
        m_place = {m_window->geometry(), false};
    else if (visibility == QWindow::Maximized && m_place.frame.isValid())
        m_place.isMaximized = true;
    else
        return; // full screen, minimised: it comes back as it was before
    m_defaults.setText(kPlaceKey, m_place.text());
}

void MainWindow::bringToFront()
{
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

} // namespace tonequill
