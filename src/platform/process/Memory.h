#pragma once

#include <QtGlobal>

namespace tonequill {

// Bytes that can still be taken without the system having to end a program: what
// the machine and the control groups around this process have left. The largest
// number there is where the system does not tell. Any thread.
qint64 availableMemoryBytes();

} // namespace tonequill
