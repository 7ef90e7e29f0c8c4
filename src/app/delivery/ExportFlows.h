#pragma once

#include "library/records/SoundItem.h"

#include <QCoroTask>
#include <QStringList>

#include <optional>

// Finished files of the open sound's parts and of whole sounds. Each flow works from
// the open sound, its parts and its effects as they are when it starts, and refuses a
// second run of its kind while it is at work.
namespace tonequill {

class AppModel;

// How such a flow ended.
enum class FlowEnd {
    done,
    nothingToDo, // and nothing was said
    isAtWork,    // another one of its kind; and nothing was said
    failed       // with a sentence; what was finished stays
};

struct AddOutcome {
    FlowEnd end = FlowEnd::nothingToDo;
    QList<SoundItem> added; // in the order of their parts, as far as they are still there
    QString sentence;       // of the failure
    QStringList uncut;      // the names of the parts that it kept from being made
};

struct FilesOutcome {
    FlowEnd end = FlowEnd::nothingToDo;
    QStringList paths; // of the files that are finished
    QString sentence;  // of the failure
};

// Makes library sounds of the editor's parts. A raw import is replaced by them, with what
// was changed in it meanwhile; a sound that was itself cut stays, and so does the import
// when a part fails.
enum class TheSource { isReplaced, stays };
QCoro::Task<AddOutcome> addToLibrary(AppModel& model, TheSource theSource = TheSource::isReplaced);

// Writes the editor's parts, or whole sounds, to the save folder.
QCoro::Task<FilesOutcome> saveToDesktop(AppModel& model);
QCoro::Task<FilesOutcome> saveToDesktop(AppModel& model, QList<SoundItem> items);

// Exports whole sounds beside the library and hands them over. Nothing happens
// where the application isn't installed.
QCoro::Task<FilesOutcome> sendToFinalCut(AppModel& model, QList<SoundItem> items);
bool canSendToFinalCut(const AppModel& model);

// The library's folder in the desktop's file manager.
void showLibraryFolder(const AppModel& model);

} // namespace tonequill
