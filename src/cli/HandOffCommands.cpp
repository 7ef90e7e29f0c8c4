// save and fcpxml: sounds of the library on their way out.

#include "app/delivery/PartExport.h"
#include "app/model/Settings.h"
#include "base/JsonWriter.h"
#include "base/Uuid.h"
#include "cli/Command.h"
#include "cli/LibraryAccess.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "library/delivery/FinalCut.h"
#include "platform/files/Files.h"

#include <QDir>
#include <QFileInfo>

#include <limits>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

namespace {

struct Failed {
    SoundItem item;
    QString error;
};

struct Written {
    QString document; // empty for none
    QList<FinalCut::Clip> clips;
    QList<Failed> failed;
};

// Makes a finished file of each sound, and tells of each at once unless that is JSON.
Written writeSounds(const LibraryStore& store, const QList<SoundItem>& items, const QString& folder, bool isJson)
{
    Written written;
    for (const SoundItem& item : items) {
        try {
            const auto [path, result] = PartExport::exportInto(folder, item.name, store.path(item), 0, item.duration, {});
            written.clips << FinalCut::Clip::make(item.name, path, result.frames, result.sampleRate, result.channels);
            if (!isJson)
                terminal::print(terminal::harmless(path));
        } catch (const std::exception& error) {
            written.failed.append({item, messageOf(error)});
            if (!isJson)
                terminal::complain(messageOf(error));
        }
    }
    return written;
}

void tellJson(const Written& written)
{
    JsonWriter json;
    json.beginObject().key("files").beginArray();
    for (const FinalCut::Clip& clip : written.clips)
        json.text(clip.file);
    json.endArray().key("failed").beginArray();
    for (const Failed& failed : written.failed) {
        json.beginObject().key("id").text(uuidText(failed.item.id)).key("name").text(failed.item.name);
        json.key("error").text(failed.error).endObject();
    }
    json.endArray();
    if (!written.document.isEmpty())
        json.key("document").text(written.document);
    terminal::printJson(json.endObject().bytes());
}

enum class Document { none, fcpxml };

int handOff(Options& options, const QStringList& arguments, const QString& standardFolder, Document document)
{
    options.addValue(u"to"_s, u"The folder that they are written to."_s, u"folder"_s, standardFolder);
    options.addJson();
    options.addLibrary();
    if (const auto end = options.parse(arguments, 1, std::numeric_limits<qsizetype>::max()))
        return *end;
    SystemClock clock;
    Workers workers;
    const LibraryStore store(clock, workers, options.libraryFolder());
    const auto items = soundsMeant(store.items(), options.positional());
    if (!items)
        return kFailed;
    const QString folder = QFileInfo(options.value(u"to"_s)).absoluteFilePath();
    if (!QFileInfo(folder).isDir()) {
        terminal::complain(terminal::harmless(u"There is no folder %1"_s.arg(folder)));
        return kFailed;
    }
    Written written = writeSounds(store, *items, folder, options.json());
    int end = written.failed.isEmpty() ? kDone : kFailed;
    if (document == Document::fcpxml && end == kDone) {
        try {
            written.document = FinalCut::write(written.clips, folder, u"Tonequill"_s, clock);
            if (!options.json())
                terminal::print(terminal::harmless(written.document));
        } catch (const FileError& error) {
            terminal::complain(error.message());
            end = kFailed;
        }
    }
    if (options.json())
        tellJson(written);
    return end;
}

} // namespace

int save(const QStringList& arguments)
{
    Options options("save", "SOUND…",
                    "Writes sounds of the library as finished WAV files, under their names and never over another file. One "
                    "line for each: its path, or why it could not be written.\n"
                    "JSON: {\"files\": [paths], \"failed\": [{\"id\", \"name\", \"error\"}]}.");
    return handOff(options, arguments, Settings::saveFolder(Defaults()), Document::none);
}

int fcpxml(const QStringList& arguments)
{
    Options options("fcpxml", "SOUND…",
                    "Writes sounds of the library as finished WAV files, and an FCPXML document with an event that lists them, "
                    "for an editor that imports one. There is no document if a sound could not be written.\n"
                    "JSON: {\"files\": [paths], \"failed\": [{\"id\", \"name\", \"error\"}], \"document\": path}.");
    return handOff(options, arguments, QDir::currentPath(), Document::fcpxml);
}

} // namespace tonequill::cli
