#include "app/delivery/ExportFlows.h"

#include "app/delivery/PartExport.h"
#include "app/model/AppModel.h"
#include "base/Background.h"
#include "library/delivery/FinalCut.h"
#include "library/records/FileNames.h"
#include "platform/desktop/OtherApps.h"
#include "platform/files/Files.h"
#include "platform/files/ScratchFile.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

using Kind = FlowsAtWork::Kind;

const QString kExtension = u"wav"_s;
const QString kEventName = u"Tonequill"_s;

// Makes the folder if it is missing, as a desktop may be. Throws FileError.
QString freePathFor(const QString& folder, const QString& name)
{
    if (!QDir().mkpath(folder))
        throw FileError(FileError::Action::write, folder, errno);
    return Files::uniqueFreePath(folder, FileNames::safe(name), kExtension);
}

FinalCut::Clip clipOf(const QString& name, const QString& path, const ExportResult& result)
{
    return FinalCut::Clip::make(name, path, result.frames, result.sampleRate, result.channels);
}

// A stretch of a sound, and what it is to be called.
struct Piece {
    SoundItem source;
    double start = 0; // seconds
    double end = 0;
    QString name;
    std::optional<bool> nameIsAuto;
    EffectSettings effects;
};

QList<Piece> chosenPieces(const AppModel& model)
{
    const SoundItem* source = model.selectedItem();
    if (!source)
        return {};
    const std::vector<EditorModel::Part> parts = PartExport::usable(model.editor().parts());
    const QStringList names = PartExport::names(*source, parts);
    const EffectSettings effects = PartExport::effectsFor(model.editor(), *source);
    QList<Piece> pieces;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        pieces.append({*source, parts[i].start, parts[i].end, names[qsizetype(i)],
                       parts.size() == 1 ? source->nameIsAuto : std::optional(false), effects});
    }
    return pieces;
}

QList<Piece> wholePieces(const AppModel& model, const QList<SoundItem>& items)
{
    QList<Piece> pieces;
    for (const SoundItem& item : items)
        pieces.append({item, 0, item.duration, item.name, {}, PartExport::effectsFor(model.editor(), item)});
    return pieces;
}

QCoro::Task<ExportResult> exportPiece(AppModel& model, Piece piece, QString path)
{
    const auto progress = std::make_shared<Progress>();
    const auto work = [source = model.library().path(piece.source), piece, path, progress] {
        return PartExport::exportWithEffects(source, piece.start, piece.end, piece.effects, path, progress.get());
    };
    return background(model.flows(), model.services().workers.shown(), work, progress);
}

struct AddedPiece {
    SoundItem item;
    FinalCut::Clip clip;
};

QCoro::Task<AddedPiece> addPiece(AppModel& model, Piece piece)
{
    const ScratchFile file = ScratchFile::withExtension(kExtension);
    const ExportResult result = co_await exportPiece(model, piece, file.path());
    const SoundItem imported = co_await model.library().importFile(file.path(), SoundOrigin::cut, piece.source.tags);
    const SoundItem item = model.library().update(imported, [&piece](SoundItem& record) {
        record.name = piece.name;
        record.nameIsAuto = piece.nameIsAuto;
        record.sourceID = piece.source.sourceID;
        record.license = piece.source.license;
        record.credit = piece.source.credit;
        record.pageURL = piece.source.pageURL;
    });
    co_return AddedPiece{item, clipOf(piece.name, model.library().path(item), result)};
}

// Opens what was added, as far as it is still there.
void select(AppModel& model, const QList<SoundItem>& added)
{
    QSet<QUuid> ids;
    for (const SoundItem& item : added) {
        if (model.library().find(item.id))
            ids << item.id;
    }
    if (ids.isEmpty())
        return model.selection().openNewest();
    model.setMulti(ids); // before the selection, which would replace it
    const auto first = std::find_if(added.begin(), added.end(), [&ids](const SoundItem& item) { return ids.contains(item.id); });
    model.setSelection(first->id);
}

QCoro::Task<FilesOutcome> savePieces(AppModel& model, QList<Piece> pieces)
{
    if (pieces.isEmpty())
        co_return FilesOutcome{};
    const auto working = model.work().beginAlone(Kind::saving);
    if (!working)
        co_return FilesOutcome{FlowEnd::isAtWork, {}, {}};
    FilesOutcome outcome{FlowEnd::done, {}, {}};
    const QString folder = model.settings().saveFolder();
    try {
        for (const Piece& piece : std::as_const(pieces)) {
            const QString path = freePathFor(folder, piece.name);
            co_await exportPiece(model, piece, path);
            outcome.paths << path;
        }
    } catch (const std::exception& error) {
        outcome.end = FlowEnd::failed;
        outcome.sentence = messageOf(error);
    }
    co_return std::move(outcome);
}

QString folderNameOf(const FilesOutcome& outcome)
{
    return QFileInfo(QFileInfo(outcome.paths.first()).path()).fileName();
}

} // namespace

