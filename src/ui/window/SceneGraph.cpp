#include "ui/window/SceneGraph.h"

#include <QDir>
#include <QQuickWindow>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

bool isOpen(const QFileInfo& device)
{
    return device.isReadable() && device.isWritable();
}

} // namespace

bool SceneGraph::hasHardware(const QString& devices)
{
#ifdef Q_OS_LINUX
    // The kernel's drivers have a render node each. The two others bring hardware
    // without one: NVIDIA's own driver, and a Linux that is Windows' guest.
    const QFileInfoList nodes = QDir(devices + u"/dri"_s).entryInfoList({u"renderD*"_s}, QDir::System | QDir::Files);
    return std::any_of(nodes.begin(), nodes.end(), isOpen) || isOpen(QFileInfo(devices + u"/nvidiactl"_s)) ||
           isOpen(QFileInfo(devices + u"/dxg"_s));
#else
    Q_UNUSED(devices);
    return true;
#endif
}

void SceneGraph::choose()
{
    if (QQuickWindow::sceneGraphBackend() == u"software"_s)
        return; // chosen already
    constexpr std::array kWishes{"QT_QUICK_BACKEND", "QMLSCENE_DEVICE", "QSG_RHI", "QSG_RHI_BACKEND"};
    if (std::none_of(kWishes.begin(), kWishes.end(), qEnvironmentVariableIsSet) && !hasHardware())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

} // namespace tonequill
