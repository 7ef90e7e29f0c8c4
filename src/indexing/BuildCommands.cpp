// build and merge: what makes the file of a catalogue.

#include "discovery/catalogue/SoundIndex.h"
#include "discovery/online/Openverse.h"
#include "discovery/planning/Topic.h"
#include "indexing/ApiWalk.h"
#include "indexing/CatalogueSources.h"
#include "indexing/CatalogueWriter.h"
#include "indexing/Commands.h"
#include "indexing/Outcomes.h"
#include "platform/files/Files.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace tonequill::indexing {

namespace {

enum ExitCode : int { kDone = 0, kFailed = 1, kUsage = 2 };

constexpr qint64 kLargestSource = qint64(2) << 30; // bytes

int wrongUse(const QString& sentence)
{
    complain(sentence + u" Try: tonequill-index --help"_s);
    return kUsage;
}

// Writes what was gathered, and tells.
int finish(const CatalogueWriter& writer, const QString& output)
{
    if (writer.isTooLarge()) {
        complain(u"That is more than a catalogue may hold."_s);
        return kFailed;
    }
    QDir().mkpath(QFileInfo(output).path());
    const QByteArray file = writer.file();
    Files::writeDurably(output, std::span(&file, 1));
    print(u"%1 sounds, %2 bytes: %3"_s.arg(writer.count()).arg(file.size()).arg(output));
    if (writer.repeats() > 0)
        print(u"%1 came twice and stand there once."_s.arg(writer.repeats()));
    return kDone;
}

// False if some of it couldn't be read; that is told.
bool readSource(const QString& path, CatalogueWriter& writer)
{
    constexpr qsizetype kTold = 10; // faults; a hundred thousand help nobody
    qsizetype faults = 0;
    const auto take = [&writer](const CatalogueEntry& entry) { writer.add(entry); };
    const auto fault = [&](qsizetype line, const QString& sentence) {
        if (++faults <= kTold)
            complain(u"%1:%2: %3"_s.arg(path).arg(line).arg(sentence));
    };
    complain(u"Reading %1 …"_s.arg(path));
    const QByteArray bytes = Files::readAll(path, kLargestSource);
    const QString ending = Files::extension(path).toLower();
    if (ending == u"bin") {
        const auto outcome = CatalogueSources::readCatalogue(bytes, take);
        if (outcome != CatalogueReader::Outcome::done) {
            complain(path + u": "_s + sentenceFor(outcome));
            return false;
        }
    } else if (ending == u"csv") {
        CatalogueSources::readCsv(bytes, take, fault);
    } else {
        CatalogueSources::readJsonLines(bytes, take, fault);
    }
    if (faults > 0)
        complain(u"%1: %2 lines were left out."_s.arg(path).arg(faults));
    return faults == 0;
}

QStringList topicTags()
{
    QStringList tags;
    for (const Topic& topic : Topic::all()) {
        for (const QString& term : topic.terms) {
            if (!tags.contains(term))
                tags << term;
        }
    }
    return tags;
}

// Runs the walk to its end; false if it gave up, which is told.
bool gather(ApiWalk& walk)
{
    struct Run {
        static QCoro::Task<> go(ApiWalk& walk, FlowGroup& flows, ApiWalk::Outcome& outcome, QString& error)
        {
            try {
                const ApiWalk::Tell tell = [](const QString& tag, qsizetype page, qsizetype pages, qsizetype sounds) {
                    complain(u"%1: page %2 of %3, %4 sounds so far"_s.arg(tag).arg(page).arg(pages).arg(sounds));
                };
                outcome = co_await walk.walk(flows, tell);
            } catch (const std::exception& failure) {
                error = messageOf(failure);
            }
            // Later: the loop has perhaps not begun.
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        }
    };
    FlowGroup flows;
    ApiWalk::Outcome outcome;
    QString error;
    startFlow(Run::go(walk, flows, outcome, error));
    QCoreApplication::exec();
    if (outcome.isWhole)
        return true;
    complain((error.isEmpty() ? outcome.message : error) + u" What was gathered is kept; the same call goes on."_s);
    return false;
}

std::optional<double> numberIn(const QCommandLineParser& parser, const QString& name)
{
    bool isNumber = false;
    const double number = parser.value(name).toDouble(&isNumber);
    return isNumber && number >= 0 && number <= 1e6 ? std::optional(number) : std::nullopt;
}

int buildFromApi(const QCommandLineParser& parser, const QString& output)
{
    const auto pace = numberIn(parser, u"pace"_s);
    const auto pages = numberIn(parser, u"pages"_s);
    if (!pace || !pages || *pages < 1)
        return wrongUse(u"--pace and --pages take numbers."_s);
    ApiWalk::Settings settings;
    settings.base = parser.isSet(u"url"_s) ? QUrl(parser.value(u"url"_s)) : Openverse::base();
    settings.tags = parser.isSet(u"tags"_s) ? parser.value(u"tags"_s).split(u',', Qt::SkipEmptyParts) : topicTags();
    settings.mostPages = qsizetype(*pages);
    settings.pace = std::chrono::milliseconds(qint64(*pace * 1000));
    settings.firstRest = std::max(settings.pace, std::chrono::milliseconds(1)) * 2;
    settings.journal = output + u".walk"_s;
    QDir().mkpath(QFileInfo(output).path());
    const Http http{{"Tonequill/0.3", Http::Proxy::ofTheDesktop, {settings.base}}};
    SystemClock clock;
    ApiWalk walk(http, clock, settings);
    if (!gather(walk))
        return kFailed;
    CatalogueWriter writer;
    ApiWalk::read(settings.journal, [&writer](const CatalogueEntry& entry) { writer.add(entry); });
    const int end = finish(writer, output);
    if (end == kDone)
        QFile::remove(settings.journal);
    return end;
}

} // namespace

int build(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.addOptions({{u"output"_s, {}, u"file"_s, u"sound-index.bin"_s},
                       {u"install"_s, {}},
                       {u"api"_s, {}},
                       {u"url"_s, {}, u"address"_s},
                       {u"tags"_s, {}, u"list"_s},
                       {u"pages"_s, {}, u"number"_s, u"12"_s},
                       {u"pace"_s, {}, u"seconds"_s, u"3.5"_s}});
    if (!parser.parse(QStringList{u"tonequill-index"_s} + arguments))
        return wrongUse(parser.errorText());
    const QStringList sources = parser.positionalArguments();
    if (sources.isEmpty() != parser.isSet(u"api"_s))
        return wrongUse(u"Build from files, or with --api."_s);
    const QString output = parser.isSet(u"install"_s) ? SoundIndex::userPath() : parser.value(u"output"_s);
    if (parser.isSet(u"api"_s))
        return buildFromApi(parser, output);
    CatalogueWriter writer;
    bool isWhole = true;
    for (const QString& source : sources)
        isWhole = readSource(source, writer) && isWhole;
    const int end = finish(writer, output);
    return isWhole ? end : int(kFailed);
}

int merge(const QStringList& arguments)
{
    if (arguments.size() < 2 || arguments.first().startsWith(u'-'))
        return wrongUse(u"merge OUTPUT CATALOGUE…"_s);
    CatalogueWriter writer;
    for (const QString& source : arguments.sliced(1)) {
        if (!readSource(source, writer))
            return kFailed; // half a merge would pass for a whole one
    }
    return finish(writer, arguments.first());
}

} // namespace tonequill::indexing
