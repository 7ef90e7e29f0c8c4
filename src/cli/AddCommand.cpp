// add: the whole road of a file, from the import to the finished cuts.

#include "app/delivery/ExportFlows.h"
#include "app/library/ImportFlows.h"
#include "base/Background.h"
#include "base/JsonWriter.h"
#include "cli/Command.h"
#include "cli/LibraryAccess.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "cli/Windowless.h"
#include "library/store/LibraryIndex.h"

#include <QCoroSignal>

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>

#include <limits>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

namespace {

constexpr int kEvery = std::numeric_limits<int>::max();

// What is done with each file.
struct Road {
    bool isRaw = false; // only taken in
    TheSource source = TheSource::isReplaced;
    int mostParts = 1;
    EffectSettings effects;
};

// Tells what came of each file.
class Report {
public:
    explicit Report(bool isJson) : m_isJson(isJson)
    {
        m_added.beginArray();
        m_failed.beginArray();
        m_uncut.beginArray();
    }

    void tellAdded(const SoundItem& item)
    {
        m_added.json(LibraryIndex::encode(item));
        if (!m_isJson)
            terminal::print(terminal::harmless(u"Added “%1”, %2"_s.arg(item.name, terminal::lengthText(item.duration))));
    }
    void tellFailed(const FailedFile& failed) { tell(m_failed, failed.path, failed.cause, failed.cause); }
    // It is in the library, as it was: adding it again would make a second one of it.
    void tellUncut(const QString& file, const QString& sentence)
    {
        tell(m_uncut, file, sentence, u"“%1” came in whole. %2"_s.arg(QFileInfo(file).fileName(), sentence));
    }
    int finish(const LibraryStore& library)
    {
        m_added.endArray();
        m_failed.endArray();
        m_uncut.endArray();
        if (m_isJson) {
            JsonWriter json;
            json.beginObject().key("added").json(m_added.bytes()).key("failed").json(m_failed.bytes());
            json.key("uncut").json(m_uncut.bytes());
            terminal::printJson(json.key("library").text(library.folder()).endObject().bytes());
        } else {
            terminal::print(u"The library is in %1"_s.arg(library.folder()));
        }
        if (!library.isSaved()) {
            terminal::complain(u"The library could not be written: the disk may be full or read-only."_s);
            return kFailed;
        }
        return m_hasFailures ? kFailed : kDone;
    }

private:
    void tell(JsonWriter& list, const QString& file, const QString& error, const QString& line)
    {
        m_hasFailures = true;
        list.beginObject().key("file").text(file).key("error").text(error).endObject();
        if (!m_isJson)
            terminal::complain(line);
    }

    bool m_isJson;
    bool m_hasFailures = false;
    JsonWriter m_added;
    JsonWriter m_failed;
    JsonWriter m_uncut;
};

QList<QUuid> idsOf(const QList<SoundItem>& items)
{
    QList<QUuid> ids;
    for (const SoundItem& item : items)
        ids << item.id;
    return ids;
}

// Walks the road as the window does, with the same flows.
class Walker {
public:
    Walker(AppModel& model, const Road& road, Report& report) : m_model(model), m_road(road), m_report(report) {}

    QCoro::Task<> walk(QStringList files)
    {
        for (const QString& file : std::as_const(files))
            co_await addFile(file);
        // Queued: files that are refused at once come here before the loop runs.
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    }

private:
    QCoro::Task<> addFile(QString file)
    {
        auto flow = importURLs(m_model, {file});
        ImportOutcome imported;
        {
            const QList<IncomingFile>& incoming = m_model.incoming().files();
            const auto progress = incoming.isEmpty() ? std::make_shared<Progress>() : incoming.first().progress;
            const terminal::ProgressLine line(QFileInfo(file).fileName(), progress);
            imported = co_await flow;
        }
        if (!imported.failed.isEmpty())
            co_return m_report.tellFailed(imported.failed.first());
        QList<QUuid> added = imported.added;
        if (!m_road.isRaw) {
            co_await settle();
            choose();
            const AddOutcome cut = co_await addToLibrary(m_model, m_road.source);
            if (cut.end == FlowEnd::failed) {
                m_report.tellUncut(file, cut.sentence);
                added = idsOf(cut.added) + added;
            }
            co_await settle(); // what is heard in the cut may name it
            if (cut.end == FlowEnd::done)
                added = idsOf(cut.added);
        }
        for (const QUuid& id : std::as_const(added)) {
            if (const SoundItem* item = m_model.library().find(id))
                m_report.tellAdded(*item);
        }
    }

