// save and fcpxml: sounds of the library on their way out.

#include "app/delivery/PartExport.h"
#include "app/model/Settings.h"
#include "base/JsonWriter.h"
#include "cli/Command.h"
#include "cli/LibraryAccess.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "library/delivery/FinalCut.h"
#include "library/records/FileNames.h"
#include "platform/files/Files.h"

#include <QDir>
#include <QFileInfo>

#include <limits>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

namespace {

struct Written {
    QString document; // empty for none
    QList<FinalCut::Clip> clips;
};

// Makes a finished file of each sound. Throws what the export throws.
Written writeSounds(const LibraryStore& store, const QList<SoundItem>& items, const QString& folder)
{
    Written written;
    for (const SoundItem& item : items) {
        const QString path = Files::uniqueFreePath(folder, FileNames::safe(item.name), u"wav"_s);
        const ExportResult result = PartExport::exportWithEffects(store.path(item), 0, item.duration, {}, path);
        written.clips << FinalCut::Clip::make(item.name, path, result.frames, result.sampleRate, result.channels);
    }
    return written;
}

void tell(const Options& options, const Written& written)
{
    QStringList files;
    for (const FinalCut::Clip& clip : written.clips)
        files << clip.file;
    if (options.json()) {
        JsonWriter json;
        json.beginObject().key("files").list(files);
        if (!written.document.isEmpty())
            json.key("document").text(written.document);
        terminal::printJson(json.endObject().bytes());
        return;
    }
    for (const QString& file : std::as_const(files))
        terminal::print(terminal::harmless(file));
    if (!written.document.isEmpty())
        terminal::print(terminal::harmless(written.document));
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
    try {
        Written written = writeSounds(store, *items, folder);
        if (document == Document::fcpxml)
            written.document = FinalCut::write(written.clips, folder, u"Tonequill"_s, clock);
        tell(options, written);
        return kDone;
    } catch (const std::exception& error) {
        terminal::complain(messageOf(error));
        return kFailed;
    }
}

} // namespace

int save(const QStringList& arguments)
{
    Options options("save", "SOUND…",
                    "Writes sounds of the library as finished WAV files, under their names and never over another file.\n"
                    "JSON: {\"files\": [paths]}.");
    return handOff(options, arguments, Settings::saveFolder(Defaults()), Document::none);
}

int fcpxml(const QStringList& arguments)
{
    Options options("fcpxml", "SOUND…",
                    "Writes sounds of the library as finished WAV files, and an FCPXML document with an event that lists them, "
                    "for an editor that imports one.\nJSON: {\"files\": [paths], \"document\": path}.");
    return handOff(options, arguments, QDir::currentPath(), Document::fcpxml);
}

} // namespace tonequill::cli
