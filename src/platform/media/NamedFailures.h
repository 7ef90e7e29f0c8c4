#pragma once

#include "platform/files/Files.h"
#include "platform/media/AudioFile.h"

namespace tonequill {

// Does the work, whose files have names that no user knows: a failure of one of them
// is thrown as one of `name`. Any thread.
template <typename Work>
auto failingAs(const QString& name, const Work& work) -> decltype(work())
{
    try {
        return work();
    } catch (const AudioFileError& error) {
        throw error.named(name);
    } catch (const FileError& error) {
        throw error.named(name);
    }
}

} // namespace tonequill
