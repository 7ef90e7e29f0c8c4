// sync: one run of the Auto Folder.

#include "base/Background.h"
#include "base/JsonWriter.h"
#include "cli/Command.h"
#include "cli/LibraryAccess.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "library/delivery/AutoFolder.h"

#include <QCoreApplication>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

namespace {

QCoro::Task<> syncOnce(AutoFolder& folder, QList<AutoFolder::Sound> sounds, int& copied)
{
    copied = co_await folder.sync(sounds);
    // Queued: a run with nothing to do ends before the event loop begins.
    QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit, Qt::QueuedConnection);
}

} // namespace

int sync(const QStringList& arguments)
{
    Options options("sync", "",
                    "Brings the Auto Folder up to date with the library: copies what is missing and renames what was renamed. "
                    "Nothing there is ever deleted or written over. The window does the same by itself while it is open.\n"
                    "JSON: {\"copied\", \"folder\", \"problem\"}.\n"
                    "Exit status: 0 done, 1 something could not be delivered or there is no folder, 2 wrong use, 3 the "
                    "library is busy.");
    options.addValue(u"folder"_s, u"Choose this folder first, and switch the delivery on."_s, u"folder"_s);
    options.addJson();
    if (const auto end = options.parse(arguments, 0, 0))
        return *end;
    // The folder belongs to the settings, and they to the standard library.
    const auto own = ownLibrary(LibraryStore::defaultFolder());
    if (!own) {
        terminal::complain(u"Tonequill is open and keeps the folder up to date itself."_s);
        return kLibraryBusy;
    }
    Defaults defaults;
    AutoFolder folder(defaults, own->clock, own->workers);
    if (options.has(u"folder"_s)) {
        const QString chosen = QFileInfo(options.value(u"folder"_s)).absoluteFilePath();
        if (!QFileInfo(chosen).isDir()) {
            terminal::complain(terminal::harmless(u"There is no folder %1"_s.arg(chosen)));
            return kFailed;
        }
        if (!folder.isAt(chosen)) // it would get every sound once more
            folder.chooseFolder(chosen);
        folder.setEnabled(true);
        if (!defaults.saveAgain()) { // it would be forgotten, and get every sound once more
            terminal::complain(u"The settings could not be saved: the disk may be full or read-only."_s);
            return kFailed;
        }
    }
    if (!folder.hasFolder() || !folder.enabled()) {
        terminal::complain(u"The Auto Folder is off. Choose one with --folder."_s);
        return kFailed;
    }
    QList<AutoFolder::Sound> sounds;
    for (const SoundItem& item : own->store->items())
        sounds.append({item.id, item.name, own->store->path(item), item.duration});
    int copied = 0;
    startFlow(syncOnce(folder, sounds, copied));
    QCoreApplication::exec();

    if (options.json()) {
        JsonWriter json;
        json.beginObject().key("copied").number(qint64(copied)).key("folder").text(folder.folderName());
        terminal::printJson(json.key("problem").text(folder.problem()).endObject().bytes());
    } else if (folder.problem().isEmpty()) {
        terminal::print(
            terminal::harmless(copied > 0 ? folder.copiedText(copied) : u"%1 is up to date."_s.arg(folder.folderName())));
    } else {
        terminal::complain(terminal::harmless(folder.problem()));
    }
    return folder.problem().isEmpty() ? kDone : kFailed;
}

} // namespace tonequill::cli
