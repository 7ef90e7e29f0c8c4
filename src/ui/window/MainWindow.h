#pragma once

#include "ui/kit/OpenPanel.h"
#include "ui/kit/ThemeStore.h"
#include "ui/window/WindowModel.h"

#include <QQmlApplicationEngine>

class QQuickWindow;

namespace tonequill {

// The one main window. It shows itself as soon as it is made, and needs a
// QApplication. `app` outlives it.
class MainWindow : public QObject {
    Q_OBJECT

public:
    MainWindow(AppModel& app, Defaults& defaults);
    ~MainWindow() override;

    void bringToFront();
    ThemeStore& themes() { return m_themes; }
    QQuickWindow* window() const { return m_window; }

private:
    ThemeStore m_themes;
    OpenPanel m_addPanel;
    WindowModel m_model;
    QQmlApplicationEngine m_engine; // last, so that QML goes first
    QQuickWindow* m_window = nullptr;
};

// Makes the program's QML modules known to an engine.
void prepareEngine(QQmlEngine& engine);

} // namespace tonequill