    QCoro::Task<> settle()
    {
        EditorModel* editor = &m_model.editor();
        while (!editor->isSettled())
            co_await qCoro(editor, &EditorModel::settled);
    }

    // The best parts, and the effects on them.
    void choose()
    {
        EditorModel& editor = m_model.editor();
        int chosen = 0;
        for (const CutCandidate& candidate : std::vector(editor.candidates())) {
            if (chosen == m_road.mostParts)
                break;
            if (candidate.isWhole && editor.candidates().size() > 1 && m_road.mostParts > 1)
                continue; // it would only repeat the events
            editor.choose(candidate, chosen++ == 0 ? EditorModel::Extend::no : EditorModel::Extend::yes);
        }
        editor.setEffects(m_road.effects);
    }

    AppModel& m_model;
    Road m_road;
    Report& m_report;
};

int handFiles(const Options& options, const QStringList& files)
{
    if (const auto failure = handToOwner(options.libraryFolder(), {{u"add"_s, QJsonArray::fromStringList(files)}}))
        return *failure;
    if (options.json())
        terminal::printJson(JsonWriter().beginObject().key("handedOver").list(files).endObject().bytes());
    else
        terminal::print(u"Tonequill is open and takes them in."_s);
    return kDone;
}

int walkRoad(OwnLibrary& own, const Road& road, const QStringList& files, bool isJson)
{
    try {
        Windowless program(own, road.isRaw ? Windowless::Ear::mayStayClosed : Windowless::Ear::isNeeded);
        Report report(isJson);
        Walker walker(program.model(), road, report);
        startFlow(walker.walk(files));
        QCoreApplication::exec();
        return report.finish(program.model().library());
    } catch (const SoundModelError& error) {
        terminal::complain(error.message());
        return kFailed;
    }
}

} // namespace

int add(const QStringList& arguments)
{
    Options options(
        "add", "FILE…",
        "Takes sounds, and the sound of videos, into the library: finds the best part of each, listens to it, names it, and "
        "adds it as a clean cut in place of the file. While the window is open, the files are handed to it as they are.\n"
        "What came in and then could not be cut is added whole, and told.\n"
        "JSON: {\"added\": [records], \"failed\": [{\"file\", \"error\"}], \"uncut\": [{\"file\", \"error\"}], \"library\": "
        "folder}, or {\"handedOver\": [files]}.\n"
        "Exit status: 0 all added, 1 some could not be, or not cut, 2 wrong use, 3 the library is busy.");
    options.addFlag(u"all-parts"_s, u"Add every part that is found."_s);
    options.addValue(u"max"_s, u"Add at most so many parts, the best ones."_s, u"number"_s);
    options.addValue(u"effects"_s, u"Effects on the parts, such as '{\"voice\": \"robot\", \"echo\": 0.3}'."_s, u"json"_s,
                     u"{}"_s);
    options.addFlag(u"keep-source"_s, u"Keep the whole file in the library as well."_s);
    options.addFlag(u"raw"_s, u"Only take the whole files in."_s);
    options.addJson();
    options.addLibrary();
    if (const auto end = options.parse(arguments, 1, std::numeric_limits<qsizetype>::max()))
        return *end;

    Road road;
    road.isRaw = options.has(u"raw"_s);
    if (options.has(u"keep-source"_s))
        road.source = TheSource::stays;
    if (options.has(u"all-parts"_s))
        road.mostParts = kEvery;
    if (options.has(u"max"_s)) {
        bool isNumber = false;
        road.mostParts = options.value(u"max"_s).toInt(&isNumber);
        if (!isNumber || road.mostParts < 1)
            return options.mistake(u"--max takes a number from 1 on."_s);
    }
    const auto effects = EffectSettings::fromJson(options.value(u"effects"_s).toUtf8());
    if (!effects)
        return options.mistake(u"The effects are not a JSON object with known values."_s);
    if (!effects->isRenderable())
        return options.mistake(u"A fade is no shorter than 0 seconds, and a gain no more than 100 dB."_s);
    road.effects = *effects;

    QStringList files;
    for (const QString& file : options.positional())
        files << QFileInfo(file).absoluteFilePath();
    const auto own = ownLibrary(options.libraryFolder());
    if (!own)
        return handFiles(options, files);
    return walkRoad(*own, road, files, options.json());
}

} // namespace tonequill::cli
