#pragma once

#include "library/records/SoundItem.h"

#include <QCoroTask>
#include <QStringList>
#include <QUuid>

// Sounds on their way into the library and out of it.
namespace tonequill {

class AppModel;

// A file, the sentence that the user is told of it, and what is really the matter: the
// sentence says of a folder, too, that it is not a format.
struct FailedFile {
    QString path;
    QString sentence;
    QString cause;
};

struct ImportOutcome {
    QList<QUuid> added; // in the order of the files
    QList<FailedFile> failed;
};

// Takes files into the library, one after the other, after those that are coming
// in already, and opens the last.
QCoro::Task<ImportOutcome> importURLs(AppModel& model, QStringList paths);

// Removes sounds for good: no question, no undo. They leave the list at once. True when
// that is on the disk; where it can't be written they come back, and the user is told.
QCoro::Task<bool> deleteItems(AppModel& model, QList<SoundItem> items);

} // namespace tonequill
