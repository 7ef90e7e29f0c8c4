#include "app/delivery/PartExport.h"

#include "audio/effects/EffectRenderer.h"
#include "library/records/FileNames.h"
#include "library/records/NamePolicy.h"
#include "platform/files/Files.h"
#include "platform/files/ScratchFile.h"
#include "platform/media/AudioFile.h"
#include "platform/media/NamedFailures.h"

#include <QDir>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace tonequill::PartExport {

namespace {

const QString kExtension = u"wav"_s;
constexpr double kShortestUsable = 0.02; // seconds

// Against clicks at the cuts. A rendered sound has had the user's own fades.
constexpr double kFadeIn = 0.004;
constexpr double kFadeOut = 0.03;
constexpr double kFadeOutRendered = 0.01;
constexpr double kBehindTheEnd = 1; // the exporter cuts it back to the file

} // namespace

std::vector<EditorModel::Part> usable(std::vector<EditorModel::Part> parts)
{
    std::erase_if(parts, [](const EditorModel::Part& part) { return !(part.end - part.start > kShortestUsable); });
    return parts;
}

QStringList names(const SoundItem& item, const std::vector<EditorModel::Part>& parts)
{
    if (parts.size() < 2)
        return {item.name};
    const QString prefix = NamePolicy::isGeneric(item.name) ? QString() : item.name + u" – "_s;
    QStringList bases;
    QStringList names;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        bases << parts[i].label.value_or(u"Part %1"_s.arg(i + 1));
        const auto occurrence = bases.count(bases.last());
        names << prefix + bases.last() + (occurrence > 1 ? u" %1"_s.arg(occurrence) : QString());
    }
    return names;
}

EffectSettings effectsFor(const EditorModel& editor, const SoundItem& item)
{
    return editor.item() && editor.item()->id == item.id ? editor.effects() : EffectSettings();
}

ExportResult exportWithEffects(const QString& source, double start, double end, const EffectSettings& effects,
                               const QString& path, Progress* progress)
{
    constexpr auto kPreset = ExportPreset::anyEditor;
    if (effects.isNeutral())
        return AudioExporter::exportRange({source, start, end, kPreset, kFadeIn, kFadeOut}, path, progress);
    const ScratchFile rendered(EffectRenderer::render(source, start, end, effects, progress));
    const double seconds = AudioFile(rendered.path()).durationSeconds();
    return AudioExporter::exportRange({rendered.path(), 0, seconds + kBehindTheEnd, kPreset, kFadeIn, kFadeOutRendered}, path,
                                      progress);
}

NewFile exportInto(const QString& folder, const QString& name, const QString& source, double start, double end,
                   const EffectSettings& effects, Progress* progress)
{
    if (!QDir().mkpath(folder)) // as a desktop may be missing
        throw FileError(FileError::Action::write, folder, errno);
    return failingAs(name, [&] {
        ScratchFile aside = ScratchFile::hiddenIn(folder);
        const ExportResult result = exportWithEffects(source, start, end, effects, aside.path(), progress);
        Files::syncFile(aside.path());
        const QString path = Files::moveToFree(aside.path(), folder, FileNames::safe(name), kExtension);
        aside.keep();
        return NewFile{path, result};
    });
}

} // namespace tonequill::PartExport
