#pragma once

#include "library/records/SoundItem.h"

#include <QCoroTask>
#include <QStringList>
#include <QUuid>

// Sounds on their way into the library and out of it.
namespace tonequill {

class AppModel;

// A file, and the sentence why it couldn't be taken.
struct FailedFile {
    QString path;
    QString sentence;
};

struct ImportOutcome {
    QList<QUuid> added; // in the order of the files
    QList<FailedFile> failed;
};

// Takes files into the library, one after the other, after those that are coming
// in already, and opens the last.
QCoro::Task<ImportOutcome> importURLs(AppModel& model, QStringList paths);

// Removes sounds for good: no question, no undo.
void deleteItems(AppModel& model, const QList<SoundItem>& items);

} // namespace tonequill
