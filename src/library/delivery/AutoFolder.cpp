#include "library/delivery/AutoFolder.h"

#include "audio/export/AudioExporter.h"
#include "base/Background.h"
#include "base/Uuid.h"
#include "library/delivery/FolderBookmark.h"
#include "platform/files/Files.h"
#include "platform/files/ScratchFile.h"
#include "platform/files/SystemPath.h"
#include "platform/media/NamedFailures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr auto kEnabledKey = "autoFolderOn"_L1;
constexpr auto kBookmarkKey = "autoFolderBookmark"_L1;
constexpr auto kNameKey = "autoFolderName"_L1;
constexpr auto kManifestKey = "autoFolderManifest"_L1;

// In the Auto Folder, hidden: where files are made before they get their names.
constexpr auto kWorkshop = ".tonequill-copying"_L1;

QSet<QString> namesIn(const QString& folder)
{
    const QStringList names =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::NoSort);
    return QSet<QString>(names.begin(), names.end());
}

// Removes the workshop with what a killed run left in it.
void clearWorkshop(const QString& folder)
{
    const QString path = folder + u'/' + kWorkshop;
    if (QFileInfo(path).isSymLink())
        QFile::remove(path); // it isn't ours, and what it leads to is nobody's business
    else if (QFileInfo::exists(path))
        QDir(path).removeRecursively();
}

const QString kUnsaved = u"The settings could not be saved: the disk may be full or read-only."_s;

// Why a run can't go on, not even with the next sound.
class RunEnds : public UserError {
public:
    using UserError::UserError;
};

// Where the chosen folder is now. Throws RunEnds.
QString whereIs(const QByteArray& bookmark)
{
    try {
        return FolderBookmark::resolve(bookmark);
    } catch (const FileError&) {
        throw RunEnds(u"Tonequill can't open that folder any more. Choose it again."_s);
    }
}

// Makes a file aside and gives it its name. The folder may go while that takes its time:
// it is asked for again, and never made.
void deliverNew(const QByteArray& bookmark, const QString& fileName, const std::function<void(const QString& path)>& write)
{
    const QString folder = whereIs(bookmark);
    const QString path = folder + u'/' + fileName;
    const QString workshop = folder + u'/' + kWorkshop;
    if (::mkdir(systemPath(workshop).constData(), 0777) != 0 && errno != EEXIST)
        throw FileError(FileError::Action::write, path, errno);
    const ScratchFile unfinished(workshop + u'/' + fileName);
    const auto end = qScopeGuard([&] {
        QFile::remove(unfinished.path());
        ::rmdir(systemPath(workshop).constData());
    });
    write(unfinished.path());
    Files::syncFile(unfinished.path());
    if (whereIs(bookmark) != folder)
        throw FileError(FileError::Action::write, path, ENOENT);
    Files::renameToFree(unfinished.path(), path);
}

} // namespace

AutoFolder::AutoFolder(Defaults& defaults, Clock& clock, Workers& workers, Export write)
    : m_defaults(defaults),
      m_clock(clock),
      m_workers(workers),
      m_export(std::move(write)),
      m_journal(QFileInfo(defaults.path()).path() + u"/auto-folder-journal"_s),
      m_enabled(defaults.boolean(kEnabledKey).value_or(false)),
      m_folderName(defaults.text(kNameKey).value_or(QString())),
      m_bookmark(defaults.data(kBookmarkKey)),
      m_manifest(decodeManifest(defaults.data(kManifestKey).value_or(QByteArray())).value_or(AutoFolderManifest()))
{
    if (!m_bookmark)
        return;
    const AutoFolderManifest done = m_journal.read(FolderBookmark::originalPath(*m_bookmark));
    m_manifest.insert(done);
    if (!done.isEmpty())
        saveManifest();
}

void AutoFolder::setEnabled(bool enabled)
{
    if (m_enabled == enabled)
        return;
    m_enabled = enabled;
    m_defaults.setBoolean(kEnabledKey, enabled);
    if (!m_defaults.isSaved())
        m_problem = kUnsaved;
    Q_EMIT settingsChanged();
    Q_EMIT changed();
}

bool AutoFolder::isAt(const QString& folder) const
{
    try {
        return m_bookmark && FolderBookmark::resolve(*m_bookmark) == QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    } catch (const FileError&) {
        return false;
    }
}

void AutoFolder::chooseFolder(const QString& folder)
{
    const auto bookmark = FolderBookmark::make(folder);
    if (!bookmark)
        return;
    m_folders.cancel();
    m_bookmark = bookmark;
    m_folderName = QFileInfo(FolderBookmark::originalPath(*bookmark)).fileName();
    m_manifest.clear();
    m_problem.clear();
    m_defaults.setData(kBookmarkKey, *bookmark);
    m_defaults.setText(kNameKey, m_folderName);
    saveManifest();
    m_isKept = m_defaults.isSaved();
    if (!m_isKept)
        m_problem = kUnsaved;
    Q_EMIT settingsChanged();
    Q_EMIT changed();
}

