#include "audio/effects/EffectRenderer.h"

#include "audio/AudioConversion.h"
#include "audio/AudioRange.h"
#include "audio/SampleMemory.h"
#include "audio/Stretches.h"
#include "audio/effects/FeedbackDelay.h"
#include "audio/effects/HallReverb.h"
#include "audio/effects/TimePitch.h"
#include "audio/effects/VoiceDSP.h"
#include "base/Uuid.h"
#include "platform/files/ScratchFile.h"
#include "platform/media/AudioFileWriter.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <cmath>
#include <optional>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

constexpr double kMinRate = 0.25;
constexpr double kMaxRate = 4;

constexpr double kInaudible = 0.001; // less of an effect is none
constexpr FeedbackDelay::Parameters kEcho = {.delaySeconds = 0.24, .feedback = 0.38, .cutoffHz = 7'000, .wet = 0.55};
constexpr double kFullReverbWet = 0.70;
constexpr double kEchoTailSeconds = 1.6;
constexpr double kReverbTailSeconds = 2.2;
constexpr qint64 kExtraFrames = 2'048;
constexpr double kMaxFrames = 28'800'000; // ten minutes
constexpr qint64 kBlockFrames = 48'000;   // between two looks at the progress

constexpr float kTailThreshold = 0.0005F; // -66 dBFS
constexpr qint64 kTailFrames = 480;       // 10 ms kept behind the last audible frame

const QString kTempPrefix = u"render-"_s;
const QString kTempSuffix = u".wav"_s;
constexpr qint64 kStraySeconds = 3'600;

QString sentence(RenderError::Kind kind, const QString& reason)
{
    switch (kind) {
    case RenderError::Kind::engine:
        return u"The audio engine stopped: "_s + reason;
    case RenderError::Kind::empty:
        return u"There is nothing to render here."_s;
    case RenderError::Kind::memory:
        return u"Not enough memory to process this sound."_s;
    }
    Q_UNREACHABLE();
}

// What the callers promise: they clamp what people enter.
void require(bool isTrue, const char* promise)
{
    if (!isTrue)
        qFatal("EffectRenderer: %s", promise);
}

double rateOf(const EffectSettings& settings)
{
    return settings.speed >= kMinRate ? std::min(settings.speed, kMaxRate) : kMinRate; // this also for what is no number
}

qint64 engineFrames(qint64 inputFrames, double rate, bool hasEcho, bool hasReverb)
{
    const double tailSeconds = (hasEcho ? kEchoTailSeconds : 0) + (hasReverb ? kReverbTailSeconds : 0);
    const double frames = tailSeconds * EffectRenderer::format.sampleRate + static_cast<double>(inputFrames) / rate;
    return static_cast<qint64>(std::min(std::trunc(frames) + double(kExtraFrames), kMaxFrames));
}

QDir tempFolder()
{
    // Qt gives nothing at all, which would be the current folder, where TMPDIR
    // names a folder that isn't there.
    const QString path = QDir::tempPath();
    return QDir(path.isEmpty() ? u"/tmp"_s : path);
}

// Echo, then reverb, in place.
void addSpace(AudioBuffer& buffer, std::optional<double> echo, std::optional<double> reverb, Progress* progress)
{
    std::optional<std::array<FeedbackDelay, 2>> delay;
    if (echo) {
        FeedbackDelay::Parameters parameters = kEcho;
        parameters.wet *= std::min(*echo, 1.0);
        delay.emplace(std::array{FeedbackDelay(parameters), FeedbackDelay(parameters)});
    }
    std::optional<HallReverb> hall;
    if (reverb)
        hall.emplace(std::min(*reverb, 1.0) * kFullReverbWet);
    for (qint64 first = 0; first < buffer.frameLength(); first += kBlockFrames) {
        if (progress && progress->isCancelled())
            throw Cancelled();
        const auto start = static_cast<std::size_t>(first);
        const auto count = static_cast<std::size_t>(std::min(kBlockFrames, buffer.frameLength() - first));
        const auto left = buffer.channel(0).subspan(start, count);
        const auto right = buffer.channel(1).subspan(start, count);
        if (delay) {
            (*delay)[0].process(left);
            (*delay)[1].process(right);
        }
        if (hall)
            hall->process(left, right);
    }
}

} // namespace

RenderError::RenderError(Kind kind, const QString& reason) : UserError(sentence(kind, reason)), m_kind(kind)
{}

RenderError RenderError::engine(const QString& reason)
{
    return {Kind::engine, reason};
}

RenderError RenderError::empty()
{
    return {Kind::empty, {}};
}

RenderError RenderError::memory()
{
    return {Kind::memory, {}};
}

AudioBuffer EffectRenderer::renderBuffer(const QString& path, double startSeconds, double endSeconds,
                                         const EffectSettings& settings, Progress* progress)
{
    AudioBuffer buffer = read(path, startSeconds, endSeconds, progress);
    if (settings.reverse)
        reverse(buffer, progress);
    if (settings.needsEngine())
        buffer = runEngine(buffer, settings, progress);
    if (addsCharacter(settings.voice))
        VoiceDSP::apply(settings.voice, buffer, progress);
    applyGainAndFades(buffer, settings, progress);
    if (progress)
        progress->set(1);
    return buffer;
}

QString EffectRenderer::render(const QString& path, double startSeconds, double endSeconds, const EffectSettings& settings,
                               Progress* progress)
{
    return writeTemp(renderBuffer(path, startSeconds, endSeconds, settings, progress), progress);
}

