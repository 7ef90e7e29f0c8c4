// What is missing in the Auto Folder, by names alone.

#include "base/Text.h"
#include "base/Uuid.h"
#include "library/AutoFolder.h"
#include "library/FileNames.h"
#include "platform/Files.h"

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

// Some file systems take "DOG" and "dog", or two ways to write "é", for one name.
QString folded(const QString& name)
{
    return text::lowercase(name).normalized(QString::NormalizationForm_C);
}

// A file name for the sound that isn't taken; it is from then on.
QString freeName(const QString& name, QSet<QString>& taken)
{
    const QString extension = u"wav"_s;
    constexpr qsizetype kRoomForCount = 12; // bytes for a blank and the count
    const QString base = FileNames::safe(name);
    QString candidate = Files::fittingName(base, extension);
    const qsizetype stemBytes = candidate.toUtf8().size() - extension.size() - 1;
    const bool isCut = candidate.size() < base.size() + 1 + extension.size();
    const QString stem = isCut ? text::firstBytes(base, stemBytes - kRoomForCount) : base;
    for (int count = 2; taken.contains(folded(candidate)); ++count)
        candidate = Files::fittingName(stem + u' ' + QString::number(count), extension);
    taken.insert(folded(candidate));
    return candidate;
}

} // namespace

QList<AutoFolder::Step> AutoFolder::plan(const QList<Sound>& sounds, const AutoFolderManifest& manifest,
                                         const QSet<QString>& existing)
{
    QSet<QString> taken;
    for (const QString& name : existing)
        taken.insert(folded(name));
    QList<Step> steps;
    for (const Sound& sound : sounds) {
        const auto entry = manifest.find(uuidText(sound.id));
        if (entry == manifest.end()) {
            steps << Step{sound.id, freeName(sound.name, taken), std::nullopt};
        } else if (entry->name != sound.name && existing.contains(entry->file)) {
            taken.remove(folded(entry->file)); // a rename may reuse its own place
            steps << Step{sound.id, freeName(sound.name, taken), entry->file};
        }
        // Else there is nothing to do, or the user removed the file: its entry keeps
        // the old name, so that this is decided alike for ever.
    }
    return steps;
}

} // namespace tonequill
