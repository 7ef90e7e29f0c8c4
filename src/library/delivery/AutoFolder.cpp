#include "library/delivery/AutoFolder.h"

#include "audio/export/AudioExporter.h"
#include "base/Background.h"
#include "base/Uuid.h"
#include "library/delivery/FolderBookmark.h"
#include "platform/files/Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>

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
    m_stepCount = m_stepsDone = 0; // of a run that another folder was meant by
    m_defaults.setData(kBookmarkKey, *bookmark);
    m_defaults.setText(kNameKey, m_folderName);
    saveManifest();
    Q_EMIT settingsChanged();
    Q_EMIT changed();
}

QCoro::Task<int> AutoFolder::sync(QList<Sound> sounds)
{
    if (!m_enabled || !m_bookmark || m_isSyncing)
        co_return 0;
    setSyncing(true);
    const auto end = qScopeGuard([this] { setSyncing(false); });
    const Ticket ticket = m_folders.current();
    Outcome outcome;
    try {
        const QString folder = FolderBookmark::resolve(*m_bookmark);
        outcome = co_await deliver(folder, sounds, ticket);
    } catch (const FileError&) {
        outcome.problem = u"Tonequill can't open that folder any more. Choose it again."_s;
    }
    if (!ticket.isCurrent())
        co_return 0;
    record(outcome.entries, outcome.problem);
    co_return outcome.copied;
}

QCoro::Task<AutoFolder::Outcome> AutoFolder::deliver(QString folder, QList<Sound> sounds, Ticket ticket)
{
    Outcome outcome;
    clearWorkshop(folder);
    const QList<Step> steps = plan(sounds, m_manifest, namesIn(folder));
    const auto end = qScopeGuard([folder] { clearWorkshop(folder); });
    m_stepCount = int(steps.size());
    for (const Step& step : steps) {
        if (!ticket.isCurrent())
            break;
        const Sound sound =
            *std::find_if(sounds.cbegin(), sounds.cend(), [&step](const Sound& one) { return one.id == step.id; });
        try {
            co_await take(folder, step, sound);
            outcome.entries.insert(uuidText(step.id), {step.fileName, sound.name});
            outcome.copied += step.rename ? 0 : 1;
        } catch (const std::exception& error) {
            outcome.problem = messageOf(error); // the last one counts; the next run tries again
        }
        ++m_stepsDone;
        Q_EMIT changed();
    }
    co_return outcome;
}

QCoro::Task<> AutoFolder::take(QString folder, Step step, Sound sound)
{
    const QString path = folder + u'/' + step.fileName;
    const QString key = uuidText(step.id);
    const AutoFolderEntry entry{step.fileName, sound.name};
    const QString journalFolder = FolderBookmark::originalPath(*m_bookmark);
    const auto progress = std::make_shared<Progress>();
    const auto work = [=, write = m_export, journal = m_journal] {
        if (step.rename) {
            Files::renameToFree(folder + u'/' + *step.rename, path);
        } else {
            const QString workshop = folder + u'/' + kWorkshop;
            const QString unfinished = workshop + u'/' + step.fileName;
            if (!QDir().mkpath(workshop))
                throw FileError(FileError::Action::write, path, errno);
            const auto end = qScopeGuard([unfinished] { QFile::remove(unfinished); });
            write(sound, unfinished, *progress);
            Files::syncFile(unfinished);
            Files::renameToFree(unfinished, path);
        }
        journal.append(journalFolder, key, entry);
    };
    co_await background(m_flows, m_workers.behind(), work, progress);
}

void AutoFolder::exportSound(const Sound& sound, const QString& path, const Progress& progress)
{
    // The edge fades of every delivery, too short to be heard as such.
    constexpr double kFadeInSeconds = 0.004;
    constexpr double kFadeOutSeconds = 0.03;
    AudioExporter::exportRange({sound.source, 0, sound.duration, ExportPreset::anyEditor, kFadeInSeconds, kFadeOutSeconds}, path,
                               &progress);
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
