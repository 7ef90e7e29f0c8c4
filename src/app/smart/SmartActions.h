#pragma once

#include "library/records/SoundItem.h"

#include <QCoroTask>
#include <QUuid>

// Names from the language model, or by rule from what is heard where there is none.
namespace tonequill {

class AppModel;

struct NamingOutcome {
    QList<QUuid> renamed;
    bool isAtWork = false; // on all of them already; and nothing was said
};

// Puts a name and tags for the sound before the user, if the sound is still open
// when they are found. The newest question counts.
QCoro::Task<> suggestSmartName(AppModel& model, SoundItem item);
// Gives the sound what is suggested in the editor; an empty name does nothing.
void useSmartSuggestion(AppModel& model, const SoundItem& item);

// Names those sounds whose names say nothing. A sound that is deleted or gets
// another name meanwhile is left as it is, and so is one that is being named. What
// is named keeps its name if it is stopped (NamesBeingFound::stop()).
QCoro::Task<NamingOutcome> smartRename(AppModel& model, QList<SoundItem> items);

} // namespace tonequill
