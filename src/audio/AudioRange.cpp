#include "audio/AudioRange.h"

#include "audio/SampleMemory.h"
#include "platform/AudioFile.h"

#include <algorithm>

namespace tonequill {

namespace {

// The frame in which `seconds` lies, within the file; 0 for what is no number.
qint64 frameAt(double seconds, const AudioFile& file)
{
    const double frame = seconds * file.sampleRate();
    return frame > 0 ? static_cast<qint64>(std::min(frame, static_cast<double>(file.length()))) : 0;
}

} // namespace

AudioBuffer readRange(const QString& path, double startSeconds, double endSeconds)
{
    AudioFile file(path);
    const qint64 first = frameAt(startSeconds, file);
    const qint64 last = frameAt(endSeconds, file);
    if (last <= first)
        return AudioBuffer(file.format(), 0);
    AudioBuffer range = allocateFrames(file.format(), last - first);
    file.seek(first);
    file.read(range, last - first);
    return range;
}

} // namespace tonequill
