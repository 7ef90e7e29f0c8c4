#pragma once

#include <QMimeData>
#include <QPixmap>
#include <QStringList>

#include <memory>

class QQuickItem;

// Sounds on their way into another program. One thread: the window's.
namespace tonequill::DragOut {

// What the other program gets: the files as text/uri-list, and nothing else.
std::unique_ptr<QMimeData> filesOf(const QStringList& paths);

// What hangs on the pointer: the label in a pill, at `scale` device pixels.
QPixmap picture(const QString& label, qsizetype count, double scale);

// Drags files that exist already; they are copied where they are dropped. It
// returns when the drag has ended. Nothing happens without a path.
void start(QObject* source, const QStringList& paths, const QString& label, double scale);

// The same from an item, at its window's scale, once the event that began the
// drag has been dealt with: a drag blocks.
void startLater(QQuickItem* from, const QStringList& paths, const QString& label);

} // namespace tonequill::DragOut
