// parts, export, render and mix: the sound engine, file by file.

#include "audio/analysis/SmartCutter.h"
#include "audio/effects/EffectRenderer.h"
#include "audio/effects/Mixer.h"
#include "audio/export/AudioExporter.h"
#include "base/JsonWriter.h"
#include "base/NumberText.h"
#include "base/Uuid.h"
#include "cli/Command.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "platform/files/ScratchFile.h"
#include "platform/media/NamedFailures.h"

#include <QFileInfo>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

namespace {

// Cuts get these ramps against clicks; who wants none says 0.
constexpr double kFadeInSeconds = 0.004;
constexpr double kFadeOutSeconds = 0.03;

void addPreset(Options& options, const QString& standard)
{
    QStringList names;
    for (const ExportPreset preset : kExportPresets)
        names << idOf(preset);
    options.addValue(u"preset"_s, u"What the file is: %1 (%2)."_s.arg(names.join(u", "_s), standard), u"name"_s, standard);
}

// Tells what was written, as text or as {"file", "frames", "sampleRate", "channels"}.
int tellWritten(const Options& options, const QString& file, const ExportResult& result)
{
    if (options.json()) {
        JsonWriter json;
        json.beginObject().key("file").text(QFileInfo(file).absoluteFilePath()).key("frames").number(result.frames);
        json.key("sampleRate").number(result.sampleRate).key("channels").number(qint64(result.channels)).endObject();
        terminal::printJson(json.bytes());
    } else {
        const QString length = terminal::lengthText(double(result.frames) / result.sampleRate);
        const QString channels = result.channels == 1 ? u"mono"_s : u"stereo"_s;
        terminal::print(terminal::harmless(u"Wrote %1, %2, %3 Hz, %4"_s.arg(file, length).arg(result.sampleRate).arg(channels)));
    }
    return kDone;
}

// A piece of a mix as the command line names it: FILE@OFFSET[*GAIN].
struct PieceArgument {
    QString file;
    double offset = 0;
    float gain = 1;
};

std::optional<PieceArgument> pieceFrom(const QString& word)
{
    const qsizetype at = word.lastIndexOf(u'@');
    if (at <= 0)
        return std::nullopt;
    const QStringList numbers = word.sliced(at + 1).split(u'*');
    bool isOffset = false;
    bool isGain = true;
    PieceArgument piece{word.first(at), numbers[0].toDouble(&isOffset), 1};
    if (numbers.size() == 2)
        piece.gain = numbers[1].toFloat(&isGain);
    constexpr double kLatest = 24 * 3600; // a day of mix is a slip of the finger
    constexpr float kLoudest = 100'000;   // 100 dB, and a float can't hold much more
    if (numbers.size() > 2 || !isOffset || !isGain || !(piece.offset >= 0 && piece.offset <= kLatest) ||
        !(std::abs(piece.gain) <= kLoudest))
        return std::nullopt;
    return piece;
}

// What was made in a temporary file, whose name says nothing, as a finished file.
ExportResult exportAll(const ScratchFile& made, const QString& output, ExportPreset preset)
{
    return failingAs(QFileInfo(output).fileName(), [&] {
        return AudioExporter::exportRange({made.path(), 0, kToTheEnd, preset, 0, 0}, output);
    });
}

// Runs the work and turns what it throws into a sentence and an exit code.
template <typename Work>
int reporting(Work work)
{
    try {
        return work();
    } catch (const std::exception& error) {
        terminal::complain(messageOf(error));
        return kFailed;
    }
}

} // namespace

int parts(const QStringList& arguments)
{
    Options options(
        "parts", "FILE",
        "Finds the best parts of a recording, best first.\n"
        "JSON: an array of {\"id\", \"start\", \"end\", \"peakDb\", \"score\", \"isBest\", \"isWhole\"}, times in seconds.");
    options.addJson();
    options.addValue(u"max"_s, u"How many parts at most (6)."_s, u"number"_s, u"6"_s);
    if (const auto end = options.parse(arguments, 1, 1))
        return *end;
    bool isNumber = false;
    const int most = options.value(u"max"_s).toInt(&isNumber);
    if (!isNumber || most < 1)
        return options.mistake(u"--max takes a number from 1 on."_s);
    const QString file = options.positional().first();
    return reporting([&] {
        const auto progress = std::make_shared<Progress>();
        std::vector<CutCandidate> found;
        {
            const terminal::ProgressLine line(QFileInfo(file).fileName(), progress);
            found = SmartCutter::candidates(AudioAnalyzer::analyze(file, progress.get()), most);
        }
        if (options.json()) {
            JsonWriter json;
            json.beginArray();
            for (const CutCandidate& part : found) {
                json.beginObject().key("id").text(uuidText(part.id)).key("start").number(part.start).key("end").number(part.end);
                json.key("peakDb").number(part.peakDb).key("score").number(part.score);
                json.key("isBest").boolean(part.isBest).key("isWhole").boolean(part.isWhole).endObject();
            }
            terminal::printJson(json.endArray().bytes());
            return kDone;
        }
        for (const CutCandidate& part : found) {
            const QString mark = part.isBest ? u"best"_s : part.isWhole ? u"whole"_s : QString();
            terminal::print(u"%1 – %2 s  %3 dB  %4"_s.arg(NumberText::fixed(part.start, 3), 9)
                                .arg(NumberText::fixed(part.end, 3), 9)
                                .arg(NumberText::fixed(double(part.peakDb), 1), 6)
                                .arg(mark)
                                .trimmed());
        }
        return kDone;
    });
}

