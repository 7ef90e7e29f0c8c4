// find: free sounds of the offline catalogue.

#include "base/JsonWriter.h"
#include "base/NumberText.h"
#include "base/Text.h"
#include "cli/Command.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "discovery/catalogue/SoundIndex.h"
#include "discovery/planning/ArabicLabels.h"
#include "discovery/planning/SearchPlanner.h"
#include "terms/SearchTerms.h"

#include <QElapsedTimer>

#include <limits>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

namespace {

constexpr qsizetype kAnyNumber = std::numeric_limits<qsizetype>::max();

struct Found {
    SearchPlanner::Plan plan;
    QList<OnlineSound> results;
    QString message; // why there are none
    double seconds = 0;
};

SearchPlanner::Plan planFor(const QString& typed)
{
    if (!SearchTerms::containsArabic(typed))
        return SearchPlanner::plan(typed);
    return SearchPlanner::plan(SearchTerms::onlineQuery(typed).value_or(QString()));
}

// The catalogue is in English: a word that has stayed Arabic finds nothing in it.
QStringList withoutArabic(QStringList terms)
{
    terms.removeIf([](const QString& term) { return SearchTerms::containsArabic(term); });
    return terms;
}

void waitForCatalogue(SoundIndex& index)
{
    Workers workers;
    const auto load = index.startLoadingIfNeeded(workers);
    if (!load)
        return;
    workers.moveUp(load->progress());
    const terminal::ProgressLine line(u"Loading the catalogue"_s, load->progress());
    load->waitForEnd();
}

Found findIn(SoundIndex& index, const QString& typed, std::optional<double> maxSeconds, qsizetype limit)
{
    QElapsedTimer timer;
    timer.start();
    Found found;
    found.plan = planFor(typed);
    found.results = index.search({withoutArabic(found.plan.terms), withoutArabic(found.plan.primary), maxSeconds, limit,
                                  SearchTerms::containsArabic(typed)});
    found.seconds = double(timer.nsecsElapsed()) * 1e-9;
    if (!index.isReady())
        found.message = u"There is no catalogue of free sounds yet. “tonequill-index build --install” makes one."_s;
    else if (found.results.isEmpty())
        found.message = u"No sounds found. Try another word."_s;
    return found;
}

void write(JsonWriter& json, const SearchPlanner::Plan& plan)
{
    json.key("plan").beginObject();
    json.key("terms").list(plan.terms).key("primary").list(plan.primary).key("summary").text(plan.summary);
    json.endObject();
}

void write(JsonWriter& json, const OnlineSound& sound, const QStringList& terms)
{
    json.beginObject();
    json.key("id").text(sound.id).key("title").text(sound.title).key("url").text(sound.url);
    json.key("duration").number(sound.duration).key("license").text(sound.license);
    if (sound.creator)
        json.key("creator").text(*sound.creator);
    if (sound.pageURL)
        json.key("pageURL").text(*sound.pageURL);
    json.key("tags").list(sound.tags).key("source").text(sound.source);
    json.key("isArabic").boolean(sound.isArabic).key("popularity").number(sound.popularity);
    if (const auto caption = ArabicLabels::label(sound, terms))
        json.key("caption").text(*caption);
    json.endObject();
}

void printJson(const Found& found)
{
    JsonWriter json;
    json.beginObject();
    write(json, found.plan);
    json.key("results").beginArray();
    for (const OnlineSound& sound : found.results)
        write(json, sound, found.plan.terms);
    json.endArray();
    json.key("related").beginArray().endArray(); // the catalogue alone knows of none
    json.key("message").text(found.message);
    json.key("seconds").number(found.seconds);
    terminal::printJson(json.endObject().bytes());
}

void printPlan(const SearchPlanner::Plan& plan)
{
    terminal::print(u"Looking for: "_s + text::plainLine(plan.summary));
}

void print(const Found& found)
{
    printPlan(found.plan);
    for (const OnlineSound& sound : found.results) {
        const auto caption = ArabicLabels::label(sound, found.plan.terms);
        const QString row = sound.id.leftJustified(10) + terminal::lengthText(sound.duration).rightJustified(10) + u"  "_s +
                            sound.licenseName().leftJustified(13) + u"  "_s + sound.title +
                            (caption ? u"  · "_s + *caption : QString());
        terminal::print(text::plainLine(row));
    }
    if (found.message.isEmpty())
        terminal::print(u"%1 sounds in %2 ms"_s.arg(found.results.size()).arg(NumberText::fixed(found.seconds * 1000, 1)));
    else
        terminal::complain(found.message);
}

void printPlan(const SearchPlanner::Plan& plan, const Options& options)
{
    if (!options.json()) {
        printPlan(plan);
        terminal::print(text::plainLine(u"Terms: "_s + plan.terms.join(u", "_s)));
        terminal::print(text::plainLine(u"Your own words: "_s + plan.primary.join(u", "_s)));
        return;
    }
    JsonWriter json;
    json.beginObject();
    write(json, plan);
    terminal::printJson(json.endObject().bytes());
}

} // namespace

int find(const QStringList& arguments)
{
    Options options(
        "find", "WORD…",
        "Finds free sounds in the offline catalogue by what the words mean, in English or Arabic: id, length, licence, title "
        "and an Arabic caption, best first. Nothing found is no failure; without a catalogue it is one.\n"
        "JSON: {\"plan\": {\"terms\", \"primary\", \"summary\"}, \"results\": [records, with \"caption\"], \"related\": [], "
        "\"message\", \"seconds\"}.");
    options.addJson();
    options.addValue(u"limit"_s, u"How many sounds at most (20)."_s, u"number"_s, u"20"_s);
    options.addValue(u"max-seconds"_s, u"Only sounds that are no longer; short ones come first."_s, u"seconds"_s);
    options.addFlag(u"plan"_s, u"Show only what would be looked for."_s);
    if (const auto end = options.parse(arguments, 1, kAnyNumber))
        return *end;
    bool isNumber = false;
    const qsizetype limit = options.value(u"limit"_s).toInt(&isNumber);
    if (!isNumber || limit < 1)
        return options.mistake(u"--limit takes a number from 1 on."_s);
    std::optional<double> maxSeconds;
    if (options.has(u"max-seconds"_s)) {
        maxSeconds = options.seconds(u"max-seconds"_s, 0);
        if (!maxSeconds)
            return options.mistake(u"--max-seconds takes seconds, such as 1.5."_s);
    }
    const QString typed = options.positional().join(u' ');
    if (options.has(u"plan"_s)) {
        printPlan(planFor(typed), options);
        return kDone;
    }
    SoundIndex& index = SoundIndex::shared();
    waitForCatalogue(index);
    const Found found = findIn(index, typed, maxSeconds, limit);
    if (options.json())
        printJson(found);
    else
        print(found);
    return index.isReady() ? kDone : kFailed;
}

} // namespace tonequill::cli
