#include "understanding/listening/SoundClassifier.h"

#include "platform/media/AudioFile.h"
#include "platform/media/StreamConverter.h"
#include "platform/process/Defaults.h"
#include "understanding/listening/PatchStream.h"

#include <algorithm>
#include <cmath>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

constexpr double kLeastConfidence = 0.05; // labels must be above it
constexpr qint64 kBlockFrames = 16384;
// 30 dB over full scale: beyond it a float file is broken, and its squares would overflow.
constexpr float kLoudest = 32;

// The frame at `seconds`, which may be anything a caller computes.
qint64 frameAt(double seconds, double sampleRate, qint64 length)
{
    const double frame = std::max(seconds, 0.0) * sampleRate;
    return frame < static_cast<double>(length) ? static_cast<qint64>(frame) : length;
}

AudioBuffer mixedDown(const AudioBuffer& block)
{
    AudioBuffer mono({block.sampleRate(), 1}, block.frameLength());
    mono.setFrameLength(block.frameLength());
    const auto out = mono.channel(0);
    for (int index = 0; index < block.channelCount(); ++index) {
        const auto channel = block.channel(index);
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] += std::clamp(channel[i], -kLoudest, kLoudest);
    }
    for (float& sample : out)
        sample /= static_cast<float>(block.channelCount());
    return mono;
}

// Feeds frames [first, last) of the file to the stream, and zeros up to one second.
void hear(AudioFile& file, qint64 first, qint64 last, PatchStream& patches, const Progress* progress)
{
    StreamConverter converter({file.sampleRate(), 1}, {MelFrontEnd::kSampleRate, 1});
    file.seek(first);
    AudioBuffer block(file.format(), std::min(kBlockFrames, last - first));
    qint64 left = last - first;
    while (left > 0 && file.read(block, std::min(left, block.capacityFrames())) > 0) {
        if (progress && progress->isCancelled())
            throw Cancelled();
        left -= block.frameLength();
        patches.add(converter.convert(mixedDown(block)).channel(0));
    }
    const qint64 missing = static_cast<qint64>(file.sampleRate()) - (last - first);
    if (missing > 0) {
        AudioBuffer zeros({file.sampleRate(), 1}, missing);
        zeros.setFrameLength(missing);
        patches.add(converter.convert(zeros).channel(0));
    }
    patches.add(converter.finish().channel(0));
    patches.finish();
}

} // namespace

ClassifierChoice ClassifierChoice::from(const Defaults& defaults, IfBroken ifBroken)
{
    ClassifierChoice choice;
    choice.ifBroken = ifBroken;
    choice.networkPath = qEnvironmentVariable("TONEQUILL_CLASSIFIER");
    choice.classMapPath = qEnvironmentVariable("TONEQUILL_CLASSIFIER_MAP");
    if (choice.networkPath.isEmpty()) {
        choice.networkPath = defaults.text(u"classifier"_s).value_or(QString());
        choice.classMapPath = defaults.text(u"classifierMap"_s).value_or(QString());
    }
    return choice;
}

std::shared_ptr<const SoundEventModel> SoundClassifier::model() const
{
    const std::scoped_lock lock(m_mutex);
    if (m_model)
        return m_model;
    if (!m_choice.networkPath.isEmpty()) {
        try {
            m_model = SoundEventModel::fromFile(m_choice.networkPath, m_choice.classMapPath);
        } catch (const SoundModelError&) {
            if (m_choice.ifBroken == ClassifierChoice::IfBroken::fail)
                throw;
        }
    }
    if (!m_model)
        m_model = SoundEventModel::builtIn();
    return m_model;
}

std::vector<HeardLabel> SoundClassifier::classify(const QString& path, double start, double end, int top,
                                                  const Progress* progress) const
{
    AudioFile file(path, progress);
    const qint64 first = frameAt(start, file.sampleRate(), file.length());
    const qint64 last = frameAt(end, file.sampleRate(), file.length());
    if (last <= first)
        return {};

    const auto listener = model();
    std::vector<double> best(static_cast<std::size_t>(listener->labels().size()), 0.0);
    PatchStream patches([&](std::span<const float> patch) {
        if (progress && progress->isCancelled())
            throw Cancelled();
        const std::vector<double> confidences = listener->confidences(patch);
        for (std::size_t i = 0; i < best.size(); ++i)
            best[i] = std::max(best[i], confidences[i]);
    });
    hear(file, first, last, patches, progress);
    return strongest(listener->labels(), best, top);
}

std::vector<HeardLabel> SoundClassifier::strongest(const QStringList& labels, const std::vector<double>& best, int top)
{
    std::vector<HeardLabel> heard;
    for (qsizetype i = 0; i < labels.size(); ++i) {
        const double confidence = best[static_cast<std::size_t>(i)];
        if (labels[i] != u"silence" && confidence > kLeastConfidence)
            heard.push_back({labels[i], confidence});
    }
    std::stable_sort(heard.begin(), heard.end(),
                     [](const HeardLabel& a, const HeardLabel& b) { return a.confidence > b.confidence; });
    heard.resize(std::min(heard.size(), static_cast<std::size_t>(std::max(top, 0))));
    return heard;
}

} // namespace tonequill
