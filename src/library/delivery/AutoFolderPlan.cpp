// What is missing in the Auto Folder, by names alone.

#include "base/Text.h"
#include "base/Uuid.h"
#include "library/delivery/AutoFolder.h"
#include "library/records/FileNames.h"
#include "platform/files/Files.h"

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

// Some file systems take "DOG" and "dog", or two ways to write "é", for one name.
QString folded(const QString& name)
{
    return text::lowercase(name).normalized(QString::NormalizationForm_C);
}

// The file names that are taken, and more as they are given out.
class Names {
public:
    explicit Names(const QSet<QString>& existing)
    {
        for (const QString& name : existing)
            m_taken.insert(folded(name));
    }

    void release(const QString& fileName)
    {
        m_taken.remove(folded(fileName));
        m_counts.clear();
    }

    // A file name for the sound that is free; it is taken from then on.
    QString take(const QString& name)
    {
        const QString base = FileNames::safe(name);
        QString candidate = Files::fittingName(base, kExtension);
        if (m_taken.contains(folded(candidate))) {
            int& count = m_counts[folded(base)];
            count = std::max(count, 1);
            do
                candidate = Files::countedName(base, ++count, kExtension);
            while (m_taken.contains(folded(candidate)));
        }
        m_taken.insert(folded(candidate));
        return candidate;
    }

private:
    static inline const QString kExtension = u"wav"_s;

    QSet<QString> m_taken;
    QHash<QString, int> m_counts; // none up to this one is free; for thousands of sounds of one name
};

} // namespace

QList<AutoFolder::Step> AutoFolder::plan(const QList<Sound>& sounds, const AutoFolderManifest& manifest,
                                         const QSet<QString>& existing)
{
    Names names(existing);
    QList<Step> steps;
    for (const Sound& sound : sounds) {
        const auto entry = manifest.find(uuidText(sound.id));
        if (entry == manifest.end()) {
            steps << Step{sound.id, names.take(sound.name), std::nullopt};
        } else if (entry->name != sound.name && existing.contains(entry->file)) {
            names.release(entry->file); // a rename may reuse its own place
            steps << Step{sound.id, names.take(sound.name), entry->file};
        }
        // Else there is nothing to do, or the user removed the file: its entry keeps
        // the old name, so that this is decided alike for ever.
    }
    return steps;
}

} // namespace tonequill
