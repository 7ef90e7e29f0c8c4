// The flows that make finished files of the open sound's parts and of whole sounds.

#include "app/delivery/PartExport.h"
#include "app/model/AppModel.h"
#include "base/Background.h"
#include "library/records/FileNames.h"
#include "platform/files/Files.h"
#include "platform/files/ScratchFile.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

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

} // namespace

// The effects of the editor belong to the sound that is open in it.
EffectSettings AppModel::effectsFor(const SoundItem& item) const
{
    return m_editor.item() && m_editor.item()->id == item.id ? m_editor.effects() : EffectSettings();
}

QCoro::Task<ExportResult> AppModel::exportPart(SoundItem item, double start, double end, EffectSettings effects, QString path)
{
    const auto work = [source = m_library->path(item), start, end, effects, path] {
        return PartExport::exportWithEffects(source, start, end, effects, path);
    };
    return background(m_flows, m_services.workers.shown(), work);
}

QCoro::Task<AppModel::AddedPart> AppModel::addPart(SoundItem source, EditorModel::Part part, QString name, bool isOnly,
                                                   EffectSettings effects)
{
    const ScratchFile file = ScratchFile::withExtension(kExtension);
    const ExportResult result = co_await exportPart(source, part.start, part.end, effects, file.path());
    const SoundItem added = co_await m_library->importFile(file.path(), SoundOrigin::cut, source.tags);
    const SoundItem item = m_library->update(added, [&](SoundItem& record) {
        record.name = name;
        record.nameIsAuto = isOnly ? source.nameIsAuto : std::optional(false);
        record.sourceID = source.sourceID;
        record.license = source.license;
        record.credit = source.credit;
        record.pageURL = source.pageURL;
    });
    co_return AddedPart{item, clipOf(name, m_library->path(item), result)};
}

QCoro::Task<> AppModel::addToLibrary(TheSource theSource)
{
    const std::vector<EditorModel::Part> parts = PartExport::usable(m_editor.parts());
    if (!selectedItem() || parts.empty())
        co_return;
    const Working working(*this);
    const SoundItem source = *selectedItem();
    const EffectSettings effects = effectsFor(source);
    const QStringList names = PartExport::names(source, parts);
    QList<FinalCut::Clip> clips;
    QSet<QUuid> ids;
    QUuid first;
    try {
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const AddedPart added = co_await addPart(source, parts[i], names[qsizetype(i)], parts.size() == 1, effects);
            clips << added.clip;
            ids << added.item.id;
            if (i == 0)
                first = added.item.id;
        }
    } catch (const std::exception& error) {
        say(messageOf(error), Tone::error);
        co_return; // what was finished stays, and so does the source
    }
    if (theSource == TheSource::isReplaced && source.origin != SoundOrigin::cut)
        m_library->deleteItems({source});
    setMulti(ids); // before the selection, which would replace it
    setSelection(first);
    QString text = parts.size() == 1 ? u"Added “%1” to your library."_s.arg(names.first())
                                     : u"Added %1 sounds to your library."_s.arg(parts.size());
    if (m_alsoFinalCut && canSendToFinalCut()) {
        try {
            FinalCut::send(clips, m_library->folder(), kEventName, m_services.apps, m_services.clock);
            text += u" They're also in Final Cut Pro."_s;
        } catch (const std::exception& error) {
            say(messageOf(error), Tone::error);
            co_return;
        }
    }
    say(text);
}

QCoro::Task<> AppModel::saveToDesktop()
{
    const std::vector<EditorModel::Part> parts = PartExport::usable(m_editor.parts());
    if (!selectedItem() || parts.empty())
        co_return;
    const Working working(*this);
    const SoundItem item = *selectedItem();
    const EffectSettings effects = effectsFor(item);
    const QStringList names = PartExport::names(item, parts);
    const QString folder = saveFolder();
    try {
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const QString path = freePathFor(folder, names[qsizetype(i)]);
            co_await exportPart(item, parts[i].start, parts[i].end, effects, path);
        }
    } catch (const std::exception& error) {
        say(messageOf(error), Tone::error);
        co_return; // the files that are written stay
    }
    const QString folderName = QFileInfo(folder).fileName();
    say(parts.size() == 1 ? u"Saved “%1.wav” to %2."_s.arg(names.first(), folderName)
                          : u"Saved %1 sounds to %2."_s.arg(parts.size()).arg(folderName));
}

QCoro::Task<> AppModel::saveToDesktop(QList<SoundItem> items)
{
    if (items.isEmpty())
        co_return;
    const Working working(*this);
    const QString folder = saveFolder();
    try {
        for (const SoundItem& item : std::as_const(items))
            co_await exportPart(item, 0, item.duration, effectsFor(item), freePathFor(folder, item.name));
    } catch (const std::exception& error) {
        say(messageOf(error), Tone::error);
        co_return;
    }
    say(u"Saved %1 sounds to %2."_s.arg(items.size()).arg(QFileInfo(folder).fileName()));
}

QCoro::Task<> AppModel::sendToFinalCut(QList<SoundItem> items)
{
    if (items.isEmpty() || !canSendToFinalCut())
        co_return;
    const Working working(*this);
    // The files stay for ever: the application refers to them where they lie.
    const QString folder = m_library->folder() + u"/FinalCut"_s;
    try {
        QList<FinalCut::Clip> clips;
        for (const SoundItem& item : std::as_const(items)) {
            const QString path = freePathFor(folder, item.name);
            const ExportResult result = co_await exportPart(item, 0, item.duration, effectsFor(item), path);
            clips << clipOf(item.name, path, result);
        }
        FinalCut::send(clips, folder, kEventName, m_services.apps, m_services.clock);
    } catch (const std::exception& error) {
        say(messageOf(error), Tone::error);
        co_return;
    }
    say(u"Sent %1 sounds to Final Cut Pro."_s.arg(items.size()));
}

} // namespace tonequill