AudioBuffer EffectRenderer::read(const QString& path, double startSeconds, double endSeconds, const Progress* progress)
{
    require(std::isfinite(startSeconds) && std::isfinite(endSeconds), "a range is finite");
    try {
        AudioFile file(path, progress);
        AudioBuffer range = readRange(file, startSeconds, endSeconds, format);
        if (range.frameLength() == 0)
            throw RenderError::empty();
        AudioBuffer buffer = convertBuffer(std::move(range), format, progress);
        if (buffer.frameLength() == 0) // less than half a frame at this rate
            throw RenderError::empty();
        return buffer;
    } catch (const std::bad_alloc&) {
        throw RenderError::memory();
    }
}

void EffectRenderer::reverse(AudioBuffer& buffer, const Progress* progress)
{
    forEachStretch(buffer.frameLength() / 2, progress, [&](qint64 first, qint64 count) {
        for (int channel = 0; channel < buffer.channelCount(); ++channel) {
            const auto samples = buffer.channel(channel);
            std::swap_ranges(samples.begin() + first, samples.begin() + first + count, samples.rbegin() + first);
        }
    });
}

AudioBuffer EffectRenderer::runEngine(const AudioBuffer& buffer, const EffectSettings& settings, Progress* progress)
{
    Q_ASSERT(buffer.format() == format);
    const double rate = rateOf(settings);
    const bool hasEcho = settings.echo > kInaudible;
    const bool hasReverb = settings.reverb > kInaudible;
    try {
        const qint64 target = engineFrames(buffer.frameLength(), rate, hasEcho, hasReverb);
        AudioBuffer output = allocateFrames(format, target);
        output.setFrameLength(target);
        TimePitch::apply(buffer, rate, settings.totalPitch(), output, progress);
        if (hasEcho || hasReverb)
            addSpace(output, hasEcho ? std::optional(settings.echo) : std::nullopt,
                     hasReverb ? std::optional(settings.reverb) : std::nullopt, progress);
        trimSilence(output, progress);
        return output;
    } catch (const std::bad_alloc&) {
        throw RenderError::memory();
    } catch (const std::exception& error) {
        throw RenderError::engine(QString::fromUtf8(error.what()));
    }
}

void EffectRenderer::trimSilence(AudioBuffer& buffer, const Progress* progress)
{
    const qint64 frames = buffer.frameLength();
    qint64 kept = std::min<qint64>(frames, 1);
    forEachStretch(frames, progress, [&](qint64 first, qint64 count) {
        const qint64 end = frames - first; // the last stretch comes first
        if (kept >= end)
            return;
        for (int channel = 0; channel < buffer.channelCount(); ++channel) {
            const auto samples = buffer.channel(channel);
            for (qint64 frame = end; frame > std::max(kept, end - count); --frame)
                if (std::abs(samples[static_cast<std::size_t>(frame - 1)]) >= kTailThreshold)
                    kept = frame;
        }
    });
    buffer.setFrameLength(std::min(kept + kTailFrames, frames));
}

void EffectRenderer::applyGainAndFades(AudioBuffer& buffer, const EffectSettings& settings, const Progress* progress)
{
    require(settings.fadeIn >= 0 && settings.fadeOut >= 0, "a fade is a number and not negative");
    const auto frames = static_cast<double>(buffer.frameLength());
    const auto gain = static_cast<float>(std::pow(10.0, settings.gainDb / 20));
    const auto in = static_cast<qint64>(std::min(settings.fadeIn * format.sampleRate, frames));
    const auto out = static_cast<qint64>(std::min(settings.fadeOut * format.sampleRate, frames));
    for (int channel = 0; channel < buffer.channelCount(); ++channel) {
        float* const samples = buffer.channel(channel).data();
        if (gain != 1)
            forEachStretch(buffer.frameLength(), progress, [&](qint64 first, qint64 count) {
                for (qint64 i = first; i < first + count; ++i)
                    samples[i] *= gain;
            });
        forEachStretch(in, progress, [&](qint64 first, qint64 count) {
            for (qint64 i = first; i < first + count; ++i)
                samples[i] *= static_cast<float>(i) / static_cast<float>(in);
        });
        forEachStretch(out, progress, [&](qint64 first, qint64 count) {
            for (qint64 j = first; j < first + count; ++j)
                samples[buffer.frameLength() - 1 - j] *= static_cast<float>(j) / static_cast<float>(out);
        });
    }
}

QString EffectRenderer::writeTemp(const AudioBuffer& buffer, const Progress* progress)
{
    const QString path = tempFolder().filePath(kTempPrefix + uuidText(QUuid::createUuid()) + kTempSuffix);
    ScratchFile file(path);
    AudioFileWriter writer(path, buffer.format(), AudioEncoding::wavFloat32);
    writer.write(buffer, progress);
    writer.finish();
    file.keep();
    return path;
}

void EffectRenderer::sweepStrays()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const auto files =
        tempFolder().entryInfoList({kTempPrefix + u'*' + kTempSuffix}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo& file : files) {
        const QString name = file.fileName();
        const auto id = QStringView(name).sliced(kTempPrefix.size()).chopped(kTempSuffix.size());
        if (uuidFromText(id) && file.lastModified().secsTo(now) > kStraySeconds)
            QFile::remove(file.filePath());
    }
}

} // namespace tonequill