int exportPart(const QStringList& arguments)
{
    Options options("export", "FILE OUTPUT",
                    "Writes a range of a sound as a finished file: 48 kHz, at most two channels. An existing OUTPUT is replaced "
                    "once the new one is complete.\n"
                    "JSON: {\"file\", \"frames\", \"sampleRate\", \"channels\"}.");
    options.addJson();
    options.addRange();
    addPreset(options, idOf(ExportPreset::anyEditor));
    options.addValue(u"fade-in"_s, u"Length of the ramp at the start (0.004)."_s, u"seconds"_s);
    options.addValue(u"fade-out"_s, u"Length of the ramp at the end (0.03)."_s, u"seconds"_s);
    if (const auto end = options.parse(arguments, 2, 2))
        return *end;
    const auto range = options.range();
    const auto preset = exportPresetFromId(options.value(u"preset"_s));
    const auto fadeIn = options.seconds(u"fade-in"_s, kFadeInSeconds);
    const auto fadeOut = options.seconds(u"fade-out"_s, kFadeOutSeconds);
    if (!range || !fadeIn || !fadeOut || *fadeIn < 0 || *fadeOut < 0)
        return options.mistake(u"Times are seconds, such as 1.25."_s);
    if (!preset)
        return options.mistake(u"There is no preset “%1”."_s.arg(options.value(u"preset"_s)));
    const QString output = options.positional()[1];
    return reporting([&] {
        const ExportRequest request{options.positional()[0], range->start, range->end, *preset, *fadeIn, *fadeOut};
        return tellWritten(options, output, AudioExporter::exportRange(request, output));
    });
}

int render(const QStringList& arguments)
{
    Options options("render", "FILE OUTPUT",
                    "Writes a range of a sound with effects. The effects are a JSON object with any of \"speed\", \"pitch\", "
                    "\"gainDb\", \"fadeIn\", \"fadeOut\", \"reverse\", \"echo\", \"reverb\" and \"voice\".\n"
                    "JSON: {\"file\", \"frames\", \"sampleRate\", \"channels\"}.");
    options.addJson();
    options.addRange();
    addPreset(options, idOf(ExportPreset::studio));
    options.addValue(u"effects"_s, u"The effects, such as '{\"reverb\": 0.4}'."_s, u"json"_s, u"{}"_s);
    if (const auto end = options.parse(arguments, 2, 2))
        return *end;
    const auto range = options.range();
    const auto preset = exportPresetFromId(options.value(u"preset"_s));
    const auto effects = EffectSettings::fromJson(options.value(u"effects"_s).toUtf8());
    if (!range)
        return options.mistake(u"Times are seconds, such as 1.25."_s);
    if (!preset)
        return options.mistake(u"There is no preset “%1”."_s.arg(options.value(u"preset"_s)));
    if (!effects)
        return options.mistake(u"The effects are no valid JSON object of effects."_s);
    if (!effects->isRenderable())
        return options.mistake(u"A fade is no shorter than 0 seconds, and a gain no more than 100 dB."_s);
    const QString source = options.positional()[0];
    const QString output = options.positional()[1];
    return reporting([&] {
        const auto progress = std::make_shared<Progress>();
        const terminal::ProgressLine line(QFileInfo(source).fileName(), progress);
        const AudioBuffer sound = EffectRenderer::renderBuffer(source, range->start, range->end, *effects, progress.get());
        const ScratchFile rendered(failingAs(QFileInfo(output).fileName(), [&] { return EffectRenderer::writeTemp(sound); }));
        return tellWritten(options, output, exportAll(rendered, output, *preset));
    });
}

int mix(const QStringList& arguments)
{
    Options options(
        "mix", "OUTPUT PIECE…",
        "Sums files on one timeline. Each piece is FILE@OFFSET or FILE@OFFSET*GAIN: where it starts, in seconds, and a "
        "linear gain. A sum that is too hot is scaled down, never clipped.\n"
        "JSON: {\"file\", \"frames\", \"sampleRate\", \"channels\"}.");
    options.addJson();
    addPreset(options, idOf(ExportPreset::studio));
    if (const auto end = options.parse(arguments, 2, std::numeric_limits<qsizetype>::max()))
        return *end;
    const auto preset = exportPresetFromId(options.value(u"preset"_s));
    if (!preset)
        return options.mistake(u"There is no preset “%1”."_s.arg(options.value(u"preset"_s)));
    const QStringList words = options.positional().sliced(1);
    QList<PieceArgument> wanted;
    for (const QString& word : words) {
        const auto piece = pieceFrom(word);
        if (!piece)
            return options.mistake(u"“%1” is no piece. Write FILE@OFFSET or FILE@OFFSET*GAIN."_s.arg(word));
        wanted << *piece;
    }
    const QString output = options.positional().first();
    return reporting([&] {
        const auto progress = std::make_shared<Progress>();
        const terminal::ProgressLine line(QFileInfo(output).fileName(), progress);
        std::vector<Mixer::Piece> pieces;
        for (const PieceArgument& piece : wanted) {
            progress->set(double(pieces.size()) / double(wanted.size()));
            auto buffer = std::make_shared<const AudioBuffer>(EffectRenderer::read(piece.file, 0, kToTheEnd));
            pieces.push_back({std::move(buffer), piece.offset, piece.gain});
        }
        const auto sum = Mixer::mix(pieces);
        if (!sum)
            throw RenderError::memory();
        const ScratchFile mixed(failingAs(QFileInfo(output).fileName(), [&] { return EffectRenderer::writeTemp(*sum); }));
        return tellWritten(options, output, exportAll(mixed, output, *preset));
    });
}

} // namespace tonequill::cli
