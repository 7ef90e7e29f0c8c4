#include "audio/export/AudioExporter.h"

#include "audio/AudioConversion.h"
#include "audio/AudioRange.h"
#include "audio/SampleLoops.h"
#include "audio/Stretches.h"
#include "platform/files/ScratchFile.h"
#include "platform/files/SystemPath.h"
#include "platform/media/AudioFileWriter.h"
#include "platform/media/NamedFailures.h"

#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

// This file is compiled with -O3: its loops are written to be vectorised (see
// bench/EngineExport.cpp).

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

constexpr double kDeliveryRate = 48'000;
constexpr int kMaxDeliveryChannels = 2;

constexpr float kPeakTarget = 0.8912509F; // -1 dBFS
constexpr float kMaxGain = 16;            // +24 dB
constexpr float kSilentPeak = 0.0001F;    // -80 dBFS

constexpr int kMonoBitRate = 128'000;
constexpr int kStereoBitRate = 256'000;

struct PresetRow {
    ExportPreset preset;
    const char16_t* id;
    const char16_t* title;
    const char16_t* description;
    const char16_t* fileExtension;
};

constexpr std::array kPresetRows = {
    PresetRow{ExportPreset::anyEditor, u"anyEditor", u"Any editor",
              u"WAV, 48 kHz, 24-bit, peaks at -1 dB. Works in Final Cut, Premiere, DaVinci, CapCut.", u"wav"},
    PresetRow{ExportPreset::shortForm, u"shortForm", u"Short-form video",
              u"AAC (.m4a), 48 kHz, peaks at -1 dB. Small files for phone editors and uploads.", u"m4a"},
    PresetRow{ExportPreset::studio, u"studio", u"Studio original", u"WAV, 48 kHz, 24-bit, original level. No loudness changes.",
              u"wav"},
};

static_assert(std::equal(kPresetRows.begin(), kPresetRows.end(), kExportPresets.begin(), kExportPresets.end(),
                         [](const PresetRow& row, ExportPreset preset) { return row.preset == preset; }),
              "a row's place is its preset");

const PresetRow& rowOf(ExportPreset preset)
{
    return kPresetRows[static_cast<std::size_t>(preset)];
}

QString sentence(ExportError::Kind kind, const QString& reason)
{
    switch (kind) {
    case ExportError::Kind::conversionFailed:
        return u"Could not convert the audio: "_s + reason;
    case ExportError::Kind::emptyRange:
        return u"The selected part is empty."_s;
    case ExportError::Kind::bufferFailed:
        return u"Not enough memory to process this sound."_s;
    }
    Q_UNREACHABLE();
}

// Frames of a fade: no more than half of the sound, so that two never overlap.
qint64 fadeFrames(double seconds, const AudioBuffer& buffer)
{
    const double frames = seconds * buffer.sampleRate();
    const qint64 half = buffer.frameLength() / 2;
    return frames > 0 ? static_cast<qint64>(std::min(frames, static_cast<double>(half))) : 0;
}

float peakOf(const AudioBuffer& buffer, const Progress* progress)
{
    float peak = 0;
    forEachStretch(buffer.frameLength(), progress, [&](qint64 first, qint64 count) {
        for (int channel = 0; channel < buffer.channelCount(); ++channel)
            peak = std::max(peak, largestMagnitude(buffer.channel(channel).data() + first, count));
    });
    return peak;
}

// Frame i of the fade is i of `frames` loud; it begins at `samples` and goes in
// the direction of `step`.
void fade(float* samples, qint64 step, qint64 frames, qint64 first, qint64 count)
{
    for (qint64 i = first; i < first + count; ++i)
        samples[step * i] *= static_cast<float>(i) / static_cast<float>(frames);
}

void writeFile(const AudioBuffer& buffer, const QString& path, AudioEncoding encoding, int bitRate, const Progress* progress)
{
    const QFileInfo destination(path);
    // In the same folder, so that renaming it is one step: an older file stays until this one is complete.
    ScratchFile aside = ScratchFile::hiddenIn(destination.absolutePath());
    const auto write = [&] {
        AudioFileWriter writer(aside.path(), buffer.format(), encoding, bitRate);
        writer.write(buffer, progress);
        writer.finish();
    };
    failingAs(destination.fileName(), write);
    if (::rename(systemPath(aside.path()).constData(), systemPath(path).constData()) != 0)
        throw AudioFileError(AudioFileError::Kind::write, path, QString::fromLocal8Bit(std::strerror(errno)));
    aside.keep();
}

} // namespace

