#include "app/delivery/ExportFlows.h"

#include "app/delivery/PartExport.h"
#include "app/model/AppModel.h"
#include "base/Background.h"
#include "library/delivery/FinalCut.h"
#include "platform/desktop/OtherApps.h"
#include "platform/files/ScratchFile.h"
#include "platform/media/NamedFailures.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

using Kind = FlowsAtWork::Kind;
using Part = EditorModel::Part;

const QString kExtension = u"wav"_s;
const QString kEventName = u"Tonequill"_s;

// A stretch of a sound, and what it is to be called.
struct Piece {
    SoundItem source;
    Part part;
    QString name;
    std::optional<bool> nameIsAuto;
    EffectSettings effects;
};

// Names, tags and where it is from, as the source has them now.
QList<Piece> piecesOf(const SoundItem& source, const std::vector<Part>& parts, const EffectSettings& effects)
{
    const QStringList names = PartExport::names(source, parts);
    QList<Piece> pieces;
    for (std::size_t i = 0; i < parts.size(); ++i)
        pieces.append(
            {source, parts[i], names[qsizetype(i)], parts.size() == 1 ? source.nameIsAuto : std::optional(false), effects});
    return pieces;
}

QList<Piece> chosenPieces(const AppModel& model)
{
    const SoundItem* source = model.selectedItem();
    if (!source)
        return {};
    return piecesOf(*source, PartExport::usable(model.editor().parts()), PartExport::effectsFor(model.editor(), *source));
}

QList<Piece> wholePieces(const AppModel& model, const QList<SoundItem>& items)
{
    QList<Piece> pieces;
    for (const SoundItem& item : items)
        pieces.append({item, {0, item.duration, {}}, item.name, {}, PartExport::effectsFor(model.editor(), item)});
    return pieces;
}

// A new file in a folder of the user's, or of another program's.
QCoro::Task<PartExport::NewFile> exportInto(AppModel& model, QString folder, Piece piece)
{
    const auto progress = std::make_shared<Progress>();
    const auto work = [source = model.library().path(piece.source), piece, folder, progress] {
        return PartExport::exportInto(folder, piece.name, source, piece.part.start, piece.part.end, piece.effects,
                                      progress.get());
    };
    return background(model.flows(), model.services().workers.shown(), work, progress);
}

FinalCut::Clip clipOf(const QString& name, const QString& path, const ExportResult& result)
{
    return FinalCut::Clip::make(name, path, result.frames, result.sampleRate, result.channels);
}

struct AddedPiece {
    SoundItem item;
    ExportResult result;
};

void describe(SoundItem& record, const Piece& piece)
{
    record.name = piece.name;
    record.nameIsAuto = piece.nameIsAuto;
    record.sourceID = piece.source.sourceID;
    record.license = piece.source.license;
    record.credit = piece.source.credit;
    record.pageURL = piece.source.pageURL;
}

QCoro::Task<AddedPiece> addPiece(AppModel& model, Piece piece)
{
    const ScratchFile file = ScratchFile::withExtension(kExtension);
    const auto progress = std::make_shared<Progress>();
    const auto work = [source = model.library().path(piece.source), piece, path = file.path(), progress] {
        return failingAs(piece.name, [&] {
            return PartExport::exportWithEffects(source, piece.part.start, piece.part.end, piece.effects, path, progress.get());
        });
    };
    const ExportResult result = co_await background(model.flows(), model.services().workers.shown(), work, progress);
    SoundInfo info;
    info.name = piece.name;
    const SoundItem imported = co_await model.library().importFile(file.path(), SoundOrigin::cut, piece.source.tags, info);
    const SoundItem item = model.library().update(imported, [&piece](SoundItem& record) { describe(record, piece); });
    co_return AddedPiece{item, result};
}

// What was changed in the source while its parts were made goes with them: by the user,
// or by what was heard in it.
void carryOver(AppModel& model, const QList<Piece>& pieces, const QList<AddedPiece>& added)
{
    const SoundItem& before = pieces.first().source;
    const SoundItem* const now = model.library().find(before.id);
    if (!now || *now == before)
        return;
    std::vector<Part> parts;
    for (const Piece& piece : pieces)
        parts.push_back(piece.part);
    const QList<Piece> changed = piecesOf(SoundItem(*now), parts, {});
    LibraryStore::Changes changes(model.library());
    for (qsizetype i = 0; i < added.size(); ++i) {
        const SoundItem* const record = model.library().find(added[i].item.id);
        if (!record)
            continue;
        changes.update(*record, [&](SoundItem& stored) {
            const Piece& piece = changed[i];
            if (stored.name == pieces[i].name && stored.nameIsAuto == pieces[i].nameIsAuto)
                describe(stored, piece);
            if (stored.tags == before.tags)
                stored.tags = piece.source.tags;
        });
    }
}

