#pragma once

#include "platform/media/AudioFileWriter.h"

namespace tonequill {

// How one kind of file is written.
class AudioFileWriter::Sink {
public:
    virtual ~Sink() = default;
    virtual void write(const AudioBuffer& buffer) = 0;
    virtual void finish() = 0;
};

} // namespace tonequill
