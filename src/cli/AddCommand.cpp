#include "base/Background.h"
#include "base/JsonWriter.h"
#include "cli/Command.h"
#include "cli/LibraryAccess.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "library/LibraryIndex.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>

#include <limits>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

namespace {

struct Outcome {
    JsonWriter added;
    JsonWriter failed;
    int failures = 0;
};

QCoro::Task<> addAll(LibraryStore& store, QStringList files, bool isQuiet, Outcome& outcome)
{
    for (const QString& file : files) {
        const auto progress = std::make_shared<Progress>();
        std::optional<QString> failure;
        try {
            const terminal::ProgressLine line(QFileInfo(file).fileName(), progress);
            const SoundItem item = co_await store.importFile(file, SoundOrigin::imported, {}, {}, progress);
            outcome.added.json(LibraryIndex::encode(item));
            if (!isQuiet)
                terminal::print(terminal::harmless(u"Added “%1”, %2"_s.arg(item.name, terminal::lengthText(item.duration))));
        } catch (const std::exception& error) {
            failure = messageOf(error);
        }
        if (failure) {
            ++outcome.failures;
            outcome.failed.beginObject().key("file").text(file).key("error").text(*failure).endObject();
            if (!isQuiet)
                terminal::complain(*failure);
        }
    }
    // Queued: files that are refused at once come here before the loop runs.
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

int handFiles(const Options& options, const QStringList& files)
{
    if (!handToOwner(options.libraryFolder(), {{u"add"_s, QJsonArray::fromStringList(files)}}))
        return kLibraryBusy;
    if (options.json())
        terminal::printJson(JsonWriter().beginObject().key("handedOver").list(files).endObject().bytes());
    else
        terminal::print(u"Tonequill is open and takes them in."_s);
    return kDone;
}

} // namespace

int add(const QStringList& arguments)
{
    Options options(
        "add", "FILE…",
        "Takes sounds, and the sound of videos, into the library. While the window is open, the files are handed to it.\n"
        "JSON: {\"added\": [records], \"failed\": [{\"file\", \"error\"}], \"library\": folder}, or {\"handedOver\": [files]}.\n"
        "Exit status: 0 all added, 1 some could not be, 2 wrong use, 3 the library is busy.");
    options.addJson();
    options.addLibrary();
    if (const auto end = options.parse(arguments, 1, std::numeric_limits<qsizetype>::max()))
        return *end;
    QStringList files;
    for (const QString& file : options.positional())
        files << QFileInfo(file).absoluteFilePath();

    const auto own = ownLibrary(options.libraryFolder());
    if (!own)
        return handFiles(options, files);

    Outcome outcome;
    outcome.added.beginArray();
    outcome.failed.beginArray();
    startFlow(addAll(*own->store, files, options.json(), outcome));
    QCoreApplication::exec();
    outcome.added.endArray();
    outcome.failed.endArray();
    if (options.json()) {
        JsonWriter json;
        json.beginObject().key("added").json(outcome.added.bytes()).key("failed").json(outcome.failed.bytes());
        terminal::printJson(json.key("library").text(own->store->folder()).endObject().bytes());
    } else {
        terminal::print(u"The library is in %1"_s.arg(own->store->folder()));
    }
    if (!own->store->isSaved()) {
        terminal::complain(u"The library could not be written: the disk may be full or read-only."_s);
        return kFailed;
    }
    return outcome.failures > 0 ? kFailed : kDone;
}

} // namespace tonequill::cli
