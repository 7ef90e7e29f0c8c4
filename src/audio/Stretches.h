#pragma once

#include "base/Progress.h"

#include <QtGlobal>

#include <algorithm>

namespace tonequill {

// Calls visit(first, count) for one stretch of frames after the other, from 0 to
// `frames`, and looks at `progress`, which may be null, before each. However long a
// sound is, a loop over it then ends within a few milliseconds of being cancelled.
// Throws Cancelled.
template <typename Visit>
void forEachStretch(qint64 frames, const Progress* progress, Visit visit)
{
    constexpr qint64 kStretchFrames = 65'536; // 3 ms of the slowest loop there is, that of a voice
    for (qint64 first = 0; first < frames; first += kStretchFrames) {
        if (progress && progress->isCancelled())
            throw Cancelled();
        visit(first, std::min(kStretchFrames, frames - first));
    }
}

} // namespace tonequill
