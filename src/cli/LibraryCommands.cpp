// list, show and delete: what is in the library.

#include "base/JsonWriter.h"
#include "base/Uuid.h"
#include "cli/Command.h"
#include "cli/LibraryAccess.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "library/LibraryIndex.h"

#include <QDateTime>
#include <QJsonArray>

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

} // namespace

int list(const QStringList& arguments)
{
    Options options("list", "", "Lists the library, newest first: id, length, name, tags.\nJSON: an array of records.");
    options.addJson();
    options.addLibrary();
    if (const auto end = options.parse(arguments, 0, 0))
        return *end;
    SystemClock clock;
    const LibraryStore store(clock, options.libraryFolder());
    if (options.json()) {
        terminal::printJson(recordsJson(store.items()));
        return kDone;
    }
    for (const SoundItem& item : store.items()) {
        const QString tags = item.tags.isEmpty() ? QString() : u"  · "_s + item.tags.join(u", "_s);
        terminal::print(terminal::harmless(u"%1  %2  %3%4"_s.arg(
            uuidText(item.id).first(8), terminal::lengthText(item.duration).rightJustified(8), item.name, tags)));
    }
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
    const LibraryStore store(clock, options.libraryFolder());
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
    printField(u"Credit"_s, item->credit || item->license || item->pageURL ? item->creditLine() : QString());
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

    const auto own = ownLibrary(options.libraryFolder());
    SystemClock clock;
    // The owner has the newest state in memory, and on the disk as well.
    const LibraryStore reader(clock, options.libraryFolder());
    QList<SoundItem> doomed;
    for (const QString& word : options.positional()) {
        const auto item = soundMeant(reader.items(), word);
        if (!item)
            return kFailed;
        doomed << *item;
    }
    if (own) {
        own->store->deleteItems(doomed);
        if (!own->store->isSaved()) {
            terminal::complain(u"The library could not be written: the disk may be full or read-only."_s);
            return kFailed;
        }
    } else {
        QJsonArray ids;
        for (const SoundItem& item : doomed)
            ids << uuidText(item.id);
        if (!handToOwner(options.libraryFolder(), {{u"delete"_s, ids}}))
            return kLibraryBusy;
    }
    if (options.json())
        terminal::printJson(JsonWriter().beginObject().key("deleted").json(recordsJson(doomed)).endObject().bytes());
    else
        for (const SoundItem& item : doomed)
            terminal::print(terminal::harmless(u"Deleted “%1”"_s.arg(item.name)));
    return kDone;
}

} // namespace tonequill::cli
