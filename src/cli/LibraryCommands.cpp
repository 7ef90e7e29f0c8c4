// list, search, show, delete and credits: what is in the library.

#include "base/JsonWriter.h"
#include "base/Uuid.h"
#include "cli/Command.h"
#include "cli/LibraryAccess.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "library/store/LibraryIndex.h"

#include <QDateTime>
#include <QJsonArray>

#include <algorithm>
#include <iterator>
#include <limits>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

namespace {

constexpr qsizetype kAnyNumber = std::numeric_limits<qsizetype>::max();

QByteArray recordsJson(const QList<SoundItem>& items)
{
    JsonWriter json;
    json.beginArray();
    for (const SoundItem& item : items)
        json.json(LibraryIndex::encode(item));
    return json.endArray().bytes();
}

void printSounds(const QList<SoundItem>& items, const Options& options)
{
    if (options.json()) {
        terminal::printJson(recordsJson(items));
        return;
    }
    for (const SoundItem& item : items) {
        const QString tags = item.tags.isEmpty() ? QString() : u"  · "_s + item.tags.join(u", "_s);
        terminal::print(terminal::harmless(u"%1  %2  %3%4"_s.arg(
            uuidText(item.id).first(8), terminal::lengthText(item.duration).rightJustified(8), item.name, tags)));
    }
}

// Whether anything is known of where the sound comes from.
bool hasCredit(const SoundItem& item)
{
    return item.credit || item.license || item.pageURL;
}

QString dateText(double secondsSince2001)
{
    constexpr double kUnixSecondsAt2001 = 978307200; // 2001-01-01 00:00:00 UTC
    return QDateTime::fromSecsSinceEpoch(qint64(secondsSince2001 + kUnixSecondsAt2001)).toString(Qt::ISODate);
}

void printField(const QString& label, const QString& value)
{
    if (!value.isEmpty())
        terminal::print(terminal::harmless(u"%1 %2"_s.arg(label, -12).arg(value)));
}

int tellDeleted(const QList<SoundItem>& items, bool isJson)
{
    if (isJson)
        terminal::printJson(JsonWriter().beginObject().key("deleted").json(recordsJson(items)).endObject().bytes());
    else
        for (const SoundItem& item : items)
            terminal::print(terminal::harmless(u"Deleted “%1”"_s.arg(item.name)));
    return kDone;
}

} // namespace

int list(const QStringList& arguments)
{
    Options options("list", "", "Lists the library, newest first: id, length, name, tags.\nJSON: an array of records.");
    options.addJson();
    options.addLibrary();
    if (const auto end = options.parse(arguments, 0, 0))
        return *end;
    SystemClock clock;
    Workers workers;
    const LibraryStore store(clock, workers, options.libraryFolder());
    printSounds(store.items(), options);
    return kDone;
}

int search(const QStringList& arguments)
{
    Options options("search", "WORD…",
                    "Lists the sounds that the words mean, best first, as list does: by their names, tags and sound, in "
                    "English or Arabic. Nothing found is no failure.\nJSON: an array of records.");
    options.addJson();
    options.addLibrary();
    if (const auto end = options.parse(arguments, 1, kAnyNumber))
        return *end;
    SystemClock clock;
    Workers workers;
    const LibraryStore store(clock, workers, options.libraryFolder());
    printSounds(store.search(options.positional().join(u' ')), options);
    return kDone;
}

int show(const QStringList& arguments)
{
    Options options(
        "show", "SOUND",
        "Tells everything about one sound, named by its id, the beginning of its id, or its name.\nJSON: the record.");
    options.addJson();
    options.addLibrary();
    if (const auto end = options.parse(arguments, 1, 1))
        return *end;
    SystemClock clock;
    Workers workers;
    const LibraryStore store(clock, workers, options.libraryFolder());
    const auto item = soundMeant(store.items(), options.positional().first());
    if (!item)
        return kFailed;
    if (options.json()) {
        terminal::printJson(LibraryIndex::encode(*item));
        return kDone;
    }
    printField(u"Name"_s, item->name);
    printField(u"Length"_s, terminal::lengthText(item->duration));
    printField(u"Tags"_s, item->tags.join(u", "_s));
    printField(u"Sounds"_s, item->descriptors.join(u", "_s));
    printField(u"Origin"_s, originText(item->origin));
    printField(u"Added"_s, dateText(item->createdAt));
    printField(u"Licence"_s, item->license.value_or(QString()));
    printField(u"Credit"_s, hasCredit(*item) ? item->creditLine() : QString());
    printField(u"Id"_s, uuidText(item->id));
    printField(u"File"_s, store.path(*item));
    return kDone;
}

int deleteSounds(const QStringList& arguments)
{
    Options options(
        "delete", "SOUND…",
        "Removes sounds and their files from the library, for good. Each is named by its id, the beginning of its id, or "
        "its name; nothing is removed unless all of them are found.\nJSON: {\"deleted\": [records]}.");
    options.addJson();
    options.addLibrary();
    if (const auto end = options.parse(arguments, 1, kAnyNumber))
        return *end;

    if (const auto own = ownLibrary(options.libraryFolder())) {
        const auto doomed = soundsMeant(own->store->items(), options.positional());
        if (!doomed)
            return kFailed;
        own->store->deleteItems(*doomed);
        if (!own->store->isSaved()) {
            terminal::complain(u"Nothing was deleted: the disk may be full or read-only."_s);
            return kFailed;
        }
        return tellDeleted(*doomed, options.json());
    }
    // The owner has the newest state in memory, and on the disk as well.
    SystemClock clock;
    Workers workers;
    const LibraryStore reader(clock, workers, options.libraryFolder());
    const auto doomed = soundsMeant(reader.items(), options.positional());
    if (!doomed)
        return kFailed;
    QJsonArray ids;
    for (const SoundItem& item : *doomed)
        ids << uuidText(item.id);
    if (const auto failure = handToOwner(options.libraryFolder(), {{u"delete"_s, ids}}))
        return *failure;
    return tellDeleted(*doomed, options.json());
}

int credits(const QStringList& arguments)
{
    Options options("credits", "[SOUND…]",
                    "Prints one line for each sound that names it, its maker, licence and page, ready to paste. Without a "
                    "sound: for all of the library that have something to credit.\nJSON: an array of {id, name, creditLine}.");
    options.addJson();
    options.addLibrary();
    if (const auto end = options.parse(arguments, 0, kAnyNumber))
        return *end;
    SystemClock clock;
    Workers workers;
    const LibraryStore store(clock, workers, options.libraryFolder());
    QList<SoundItem> credited;
    if (options.positional().isEmpty()) {
        std::copy_if(store.items().begin(), store.items().end(), std::back_inserter(credited), hasCredit);
    } else {
        const auto meant = soundsMeant(store.items(), options.positional());
        if (!meant)
            return kFailed;
        credited = *meant;
    }
    if (!options.json()) {
        for (const SoundItem& item : credited)
            terminal::print(terminal::harmless(item.creditLine()));
        return kDone;
    }
    JsonWriter json;
    json.beginArray();
    for (const SoundItem& item : credited) {
        json.beginObject().key("id").text(uuidText(item.id)).key("name").text(item.name);
        json.key("creditLine").text(item.creditLine()).endObject();
    }
    terminal::printJson(json.endArray().bytes());
    return kDone;
}

} // namespace tonequill::cli
