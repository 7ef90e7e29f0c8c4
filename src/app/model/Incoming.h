#pragma once

#include "base/FlowGroup.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUuid>

namespace tonequill {

// A file on its way into the library.
struct IncomingFile {
    QUuid id;
    QString name;
    ProgressPtr progress; // 0 while it waits for its turn
};

// The files that are coming in, in their order: one after the other, in whatever
// portions they were given. One thread.
class Incoming : public QObject {
    Q_OBJECT

public:
    const QList<IncomingFile>& files() const { return m_files; }

    QList<IncomingFile> add(const QStringList& paths);
    // A file that is in, or could not come in, if it is still here.
    void remove(const QUuid& id);
    // Until it is the file's turn. Throws Cancelled if `flows` end.
    QCoro::Task<> turn(FlowGroup& flows, QUuid id) const;

Q_SIGNALS:
    void added(int count); // at the end
    void removed(int index);
    void changed(); // after either

private:
    QList<IncomingFile> m_files;
};

} // namespace tonequill
