#include "audio/AudioConversion.h"

#include "audio/SampleMemory.h"
#include "platform/media/StreamConverter.h"

#include <algorithm>

namespace tonequill {

namespace {

constexpr qint64 kBlockFrames = 16'384; // converted at a time
constexpr qint64 kSlackFrames = 2'048;  // the converter may give beyond the ratio

} // namespace

bool isConvertible(AudioFormat format)
{
    return format.sampleRate >= 1 && format.sampleRate <= 1e6 && format.channelCount >= 1 && format.channelCount <= 64;
}

AudioBuffer convertBuffer(AudioBuffer buffer, AudioFormat to, const Progress* progress)
{
    if (buffer.format() == to)
        return buffer;
    Q_ASSERT(isConvertible(buffer.format()) && isConvertible(to));
    const double frames = static_cast<double>(buffer.frameLength()) * to.sampleRate / buffer.sampleRate();
    AudioBuffer result = allocateFrames(to, static_cast<qint64>(frames) + kSlackFrames);
    const auto append = [&result](const AudioBuffer& block) {
        const qint64 start = result.frameLength();
        const qint64 count = std::min(block.frameLength(), result.capacityFrames() - start);
        result.setFrameLength(start + count);
        for (int channel = 0; channel < block.channelCount(); ++channel)
            std::copy_n(block.channel(channel).begin(), count, result.channel(channel).begin() + start);
    };
    StreamConverter converter(buffer.format(), to);
    AudioBuffer block(buffer.format(), std::min(kBlockFrames, buffer.frameLength()));
    for (qint64 first = 0; first < buffer.frameLength(); first += kBlockFrames) {
        if (progress && progress->isCancelled())
            throw Cancelled();
        block.setFrameLength(std::min(kBlockFrames, buffer.frameLength() - first));
        for (int channel = 0; channel < buffer.channelCount(); ++channel)
            std::copy_n(buffer.channel(channel).begin() + first, block.frameLength(), block.channel(channel).begin());
        append(converter.convert(block));
    }
    append(converter.finish());
    return result;
}

} // namespace tonequill
