// listen: what a recording sounds like, in labels and in words.

#include "base/JsonWriter.h"
#include "cli/Command.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "platform/media/AudioFile.h"
#include "platform/process/Defaults.h"
#include "understanding/listening/SoundClassifier.h"
#include "understanding/naming/SoundNamer.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

namespace {

// The part of the range that the file has, in seconds.
double lengthWithin(const QString& path, const Range& range)
{
    const AudioFile file(path);
    return std::min(range.end, file.durationSeconds()) - std::max(range.start, 0.0);
}

void printHeard(const SoundHeard& heard)
{
    if (!heard.name.isEmpty())
        terminal::print(heard.name);
    terminal::print(heard.headline);
    terminal::print(heard.summary);
    for (const HeardLabel& label : heard.labels)
        terminal::print(terminal::harmless(u"%1 %  %2"_s.arg(std::round(label.confidence * 100), 3).arg(label.name)));
}

void printJson(const SoundHeard& heard)
{
    JsonWriter json;
    json.beginObject().key("name").text(heard.name).key("headline").text(heard.headline).key("summary").text(heard.summary);
    json.key("labels").beginArray();
    for (const HeardLabel& label : heard.labels) {
        json.beginObject().key("label").text(label.name).key("name").text(SoundNamer::pretty(label.name));
        json.key("confidence").number(label.confidence).endObject();
    }
    terminal::printJson(json.endArray().endObject().bytes());
}

} // namespace

int listen(const QStringList& arguments)
{
    Options options(
        "listen", "FILE",
        "Tells what a recording, or the sound of a video, sounds like: a name, how sure that is, and the labels "
        "that were heard, strongest first.\n"
        "JSON: {\"name\", \"headline\", \"summary\", \"labels\": [{\"label\", \"name\", \"confidence\"}]}, confidences in 0 "
        "to 1; an empty name where nothing was recognised.");
    options.addJson();
    options.addRange();
    options.addValue(u"top"_s, u"How many labels at most (5)."_s, u"number"_s, u"5"_s);
    if (const auto end = options.parse(arguments, 1, 1))
        return *end;
    const auto range = options.range();
    if (!range)
        return options.mistake(u"Times are seconds, such as 1.25."_s);
    bool isNumber = false;
    const int top = options.value(u"top"_s).toInt(&isNumber);
    if (!isNumber || top < 1)
        return options.mistake(u"--top takes a number from 1 on."_s);
    const QString file = options.positional().first();
    try {
        const double length = lengthWithin(file, *range);
        if (length <= 0) {
            terminal::complain(u"The selected part is empty."_s);
            return kFailed;
        }
        const SoundClassifier classifier(ClassifierChoice::from(Defaults(), ClassifierChoice::IfBroken::fail));
        const SoundHeard heard = SoundNamer::ruleBased(classifier.classify(file, range->start, range->end, top), {}, length);
        if (options.json())
            printJson(heard);
        else
            printHeard(heard);
        return kDone;
    } catch (const std::exception& error) {
        terminal::complain(messageOf(error));
        return kFailed;
    }
}

} // namespace tonequill::cli
