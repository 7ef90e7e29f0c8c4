#include "audio/analysis/FinePeaks.h"

#include "audio/analysis/MonoEnvelope.h"
#include "platform/media/AudioFile.h"

namespace tonequill {

FinePeaks FinePeaks::read(const QString& path, const Progress& progress)
{
    constexpr qint64 kBlockFrames = 16'384;
    AudioFile file(path, &progress);
    const qint64 hopFrames = std::max<qint64>(file.length() / kMost, 1);
    AudioBuffer block(file.format(), kBlockFrames);
    MonoEnvelope envelope(hopFrames, file.channelCount(), file.length());
    std::vector<const float*> channels(std::size_t(file.channelCount()));
    while (file.read(block) > 0) {
        if (progress.isCancelled())
            throw Cancelled();
        for (int channel = 0; channel < file.channelCount(); ++channel)
            channels[std::size_t(channel)] = block.channel(channel).data();
        envelope.add(channels, block.frameLength());
    }
    envelope.finish();
    return {std::move(envelope.peak()), double(hopFrames) / file.sampleRate()};
}

} // namespace tonequill
