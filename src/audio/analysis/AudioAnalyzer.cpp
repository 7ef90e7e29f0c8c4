#include "audio/analysis/AudioAnalyzer.h"

#include "audio/analysis/MonoEnvelope.h"
#include "platform/media/AudioFile.h"

#include <algorithm>
#include <cmath>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kHopsPerSecond = 100;
constexpr qint64 kHopsPerBlock = 200;
constexpr qint64 kSamplesPerBlock = 1 << 20; // of all channels: some milliseconds, and 4 MiB

AudioBuffer makeBlock(const AudioFile& file, qint64 hopFrames)
{
    const qint64 hops = std::clamp<qint64>(kSamplesPerBlock / (hopFrames * file.channelCount()), 1, kHopsPerBlock);
    try {
        return AudioBuffer(file.format(), hops * hopFrames);
    } catch (const std::bad_alloc&) {
        throw AnalysisError();
    }
}

} // namespace

AnalysisError::AnalysisError() : UserError(u"This file has no audio to analyze."_s)
{}

std::vector<float> AudioAnalysis::thumbnail(int bins) const
{
    const auto count = static_cast<qint64>(peak.size());
    if (count == 0 || bins == 0)
        return {};
    const double step = static_cast<double>(count) / bins;
    std::vector<float> values(static_cast<std::size_t>(bins));
    for (int bin = 0; bin < bins; ++bin) {
        // Rounding may carry the last step to the end of the list.
        const qint64 low = std::min(static_cast<qint64>(step * bin), count - 1);
        const qint64 high = std::max(std::min(static_cast<qint64>(step * (bin + 1)), count), low + 1);
        const float largest = *std::max_element(peak.begin() + low, peak.begin() + high);
        values[static_cast<std::size_t>(bin)] = std::min(std::sqrt(largest), 1.0F);
    }
    return values;
}

namespace AudioAnalyzer {

AudioAnalysis analyze(const QString& path, Progress* progress)
{
    AudioFile file(path, progress);
    const qint64 hopFrames = std::max<qint64>(static_cast<qint64>(file.sampleRate()) / kHopsPerSecond, 1);
    if (file.length() < 1)
        throw AnalysisError();
    AudioBuffer block = makeBlock(file, hopFrames);

    MonoEnvelope envelope(hopFrames, file.channelCount(), file.length());
    std::vector<const float*> channels(static_cast<std::size_t>(file.channelCount()));
    while (file.framePosition() < file.length()) {
        if (progress && progress->isCancelled())
            throw Cancelled();
        if (file.read(block) == 0)
            break;
        for (int channel = 0; channel < file.channelCount(); ++channel)
            channels[static_cast<std::size_t>(channel)] = block.channel(channel).data();
        envelope.add(channels, block.frameLength());
        if (progress)
            progress->set(static_cast<double>(file.framePosition()) / static_cast<double>(file.length()));
    }
    envelope.finish();

    AudioAnalysis analysis;
    analysis.duration = file.durationSeconds();
    analysis.sampleRate = file.sampleRate();
    analysis.hopSeconds = static_cast<double>(hopFrames) / file.sampleRate();
    analysis.rms = std::move(envelope.rms());
    analysis.peak = std::move(envelope.peak());
    analysis.descriptors = describe(analysis.rms, envelope.crossings(), analysis.duration);
    return analysis;
}

QStringList describe(const std::vector<float>& rms, qint64 crossings, double duration)
{
    QStringList words;
    if (duration < 0.6)
        words << u"short"_s << u"hit"_s;
    else if (duration < 3.0)
        words << u"medium"_s;
    else
        words << u"long"_s << u"ambient"_s;

    const auto largest = std::max_element(rms.begin(), rms.end());
    if (largest != rms.end() && *largest > 0) {
        const auto firstReaching = [&](float part) {
            return std::find_if(rms.begin(), rms.end(), [&](float value) { return value >= part * *largest; });
        };
        const auto attackHops = firstReaching(0.5F) - firstReaching(0.1F);
        if (attackHops <= 3 && duration < 4.0)
            words << u"punchy"_s;
        else if (attackHops >= 20)
            words << u"swell"_s << u"rise"_s;
    }

    // Two crossings make one period.
    const double roughHertz = static_cast<double>(crossings) / std::max(duration, 0.01) * 0.5;
    if (roughHertz > 3000)
        words << u"bright"_s;
    else if (roughHertz < 500)
        words << u"deep"_s << u"low"_s;
    return words;
}

} // namespace AudioAnalyzer
} // namespace tonequill
