#pragma once

#include "ui/kit/OpenPanel.h"
#include "ui/kit/ThemeStore.h"
#include "ui/window/WindowModel.h"
#include "ui/window/WindowPlace.h"

#include <QQmlApplicationEngine>
#include <QTimer>

class QQuickWindow;

namespace tonequill {

// The one main window. It shows itself as soon as it is made, as large as it was
// and, where the platform lets windows say so, where it was. It needs a
// QApplication. `app` and `defaults` outlive it.
class MainWindow : public QObject {
    Q_OBJECT

public:
    MainWindow(AppModel& app, Defaults& defaults);
    ~MainWindow() override;

    void bringToFront();
    ThemeStore& themes() { return m_themes; }
    QQuickWindow* window() const { return m_window; }

private:
    QVariantMap takePlace(); // as the window's properties; none for its own size
    void keepPlace();

    Defaults& m_defaults;
    ThemeStore m_themes;
    OpenPanel m_addPanel;
    WindowModel m_model;
    QTimer m_placeChanges; // a window that is dragged is kept when it has stopped
    WindowPlace m_place;
    QQmlApplicationEngine m_engine; // last, so that QML goes first
    QQuickWindow* m_window = nullptr;
};

// Makes the program's QML modules known to an engine.
void prepareEngine(QQmlEngine& engine);

} // namespace tonequill
