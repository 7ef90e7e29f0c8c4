#include "audio/AudioRange.h"

#include "audio/SampleMemory.h"

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

AudioBuffer readRange(AudioFile& file, double startSeconds, double endSeconds, AudioFormat delivered)
{
    const qint64 first = frameAt(startSeconds, file);
    const qint64 last = frameAt(endSeconds, file);
    if (last <= first)
        return AudioBuffer(file.format(), 0);
    const auto deliveredFrames = static_cast<double>(last - first) * delivered.sampleRate / file.sampleRate();
    const qint64 converted = file.format() == delivered ? 0 : bytesOf(delivered, static_cast<qint64>(deliveredFrames));
    requireMemory(bytesOf(file.format(), last - first) + converted);
    AudioBuffer range(file.format(), last - first);
    file.seek(first);
    file.read(range, last - first);
    return range;
}

} // namespace tonequill