QCoro::Task<int> AutoFolder::sync(QList<Sound> sounds)
{
    if (!m_enabled || !m_bookmark || m_isSyncing)
        co_return 0;
    setSyncing(true);
    const auto end = qScopeGuard([this] { setSyncing(false); });
    m_isKept = m_isKept || m_defaults.saveAgain();
    if (!m_isKept) { // a restart would know nothing of the folder, and deliver everything again
        record({}, kUnsaved);
        co_return 0;
    }
    const Ticket ticket = m_folders.current();
    const Outcome outcome = co_await deliver(sounds, ticket);
    if (!ticket.isCurrent())
        co_return 0;
    record(outcome.entries, outcome.problem);
    co_return int(outcome.copied);
}

QCoro::Task<AutoFolder::Outcome> AutoFolder::deliver(QList<Sound> sounds, Ticket ticket)
{
    Outcome outcome;
    try {
        const auto tidy = [bookmark = *m_bookmark] { clearWorkshop(whereIs(bookmark)); };
        const auto look = [bookmark = *m_bookmark] {
            const QString folder = whereIs(bookmark);
            clearWorkshop(folder);
            return namesIn(folder);
        };
        const QSet<QString> existing = co_await background(m_flows, m_workers.behind(), look);
        const QList<Step> steps = ticket.isCurrent() ? plan(sounds, m_manifest, existing) : QList<Step>();
        m_stepCount = int(steps.size());
        Q_EMIT changed();
        for (const Step& step : steps) {
            if (!ticket.isCurrent())
                break;
            co_await take(step, sounds, outcome);
            ++m_stepsDone;
            Q_EMIT changed();
        }
        // A folder that was renamed in the middle took a file that was being made along.
        if (!steps.isEmpty())
            co_await background(m_flows, m_workers.behind(), tidy);
    } catch (const RunEnds& end) {
        outcome.problem = end.message();
    }
    co_return std::move(outcome);
}

QCoro::Task<> AutoFolder::take(Step step, const QList<Sound>& sounds, Outcome& outcome)
{
    const Sound sound = *std::find_if(sounds.cbegin(), sounds.cend(), [&step](const Sound& one) { return one.id == step.id; });
    const QString key = uuidText(step.id);
    const AutoFolderEntry entry{step.fileName, sound.name};
    const auto progress = std::make_shared<Progress>();
    const auto work = [step, sound, entry, key, progress, bookmark = *m_bookmark, write = m_export, journal = m_journal] {
        const QString journalFolder = FolderBookmark::originalPath(bookmark);
        if (!journal.reserve(journalFolder, key, entry))
            throw RunEnds(kUnsaved); // what can't be noted would be delivered again
        if (step.rename) {
            const QString folder = whereIs(bookmark);
            Files::renameToFree(folder + u'/' + *step.rename, folder + u'/' + step.fileName);
        } else {
            deliverNew(bookmark, step.fileName, [&](const QString& path) { write(sound, path, *progress); });
        }
        return journal.append(journalFolder, key, entry);
    };
    bool isNoted = true;
    try {
        isNoted = co_await background(m_flows, m_workers.behind(), work, progress);
    } catch (const RunEnds&) {
        throw;
    } catch (const std::exception& error) {
        outcome.problem = messageOf(error); // the last one counts; the next run tries again
        co_return;
    }
    outcome.entries.insert(key, entry);
    outcome.copied += step.rename ? 0 : 1;
    if (!isNoted)
        throw RunEnds(kUnsaved);
}

void AutoFolder::exportSound(const Sound& sound, const QString& path, const Progress& progress)
{
    // The edge fades of every delivery, too short to be heard as such.
    constexpr double kFadeInSeconds = 0.004;
    constexpr double kFadeOutSeconds = 0.03;
    const ExportRequest whole{sound.source, 0, sound.duration, ExportPreset::anyEditor, kFadeInSeconds, kFadeOutSeconds};
    failingAs(sound.name, [&] { AudioExporter::exportRange(whole, path, &progress); });
}

QString AutoFolder::copiedText(int copied) const
{
    const QString name = m_folderName.isEmpty() ? u"your folder"_s : m_folderName;
    return copied == 1 ? u"Copied 1 sound to %1."_s.arg(name) : u"Copied %1 sounds to %2."_s.arg(copied).arg(name);
}

void AutoFolder::record(const AutoFolderManifest& entries, const QString& problem)
{
    m_manifest.insert(entries);
    m_lastSync = m_clock.secondsSince2001();
    m_problem = problem;
    if (!entries.isEmpty())
        saveManifest();
    else if (m_defaults.isSaved())
        m_journal.clear(); // of steps that came to nothing
    Q_EMIT changed();
}

void AutoFolder::saveManifest()
{
    m_defaults.setData(kManifestKey, encodeManifest(m_manifest));
    if (m_defaults.isSaved())
        m_journal.clear(); // else it is all that a restart finds
}

void AutoFolder::setSyncing(bool isSyncing)
{
    m_isSyncing = isSyncing;
    m_stepCount = 0;
    m_stepsDone = 0;
    Q_EMIT changed();
}

} // namespace tonequill
