// name: smart names for sounds whose names say nothing.

#include "app/smart/SmartActions.h"
#include "base/Background.h"
#include "base/JsonWriter.h"
#include "base/Uuid.h"
#include "cli/Command.h"
#include "cli/LibraryAccess.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "cli/Windowless.h"
#include "library/records/NamePolicy.h"

#include <QCoreApplication>
#include <QJsonArray>

#include <limits>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

namespace {

struct Wish {
    QList<SoundItem> toName; // each once
    QList<SoundItem> kept;   // somebody chose their names
};

Wish wishFor(const QList<SoundItem>& items)
{
    Wish wish;
    QSet<QUuid> seen;
    for (const SoundItem& item : items) {
        if (seen.contains(item.id))
            continue;
        seen << item.id;
        (NamePolicy::isGeneric(item.name) ? wish.toName : wish.kept) << item;
    }
    return wish;
}

void tellNamed(const SoundItem& before, const SoundItem& now)
{
    const QString tags = now.tags.isEmpty() ? QString() : u"  · "_s + now.tags.join(u", "_s);
    terminal::print(terminal::harmless(u"%1 → %2"_s.arg(before.name, now.name) + tags));
}

// Puts what has been named, what could not be, and what was kept into words.
int report(const LibraryStore& library, const Wish& wish, bool isJson)
{
    JsonWriter named;
    JsonWriter failed;
    JsonWriter kept;
    bool hasFailures = false;
    for (JsonWriter* list : {&named, &failed, &kept})
        list->beginArray();
    for (const SoundItem& before : wish.toName) {
        const SoundItem* now = library.find(before.id);
        if (now && *now != before) { // the name may be given again, with tags
            named.beginObject().key("id").text(uuidText(now->id)).key("oldName").text(before.name);
            named.key("name").text(now->name).key("tags").list(now->tags).endObject();
            continue;
        }
        hasFailures = true;
        failed.beginObject().key("id").text(uuidText(before.id)).key("name").text(before.name).endObject();
        if (!isJson)
            terminal::complain(terminal::harmless(u"Nothing in “%1” could be recognised: it keeps its name."_s.arg(before.name)));
    }
    for (const SoundItem& item : wish.kept) {
        kept.beginObject().key("id").text(uuidText(item.id)).key("name").text(item.name).endObject();
        if (!isJson)
            terminal::print(terminal::harmless(u"“%1” keeps its name: somebody chose it."_s.arg(item.name)));
    }
    for (JsonWriter* list : {&named, &failed, &kept})
        list->endArray();
    if (isJson) {
        JsonWriter json;
        json.beginObject().key("named").json(named.bytes()).key("failed").json(failed.bytes());
        terminal::printJson(json.key("kept").json(kept.bytes()).endObject().bytes());
    }
    if (!library.isSaved()) {
        terminal::complain(u"The library could not be written: the disk may be full or read-only."_s);
        return kFailed;
    }
    return hasFailures ? kFailed : kDone;
}

QCoro::Task<> nameAll(AppModel& model, QList<SoundItem> items)
{
    co_await smartRename(model, items);
    // Queued: this may end before the event loop begins.
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

// Names them as the window does, with the same flow.
int nameHere(OwnLibrary& own, const Wish& wish, bool isJson)
{
    try {
        Windowless program(own, Windowless::Ear::isNeeded);
        AppModel& model = program.model();
        model.setSelection(std::nullopt); // an open sound would be listened to, and perhaps named as well
        if (!isJson) {
            QObject::connect(&model.library(), &LibraryStore::itemChanged, &model, [&](int index) {
                const SoundItem& now = model.library().items()[index];
                const auto before = std::find_if(wish.toName.begin(), wish.toName.end(),
                                                 [&now](const SoundItem& item) { return item.id == now.id; });
                if (before != wish.toName.end())
                    tellNamed(*before, now);
            });
        }
        startFlow(nameAll(model, wish.toName));
        QCoreApplication::exec();
        return report(model.library(), wish, isJson);
    } catch (const SoundModelError& error) {
        terminal::complain(error.message());
        return kFailed;
    }
}

int handToWindow(const Options& options, const QList<SoundItem>& items)
{
    QStringList ids;
    for (const SoundItem& item : items)
        ids << uuidText(item.id);
    if (const auto failure = handToOwner(options.libraryFolder(), {{u"name"_s, QJsonArray::fromStringList(ids)}}))
        return *failure;
    if (options.json())
        terminal::printJson(JsonWriter().beginObject().key("handedOver").list(ids).endObject().bytes());
    else
        terminal::print(u"Tonequill is open and names them."_s);
    return kDone;
}

} // namespace

int name(const QStringList& arguments)
{
    Options options(
        "name", "SOUND…",
        "Gives sounds whose names say nothing, such as a camera's file names, a name and tags by what is heard in them: from "
        "a language model on this machine where there is one, else by rule. A name that somebody chose stays. Each sound is "
        "named by its id, the beginning of its id, or its name; nothing is done unless all of them are found. While the "
        "window is open, the sounds are handed to it.\n"
        "JSON: {\"named\": [{\"id\", \"oldName\", \"name\", \"tags\"}], \"failed\": [{\"id\", \"name\"}], \"kept\": "
        "[{\"id\", \"name\"}]}, or {\"handedOver\": [ids]}.\n"
        "Exit status: 0 done, 1 nothing could be recognised in some, 2 wrong use, 3 the library is busy.");
    options.addFlag(u"all"_s, u"Every sound of the library whose name says nothing."_s);
    options.addJson();
    options.addLibrary();
    if (const auto end = options.parse(arguments, 0, std::numeric_limits<qsizetype>::max()))
        return *end;
    const bool isAll = options.has(u"all"_s);
    if (isAll != options.positional().isEmpty())
        return options.mistake(u"Give either sounds or --all."_s);

    const auto own = ownLibrary(options.libraryFolder());
    SystemClock clock;
    Workers workers;
    std::optional<LibraryStore> reader;
    if (!own)
        reader.emplace(clock, workers, options.libraryFolder());
    const LibraryStore& store = own ? *own->store : *reader;
    const auto meant = isAll ? std::optional(store.items()) : soundsMeant(store.items(), options.positional());
    if (!meant)
        return kFailed;
    Wish wish = wishFor(*meant);
    if (isAll)
        wish.kept.clear(); // nobody asked for them
    if (!wish.toName.isEmpty())
        return own ? nameHere(*own, wish, options.json()) : handToWindow(options, wish.toName);
    if (isAll && !options.json())
        terminal::print(u"No sound has a name that says nothing."_s);
    return report(store, wish, options.json());
}

} // namespace tonequill::cli
