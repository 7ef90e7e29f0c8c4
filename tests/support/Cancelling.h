#pragma once

#include "base/Progress.h"

#include <functional>

namespace tonequill::test {

// The share of all its work that a job still does once it is cancelled: the most of
// several runs, of which the first is cancelled before it begins and the others at
// moments all over it. Every run must end in Cancelled, or the test fails.
//
// Work is the processor time of the job's thread, counted from the cancel on: it is
// the same whatever else the machine has to do. REQUIRES: the job takes the same
// course each time, in 20 ms or more, so that moments inside it can be hit.
double workAfterCancel(const std::function<void(Progress& progress)>& job);

// What a job may do at most, of work that lasts many of its blocks: it ends the block,
// gives its memory back and removes the file that it wrote. One that doesn't look
// does nine tenths, from the first of the moments on.
inline constexpr double kSoon = 0.25;

} // namespace tonequill::test
