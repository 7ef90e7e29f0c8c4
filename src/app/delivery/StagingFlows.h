#pragma once

#include "library/records/SoundItem.h"

#include <QStringList>

// Files under readable names for a drag, complete when these return. What can't be
// staged is left out.
namespace tonequill {

class AppModel;

struct StagedFiles {
    QStringList paths;
    QString label; // of the drag
    bool operator==(const StagedFiles&) const = default;
};
// The parts of the editor, rendered. It blocks, because a drag can't wait.
StagedFiles stageSelectionFiles(const AppModel& model);
StagedFiles stageFiles(const AppModel& model, const QList<SoundItem>& items);

// One sound; the library's own file where it can't be staged.
struct DragFile {
    QString path;
    QString suggestedName; // without an extension
    bool operator==(const DragFile&) const = default;
};
DragFile dragProvider(const AppModel& model, const SoundItem& item);

} // namespace tonequill
