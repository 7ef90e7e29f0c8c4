// analyze and peaks: what a file sounds like, without a library.

#include "audio/analysis/AudioAnalyzer.h"
#include "audio/analysis/WaveformPeaks.h"
#include "base/JsonWriter.h"
#include "base/NumberText.h"
#include "cli/Command.h"
#include "cli/Options.h"
#include "cli/Terminal.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

int analyze(const QStringList& arguments)
{
    Options options(
        "analyze", "FILE",
        "Analyses a sound, or the sound of a video, without taking it in.\n"
        "JSON: {\"duration\", \"sampleRate\", \"hopSeconds\", \"rms\", \"peak\", \"descriptors\"}, one value of rms and peak "
        "for each hop.");
    options.addJson();
    if (const auto end = options.parse(arguments, 1, 1))
        return *end;
    const QString file = options.positional().first();
    AudioAnalysis analysis;
    try {
        const auto progress = std::make_shared<Progress>();
        const terminal::ProgressLine line(QFileInfo(file).fileName(), progress);
        analysis = AudioAnalyzer::analyze(file, progress.get());
    } catch (const std::exception& error) {
        terminal::complain(messageOf(error));
        return kFailed;
    }
    if (options.json()) {
        JsonWriter json;
        json.beginObject();
        json.key("duration").number(analysis.duration);
        json.key("sampleRate").number(analysis.sampleRate);
        json.key("hopSeconds").number(analysis.hopSeconds);
        json.key("rms").list(analysis.rms);
        json.key("peak").list(analysis.peak);
        json.key("descriptors").list(analysis.descriptors);
        terminal::printJson(json.endObject().bytes());
        return kDone;
    }
    const float peak = analysis.peak.empty() ? 0 : *std::max_element(analysis.peak.begin(), analysis.peak.end());
    terminal::print(u"%1, %2 Hz"_s.arg(terminal::lengthText(analysis.duration)).arg(analysis.sampleRate));
    terminal::print(peak > 0 ? u"Peak %1 dBFS"_s.arg(numberText::fixed(20 * std::log10(double(peak)), 1)) : u"Silent"_s);
    terminal::print(analysis.descriptors.join(u", "_s));
    return kDone;
}

int peaks(const QStringList& arguments)
{
    Options options("peaks", "FILE", "Prints the waveform of a file as peaks in 0 to 1, one a line.\nJSON: an array of numbers.");
    options.addJson();
    options.addValue(u"bins"_s, u"How many peaks (48)."_s, u"number"_s, u"48"_s);
    if (const auto end = options.parse(arguments, 1, 1))
        return *end;
    constexpr int kMostBins = 1'000'000;
    bool isNumber = false;
    const int bins = options.value(u"bins"_s).toInt(&isNumber);
    if (!isNumber || bins < 1 || bins > kMostBins)
        return options.mistake(u"--bins takes a number from 1 to %1."_s.arg(kMostBins));
    const QString file = options.positional().first();
    const std::vector<float> values = WaveformPeaks::compute(file, bins);
    if (values.empty()) {
        terminal::complain(u"“%1” has no waveform to show."_s.arg(QFileInfo(file).fileName()));
        return kFailed;
    }
    if (options.json()) {
        terminal::printJson(JsonWriter().list(values).bytes());
    } else {
        for (const float value : values)
            terminal::print(numberText::fixed(double(value), 4));
    }
    return kDone;
}

} // namespace tonequill::cli