QCoro::Task<AddOutcome> addToLibrary(AppModel& model, TheSource theSource)
{
    const QList<Piece> pieces = chosenPieces(model);
    if (pieces.isEmpty())
        co_return AddOutcome{};
    const auto working = model.work().beginAlone(Kind::adding);
    if (!working)
        co_return AddOutcome{FlowEnd::isAtWork, {}, {}};
    AddOutcome outcome{FlowEnd::done, {}, {}};
    QList<FinalCut::Clip> clips;
    try {
        for (const Piece& piece : std::as_const(pieces)) {
            const AddedPiece added = co_await addPiece(model, piece);
            outcome.added << added.item;
            clips << added.clip;
        }
    } catch (const std::exception& error) { // what was finished stays, and so does the source
        outcome.end = FlowEnd::failed;
        outcome.sentence = messageOf(error);
        model.say(outcome.sentence, Tone::error);
        co_return std::move(outcome);
    }
    const SoundItem& source = pieces.first().source;
    if (theSource == TheSource::isReplaced && source.origin != SoundOrigin::cut)
        model.library().deleteItems({source});
    select(model, outcome.added);
    co_await model.library().saved();
    QString text = pieces.size() == 1 ? u"Added “%1” to your library."_s.arg(pieces.first().name)
                                      : u"Added %1 sounds to your library."_s.arg(pieces.size());
    if (model.settings().alsoFinalCut() && canSendToFinalCut(model)) {
        try {
            FinalCut::send(clips, model.library().folder(), kEventName, model.services().apps, model.services().clock);
            text += u" They're also in Final Cut Pro."_s;
        } catch (const std::exception& error) {
            outcome.end = FlowEnd::failed;
            outcome.sentence = messageOf(error);
            model.say(outcome.sentence, Tone::error);
            co_return std::move(outcome);
        }
    }
    model.say(text);
    co_return std::move(outcome);
}

QCoro::Task<FilesOutcome> saveToDesktop(AppModel& model)
{
    const QList<Piece> pieces = chosenPieces(model);
    FilesOutcome outcome = co_await savePieces(model, pieces);
    if (outcome.end == FlowEnd::failed)
        model.say(outcome.sentence, Tone::error);
    else if (outcome.end == FlowEnd::done)
        model.say(pieces.size() == 1 ? u"Saved “%1.wav” to %2."_s.arg(pieces.first().name, folderNameOf(outcome))
                                     : u"Saved %1 sounds to %2."_s.arg(pieces.size()).arg(folderNameOf(outcome)));
    co_return std::move(outcome);
}

QCoro::Task<FilesOutcome> saveToDesktop(AppModel& model, QList<SoundItem> items)
{
    const QList<Piece> pieces = wholePieces(model, items);
    FilesOutcome outcome = co_await savePieces(model, pieces);
    if (outcome.end == FlowEnd::failed)
        model.say(outcome.sentence, Tone::error);
    else if (outcome.end == FlowEnd::done)
        model.say(u"Saved %1 sounds to %2."_s.arg(items.size()).arg(folderNameOf(outcome)));
    co_return std::move(outcome);
}

QCoro::Task<FilesOutcome> sendToFinalCut(AppModel& model, QList<SoundItem> items)
{
    if (items.isEmpty() || !canSendToFinalCut(model))
        co_return FilesOutcome{};
    const auto working = model.work().beginAlone(Kind::sending);
    if (!working)
        co_return FilesOutcome{FlowEnd::isAtWork, {}, {}};
    FilesOutcome outcome{FlowEnd::done, {}, {}};
    // The files stay for ever: the application refers to them where they lie.
    const QString folder = model.library().folder() + u"/FinalCut"_s;
    try {
        QList<FinalCut::Clip> clips;
        const QList<Piece> pieces = wholePieces(model, items);
        for (const Piece& piece : pieces) {
            const QString path = freePathFor(folder, piece.name);
            const ExportResult result = co_await exportPiece(model, piece, path);
            outcome.paths << path;
            clips << clipOf(piece.name, path, result);
        }
        FinalCut::send(clips, folder, kEventName, model.services().apps, model.services().clock);
    } catch (const std::exception& error) {
        outcome.end = FlowEnd::failed;
        outcome.sentence = messageOf(error);
        model.say(outcome.sentence, Tone::error);
        co_return std::move(outcome);
    }
    model.say(u"Sent %1 sounds to Final Cut Pro."_s.arg(items.size()));
    co_return std::move(outcome);
}

bool canSendToFinalCut(const AppModel& model)
{
    return FinalCut::isInstalled(model.services().apps);
}

void showLibraryFolder(const AppModel& model)
{
    model.services().apps.showFolder(model.library().folder());
}

void showFile(const AppModel& model, const SoundItem& item)
{
    model.services().apps.reveal(model.library().path(item));
}

} // namespace tonequill
