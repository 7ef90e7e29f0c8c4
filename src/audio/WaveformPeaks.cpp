#include "audio/WaveformPeaks.h"

#include "platform/AudioFile.h"

#include <algorithm>
#include <cmath>

namespace tonequill::WaveformPeaks {

namespace {

constexpr qint64 kBlockFrames = 16'384;

std::size_t binOf(qint64 position, qint64 length, int bins)
{
    const double place = static_cast<double>(position) / static_cast<double>(length) * bins;
    return static_cast<std::size_t>(std::min(static_cast<qint64>(place), qint64(bins) - 1));
}

void gather(AudioFile& file, AudioBuffer& block, std::vector<float>& peaks)
{
    const int bins = static_cast<int>(peaks.size());
    while (file.framePosition() < file.length()) {
        qint64 position = file.framePosition();
        if (file.read(block) == 0)
            return;
        for (qint64 i = 0; i < block.frameLength(); ++i, ++position) {
            float& peak = peaks[binOf(position, file.length(), bins)];
            for (int channel = 0; channel < block.channelCount(); ++channel)
                peak = std::max(peak, std::abs(block.channel(channel)[static_cast<std::size_t>(i)]));
        }
    }
}

} // namespace

std::vector<float> compute(const QString& path, int bins)
{
    if (bins < 1)
        return {};
    try {
        AudioFile file(path);
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
