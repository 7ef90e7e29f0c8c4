#pragma once

#include "ui/library/LibraryListModel.h"

#include <QUrl>

#include <functional>

class QQuickItem;

namespace tonequill {

// Files on their way into the library and out of its list: chosen, dropped,
// dragged. One thread.
class LibraryFiles : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the window's model")

public:
    // `askForFiles` shows a file panel and gives what was chosen to add. What is
    // borrowed outlives it.
    LibraryFiles(AppModel& app, const LibraryListModel& list, std::function<void()> askForFiles);

    Q_INVOKABLE void choose() const { m_askForFiles(); }
    void add(const QStringList& paths);

    // Whether a drop of these would bring in anything, and the drop.
    Q_INVOKABLE bool acceptsDrop(const QList<QUrl>& urls) const;
    // Whether the list lights up for it: never for a drag out of this window.
    Q_INVOKABLE bool invitesDrop(const QList<QUrl>& urls) const;
    Q_INVOKABLE void drop(const QList<QUrl>& urls);

    // Drags the sounds that a row of the list means out of `from`.
    Q_INVOKABLE void dragRow(int row, QQuickItem* from);

private:
    AppModel& m_app;
    const LibraryListModel& m_list;
    std::function<void()> m_askForFiles;
};

} // namespace tonequill