// As they are in the library now, without those that are no longer there.
QList<SoundItem> stillThere(const AppModel& model, const QList<AddedPiece>& added)
{
    QList<SoundItem> items;
    for (const AddedPiece& one : added) {
        if (const SoundItem* item = model.library().find(one.item.id))
            items << *item;
    }
    return items;
}

QList<FinalCut::Clip> clipsOf(const AppModel& model, const QList<AddedPiece>& added)
{
    QList<FinalCut::Clip> clips;
    for (const AddedPiece& one : added) {
        if (const SoundItem* item = model.library().find(one.item.id))
            clips << clipOf(item->name, model.library().path(*item), one.result);
    }
    return clips;
}

// Writes the document and opens it. Throws FileError.
QCoro::Task<> sendClips(AppModel& model, QList<FinalCut::Clip> clips, QString folder)
{
    const auto write = [clips, folder, &clock = model.services().clock] {
        return FinalCut::write(clips, folder, kEventName, clock);
    };
    const QString document = co_await background(model.flows(), model.services().workers.shown(), write);
    FinalCut::send(document, model.services().apps);
}

// Opens what was added.
void select(AppModel& model, const QList<SoundItem>& added)
{
    if (added.isEmpty())
        return model.selection().openNewest();
    QSet<QUuid> ids;
    for (const SoundItem& item : added)
        ids << item.id;
    model.setMulti(ids); // before the selection, which would replace it
    model.setSelection(added.first().id);
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
            const PartExport::NewFile file = co_await exportInto(model, folder, piece);
            outcome.paths << file.path;
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
        co_return AddOutcome{FlowEnd::isAtWork, {}, {}, {}};
    AddOutcome outcome{FlowEnd::done, {}, {}, {}};
    const auto fail = [&model, &outcome](const QString& sentence) {
        outcome.end = FlowEnd::failed;
        outcome.sentence = sentence;
        model.say(sentence, Tone::error);
    };
    QList<AddedPiece> added;
    try {
        for (const Piece& piece : std::as_const(pieces)) {
            const AddedPiece one = co_await addPiece(model, piece);
            added << one;
        }
    } catch (const std::exception& error) { // what was finished stays, and so does the source
        outcome.added = stillThere(model, added);
        for (const Piece& piece : pieces.sliced(added.size()))
            outcome.uncut << piece.name;
        fail(messageOf(error));
        co_return std::move(outcome);
    }
    carryOver(model, pieces, added);
    outcome.added = stillThere(model, added);
    const SoundItem& source = pieces.first().source;
    bool isSaved = true;
    if (theSource == TheSource::isReplaced && source.origin != SoundOrigin::cut) {
        auto leaving = model.library().deleteItems({source}); // the list has lost it already
        select(model, stillThere(model, added));
        isSaved = co_await model.flows().until(std::move(leaving));
    } else {
        select(model, outcome.added);
        co_await model.library().saved();
    }
    if (!isSaved) {
        fail(u"The library could not be written: the disk may be full or read-only."_s);
        co_return std::move(outcome);
    }
    QString text =
        pieces.size() == 1
            ? u"Added “%1” to your library."_s.arg((outcome.added.isEmpty() ? pieces.first().name : outcome.added.first().name))
            : u"Added %1 sounds to your library."_s.arg(pieces.size());
    const QList<FinalCut::Clip> clips = clipsOf(model, added); // one may have been deleted again
    if (model.settings().alsoFinalCut() && canSendToFinalCut(model) && !clips.isEmpty()) {
        try {
            co_await sendClips(model, clips, model.library().folder());
            text += u" They're also in Final Cut Pro."_s;
        } catch (const std::exception& error) {
            fail(messageOf(error));
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
            const PartExport::NewFile file = co_await exportInto(model, folder, piece);
            outcome.paths << file.path;
            clips << clipOf(piece.name, file.path, file.result);
        }
        co_await sendClips(model, clips, folder);
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

} // namespace tonequill
