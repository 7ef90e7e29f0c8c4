#include "audio/analysis/WaveformPeaks.h"

#include "audio/SampleLoops.h"
#include "platform/media/AudioFile.h"

#include <algorithm>

namespace tonequill::WaveformPeaks {

namespace {

constexpr qint64 kBlockFrames = 16'384;

std::size_t binOf(qint64 position, qint64 length, int bins)
{
    const double place = static_cast<double>(position) / static_cast<double>(length) * bins;
    return static_cast<std::size_t>(std::min(static_cast<qint64>(place), qint64(bins) - 1));
}

// The first position behind `position`, at most `end`, that is in another bin.
qint64 endOfBin(qint64 position, qint64 end, qint64 length, int bins)
{
    const std::size_t bin = binOf(position, length, bins);
    if (binOf(end - 1, length, bins) == bin)
        return end;
    qint64 inside = position;
    qint64 outside = end - 1;
    while (outside - inside > 1) {
        const qint64 middle = inside + (outside - inside) / 2;
        (binOf(middle, length, bins) == bin ? inside : outside) = middle;
    }
    return outside;
}

void gather(AudioFile& file, AudioBuffer& block, std::vector<float>& peaks)
{
    const int bins = static_cast<int>(peaks.size());
    while (file.framePosition() < file.length()) {
        const qint64 start = file.framePosition();
        if (file.read(block) == 0)
            return;
        const qint64 end = start + block.frameLength();
        for (qint64 position = start; position < end;) {
            const qint64 next = endOfBin(position, end, file.length(), bins);
            float& peak = peaks[binOf(position, file.length(), bins)];
            for (int channel = 0; channel < block.channelCount(); ++channel)
                peak = std::max(peak, largestMagnitude(block.channel(channel).data() + (position - start), next - position));
            position = next;
        }
    }
}

} // namespace

std::vector<float> compute(const QString& path, int bins, const Progress* progress)
{
    if (bins < 1)
        return {};
    try {
        AudioFile file(path, progress);
        if (file.length() < 1)
            return {};
        AudioBuffer block(file.format(), kBlockFrames);
        std::vector<float> peaks(static_cast<std::size_t>(bins));
        try {
            gather(file, block, peaks);
        } catch (const AudioFileError&) {
            // What was read until then is drawn.
        }
        const float largest = *std::max_element(peaks.begin(), peaks.end());
        if (largest > 0)
            for (float& peak : peaks)
                peak /= largest;
        return peaks;
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace tonequill::WaveformPeaks
