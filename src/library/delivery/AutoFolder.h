#pragma once

#include "base/FlowGroup.h"
#include "base/Ticket.h"
#include "base/Workers.h"
#include "library/delivery/AutoFolderManifest.h"
#include "platform/process/Defaults.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <QSet>
#include <QUuid>

#include <functional>
#include <optional>

namespace tonequill {

// Keeps one folder up to date with the library: a clean WAV for every sound,
// named after it. Three promises: nothing is deleted from the folder or written
// over, a file that the user deletes there is not copied again, and a renamed
// sound is a renamed file. A file appears under its name only when it is
// complete. The folder may go in the middle of a run, which then ends: it is asked
// for before each step and never made. One thread; only the copying leaves it. What is borrowed outlives it.
class AutoFolder : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool enabled READ enabled WRITE setEnabled NOTIFY changed FINAL)
    Q_PROPERTY(bool hasFolder READ hasFolder NOTIFY changed FINAL)
    Q_PROPERTY(QString folderName READ folderName NOTIFY changed FINAL)
    Q_PROPERTY(int copiedCount READ copiedCount NOTIFY changed FINAL)
    Q_PROPERTY(QString problem READ problem NOTIFY changed FINAL)
    Q_PROPERTY(bool isSyncing READ isSyncing NOTIFY changed FINAL)
    Q_PROPERTY(int stepCount READ stepCount NOTIFY changed FINAL)
    Q_PROPERTY(int stepsDone READ stepsDone NOTIFY changed FINAL)

public:
    struct Sound {
        QUuid id;
        QString name;
        QString source;      // its file in the library
        double duration = 0; // seconds
    };

    struct Step {
        QUuid id;
        QString fileName;              // to end up with
        std::optional<QString> rename; // the present file name; none: make the file

        bool operator==(const Step&) const = default;
    };

    // What is missing in a folder that holds the names `existing`, in the order of
    // the sounds. Pure.
    static QList<Step> plan(const QList<Sound>& sounds, const AutoFolderManifest& manifest, const QSet<QString>& existing);

    // Writes the sound's file. Throws; may leave half a file then. Any thread.
    using Export = std::function<void(const Sound& sound, const QString& path, const Progress& progress)>;
    static void exportSound(const Sound& sound, const QString& path, const Progress& progress);

    AutoFolder(Defaults& defaults, Clock& clock, Workers& workers, Export write = exportSound);
    // Ends a run. Nothing is delivered from then on.
    void close() { m_flows.end(); }

    bool enabled() const { return m_enabled; }
    void setEnabled(bool enabled);
    bool hasFolder() const { return m_bookmark.has_value(); }
    const QString& folderName() const { return m_folderName; } // empty while there is none
    int copiedCount() const { return int(m_manifest.size()); }
    const std::optional<double>& lastSync() const { return m_lastSync; } // seconds since 2001
    const QString& problem() const { return m_problem; }                 // empty: none
    bool isSyncing() const { return m_isSyncing; }
    // How far a run is.
    int stepCount() const { return m_stepCount; }
    int stepsDone() const { return m_stepsDone; }
    const AutoFolderManifest& manifest() const { return m_manifest; }

    // Whether it is at this path.
    bool isAt(const QString& folder) const;
    // Takes another folder, which gets every sound; the old one is left alone.
    // Nothing happens if it can't be kept.
    void chooseFolder(const QString& folder);

    // One run. How many files were copied; 0, at once, while it is off, has no
    // folder or is at it already.
    QCoro::Task<int> sync(QList<Sound> sounds);

    // What to say after a run that copied something.
    QString copiedText(int copied) const;

    // Takes in what a run has done.
    void record(const AutoFolderManifest& entries, const QString& problem);

Q_SIGNALS:
    // The switch or the folder: a reason for another run.
    void settingsChanged();
    // Anything that is shown, the settings included.
    void changed();

private:
    struct Outcome {
        AutoFolderManifest entries;
        int copied = 0;
        QString problem;
    };
    QCoro::Task<Outcome> deliver(QList<Sound> sounds, Ticket ticket);
    // What it did is in the outcome, whichever way it ends. Throws what ends the run.
    QCoro::Task<> take(Step step, const QList<Sound>& sounds, Outcome& outcome);
    void setSyncing(bool isSyncing);
    void saveManifest();

    Defaults& m_defaults;
    Clock& m_clock;
    Workers& m_workers;
    Export m_export;
    AutoFolderJournal m_journal;
    bool m_enabled = false;
    QString m_folderName;
    std::optional<QByteArray> m_bookmark;
    bool m_isKept = true; // the bookmark is on the disk
    AutoFolderManifest m_manifest;
    std::optional<double> m_lastSync;
    QString m_problem;
    bool m_isSyncing = false;
    int m_stepCount = 0;
    int m_stepsDone = 0;
    Tickets m_folders; // a run of an earlier folder has nothing to tell
    FlowGroup m_flows; // last
};

} // namespace tonequill
