#pragma once

#include "platform/media/AudioFileWriter.h"

namespace tonequill {

// How one kind of file is written.
class AudioFileWriter::Sink {
public:
    virtual ~Sink() = default;
    // Throws AudioFileError (write) and Cancelled. `progress` may be null.
    virtual void write(const AudioBuffer& buffer, const Progress* progress) = 0;
    virtual void finish() = 0;
};

} // namespace tonequill
