#pragma once

namespace tonequill {

// Makes the types of all QML modules of the program known, in the whole process.
// The build writes it: a new module is among them by itself.
void registerQmlModules();

} // namespace tonequill