QString idOf(ExportPreset preset)
{
    return QString::fromUtf16(rowOf(preset).id);
}

std::optional<ExportPreset> exportPresetFromId(QStringView id)
{
    for (const PresetRow& row : kPresetRows)
        if (id == QStringView(row.id))
            return row.preset;
    return std::nullopt;
}

QString titleOf(ExportPreset preset)
{
    return QString::fromUtf16(rowOf(preset).title);
}

QString descriptionOf(ExportPreset preset)
{
    return QString::fromUtf16(rowOf(preset).description);
}

QString fileExtensionOf(ExportPreset preset)
{
    return QString::fromUtf16(rowOf(preset).fileExtension);
}

ExportError::ExportError(Kind kind, const QString& reason) : UserError(sentence(kind, reason)), m_kind(kind)
{}

ExportError ExportError::conversionFailed(const QString& reason)
{
    return {Kind::conversionFailed, reason};
}

ExportError ExportError::emptyRange()
{
    return {Kind::emptyRange, {}};
}

ExportError ExportError::bufferFailed()
{
    return {Kind::bufferFailed, {}};
}

ExportResult AudioExporter::exportRange(const ExportRequest& request, const QString& path, const Progress* progress)
{
    try {
        AudioFile source(request.source, progress);
        const int sourceChannels = source.channelCount();
        const AudioFormat target{kDeliveryRate, std::min(sourceChannels, kMaxDeliveryChannels)};
        AudioBuffer part = readRange(source, request.start, request.end, target);
        if (part.frameLength() == 0)
            throw ExportError::emptyRange();
        part = convert(std::move(part), target, progress);
        if (part.frameLength() == 0) // less than half a frame at this rate
            throw ExportError::emptyRange();
        process(part, request.preset, request.fadeIn, request.fadeOut, progress);
        if (request.preset == ExportPreset::shortForm)
            writeFile(part, path, AudioEncoding::m4aAac, sourceChannels == 1 ? kMonoBitRate : kStereoBitRate, progress);
        else
            writeFile(part, path, AudioEncoding::wavInt24, 0, progress);
        return {part.frameLength(), part.sampleRate(), part.channelCount()};
    } catch (const std::bad_alloc&) {
        throw ExportError::bufferFailed();
    }
}

AudioBuffer AudioExporter::convert(AudioBuffer buffer, AudioFormat to, const Progress* progress)
{
    if (buffer.format() == to)
        return buffer;
    if (!isConvertible(buffer.format()) || !isConvertible(to))
        throw ExportError::conversionFailed(u"unsupported format"_s);
    try {
        return convertBuffer(std::move(buffer), to, progress);
    } catch (const std::bad_alloc&) {
        throw ExportError::bufferFailed();
    }
}

void AudioExporter::process(AudioBuffer& buffer, ExportPreset preset, double fadeIn, double fadeOut, const Progress* progress)
{
    const qint64 inFrames = fadeFrames(fadeIn, buffer);
    const qint64 outFrames = fadeFrames(fadeOut, buffer);
    for (int channel = 0; channel < buffer.channelCount(); ++channel) {
        const std::span<float> samples = buffer.channel(channel);
        forEachStretch(inFrames, progress, [&](qint64 first, qint64 count) { fade(samples.data(), 1, inFrames, first, count); });
        forEachStretch(outFrames, progress, [&](qint64 first, qint64 count) {
            fade(samples.data() + samples.size() - 1, -1, outFrames, first, count);
        });
    }
    const float peak = peakOf(buffer, progress);
    if (preset == ExportPreset::studio || !(peak > kSilentPeak))
        return;
    const float gain = std::min(kPeakTarget / peak, kMaxGain);
    forEachStretch(buffer.frameLength(), progress, [&](qint64 first, qint64 count) {
        for (int channel = 0; channel < buffer.channelCount(); ++channel) {
            float* const samples = buffer.channel(channel).data() + first;
            for (qint64 i = 0; i < count; ++i)
                samples[i] *= gain;
        }
    });
}

} // namespace tonequill
