#pragma once

#include <QString>

// How the window writes times and lengths. Pure; all of them are seconds.
namespace tonequill::TimeText {

// A place in a sound: "0:04", "0:04.5", "1:02:03", with as many decimals as
// places that lie `step` apart need. A time before the start counts as the start.
QString place(double seconds, double step);
// The same in milliseconds: "0:03.610".
QString exactPlace(double seconds);

// The length of a part, where room is short: "1.38s".
QString length(double seconds);
// The duration of a whole sound: "6.98 s"; and roughly, for a list: "7.0 s".
QString duration(double seconds);
QString roughDuration(double seconds);

} // namespace tonequill::TimeText
