#pragma once

#include <QCoroTask>

// The library's sounds on their way to the Auto Folder.
namespace tonequill {

class AppModel;

// One run; says how many sounds were copied, if any, and returns their number.
QCoro::Task<int> syncAutoFolder(AppModel& model);

// Runs now, and from now on a second after every change of the library or of the
// folder's settings.
void watchAutoFolder(AppModel& model);

} // namespace tonequill
