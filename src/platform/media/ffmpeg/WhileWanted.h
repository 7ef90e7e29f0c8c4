#pragma once

#include "base/Progress.h"
#include "platform/media/AudioFile.h"

#include <type_traits>

namespace tonequill {

// Runs what reads a media file for somebody who may stop waiting for it. Once that
// has happened its bytes can't be read any more (RegularFile), so that whatever the
// action then says of the file, a failure or an early end, means nothing: it is
// Cancelled that is thrown. `progress` may be null.
template <typename Action>
std::invoke_result_t<Action> whileWanted(const Progress* progress, const Action& action)
{
    const auto requireWanted = [progress] {
        if (progress && progress->isCancelled())
            throw Cancelled();
    };
    requireWanted();
    try {
        if constexpr (std::is_void_v<std::invoke_result_t<Action>>) {
            action();
            requireWanted();
        } else {
            auto result = action();
            requireWanted();
            return result;
        }
    } catch (const AudioFileError&) {
        requireWanted();
        throw;
    }
}

} // namespace tonequill
