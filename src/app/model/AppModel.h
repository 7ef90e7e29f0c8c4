#pragma once

#include "app/model/AppSection.h"
#include "app/model/LibrarySession.h"
#include "app/model/Services.h"
#include "audio/export/AudioExporter.h"
#include "base/FlowGroup.h"
#include "base/Ticket.h"
#include "editor/EditorModel.h"
#include "library/delivery/AutoFolder.h"
#include "library/delivery/FinalCut.h"
#include "library/store/LibraryStore.h"
#include "platform/network/LanguageModel.h"
#include "platform/process/Defaults.h"
#include "understanding/naming/SmartNamer.h"

#include <QCoroTask>
#include <QObject>
#include <QSet>
#include <QUuid>

#include <memory>
#include <optional>

namespace tonequill {

// Whether a message tells of a failure.
enum class Tone { plain, error };

// The transient message line.
struct Notice {
    QUuid id;
    QString text;
    bool isError = false;
};

// A file on its way into the library.
struct IncomingFile {
    QUuid id;
    QString name;
    ProgressPtr progress; // 0 while it waits for its turn
};

// The one object that everything hangs from: the library, the open sound, and
// what the whole window shares. Flows that act on sounds are operations of it,
// in files named by their subject. One thread; it lives until the program ends.
class AppModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(tonequill::AppSection section READ section WRITE setSection NOTIFY sectionChanged FINAL)
    Q_PROPERTY(QUuid selection READ selectionOrNull NOTIFY selectionChanged FINAL)
    Q_PROPERTY(QString noticeText READ noticeText NOTIFY noticeChanged FINAL)
    Q_PROPERTY(bool noticeIsError READ noticeIsError NOTIFY noticeChanged FINAL)
    Q_PROPERTY(bool isWorking READ isWorking NOTIFY isWorkingChanged FINAL)
    Q_PROPERTY(QString workingText READ workingText NOTIFY workingTextChanged FINAL)

public:
    AppModel(const Services& services, std::unique_ptr<LibraryStore> library);
    ~AppModel() override;

    // Ends every flow: those at work go on with Cancelled, one that is started later
    // ends at its first wait. What was begun to be saved is saved.
    void close();

    LibraryStore& library() { return *m_library; }
    const LibraryStore& library() const { return *m_library; }
    EditorModel& editor() { return m_editor; }
    const EditorModel& editor() const { return m_editor; }
    const Services& services() const { return m_services; }

    AppSection section() const { return m_section; }
    void setSection(AppSection section);

    // Which sound is open, and which are marked. The editor has the open one: it
    // loads a sound when another one is opened.
    Selection& selection() { return m_selection; }
    const Selection& selection() const { return m_selection; }
    void setSelection(std::optional<QUuid> id) { m_selection.setID(id); }
    QUuid selectionOrNull() const { return m_selection.id().value_or(QUuid()); }
    const SoundItem* selectedItem() const { return m_selection.item(); }
    const QSet<QUuid>& multi() const { return m_selection.multi(); }
    void setMulti(QSet<QUuid> multi) { m_selection.setMulti(std::move(multi)); }
    QList<SoundItem> selectedItems() const { return m_selection.items(); }
    void selectAllInLibrary(const QList<SoundItem>& items) { m_selection.selectAll(items); }

    // The library's list: what is searched for, and what its pointer and keys mean.
    LibrarySession& librarySession() { return m_librarySession; }

    // Shows a message: 3.5 seconds, or 7 for an error. It replaces the one before
    // at once, and lives its own full time.
    void say(const QString& text, Tone tone = Tone::plain);
    const std::optional<Notice>& notice() const { return m_notice; }
    QString noticeText() const { return m_notice ? m_notice->text : QString(); }
    bool noticeIsError() const { return m_notice && m_notice->isError; }

    // A search asked for from elsewhere, which the Discover section picks up.
    const std::optional<QString>& pendingSearch() const { return m_pendingSearch; }
    void setPendingSearch(std::optional<QString> search) { m_pendingSearch = std::move(search); }

    // True while a flow is at work.
    bool isWorking() const { return !m_flowsAtWork.isEmpty(); }
    // What it is at, of the newest flow that tells; empty if none does.
    QString workingText() const;

    // The settings; each setter writes through at once.
    bool createWithCredits() const { return m_createWithCredits; }
    void setCreateWithCredits(bool value);
    bool shortOnlyByDefault() const { return m_shortOnlyByDefault; }
    void setShortOnlyByDefault(bool value);
    bool hideCreditSounds() const { return m_hideCreditSounds; }
    void setHideCreditSounds(bool value);
    bool alsoFinalCut() const { return m_alsoFinalCut; }
    void setAlsoFinalCut(bool value);
    const std::optional<QString>& saveFolderPath() const { return m_saveFolderPath; }
    void setSaveFolderPath(std::optional<QString> path);
    // The chosen folder while it exists, else the desktop.
    QString saveFolder() const;
    static QString saveFolder(const Defaults& defaults); // as it is stored

    // Flows (ImportFlows.cpp).

    // Takes files into the library, one after the other, and opens the last.
    QCoro::Task<> importURLs(QStringList paths);
    // Removes sounds for good: no question, no undo.
    void deleteItems(const QList<SoundItem>& items);
    // The files that are coming in, in their order.
    const QList<IncomingFile>& incoming() const { return m_incoming; }

    // The folder that is kept up to date with the library (AutoFolderSync.cpp).
    AutoFolder& autoFolder() { return m_autoFolder; }
    // One run; says how many sounds were copied, if any.
    QCoro::Task<> syncAutoFolder();
    // Runs now, and from now on a second after every change of the library or of
    // the folder's settings.
    void watchAutoFolder();

    // Names a sound by what was heard in it (NamingFlows.cpp): only where the
    // name is still the program's to choose, and the ear is sure.
    void applyHeard(const SoundItem& item, const SoundHeard& heard);

    // Flows (SmartActions.cpp). A name comes from the language model, or by rule
    // from what is heard where there is none.

    // Puts a name and tags for the sound before the user, if the sound is still
    // open when they are found. The newest question counts.
    QCoro::Task<> suggestSmartName(SoundItem item);
    // Gives the sound what is suggested in the editor; an empty name does nothing.
    void useSmartSuggestion(const SoundItem& item);
    // Names those sounds whose names say nothing. A sound that is deleted or gets
    // another name meanwhile is left as it is.
    QCoro::Task<> smartRename(QList<SoundItem> items);
    // Whether smartRename is at work on the sound now.
    bool isBeingNamed(const QUuid& id) const { return m_beingNamed.contains(id); }

    // Flows (ExportFlows.cpp). Each works from the open sound, its parts and its
    // effects as they are when it starts.

    // Makes library sounds of the editor's parts. A raw import is replaced by
    // them; a sound that was itself cut stays.
    enum class TheSource { isReplaced, stays };
    QCoro::Task<> addToLibrary(TheSource theSource = TheSource::isReplaced);
    // Writes the editor's parts, or whole sounds, to the save folder.
    QCoro::Task<> saveToDesktop();
    QCoro::Task<> saveToDesktop(QList<SoundItem> items);
    // Exports whole sounds beside the library and hands them over. Nothing happens
    // where the application isn't installed.
    QCoro::Task<> sendToFinalCut(QList<SoundItem> items);
    bool canSendToFinalCut() const { return FinalCut::isInstalled(m_services.apps); }

    // The library's folder in the desktop's file manager.
    void showLibraryFolder() { m_services.apps.showFolder(m_library->folder()); }

    // Files under readable names for a drag, complete when these return
    // (StagingFlows.cpp). What can't be staged is left out.
    struct StagedFiles {
        QStringList paths;
        QString label; // of the drag
        bool operator==(const StagedFiles&) const = default;
    };
    // The parts of the editor, rendered. It blocks, because a drag can't wait.
    StagedFiles stageSelectionFiles() const;
    StagedFiles stageFiles(const QList<SoundItem>& items) const;
    // One sound; the library's own file where it can't be staged.
    struct DragFile {
        QString path;
        QString suggestedName; // without an extension
        bool operator==(const DragFile&) const = default;
    };
    DragFile dragProvider(const SoundItem& item) const;

Q_SIGNALS:
    void sectionChanged();
    void selectionChanged();
    void noticeChanged();
    void isWorkingChanged();
    void workingTextChanged();
    void beingNamedChanged(const QUuid& id);
    void incomingChanged();
    void settingsChanged();

private:
    // Keeps isWorking on for as long as it lives: the whole way through a flow,
    // whichever way out it takes.
    class Working {
    public:
        explicit Working(AppModel& model, const QString& text = {});
        ~Working();
        Working(const Working&) = delete;
        Working& operator=(const Working&) = delete;

    private:
        AppModel& m_model;
        QString m_text;
    };

    struct AddedPart {
        SoundItem item;
        FinalCut::Clip clip;
    };

    void wakeAutoFolder();
    QCoro::Task<> wakeLater();
    QCoro::Task<> runAutoFolder();
    QCoro::Task<QStringList> heardWords(SoundItem item, Lane lane);
    QCoro::Task<SoundNaming> smartNaming(SoundItem item, Lane lane);
    void give(const SoundItem& item, const SoundNaming& naming);
    void openSelection();
    EffectSettings effectsFor(const SoundItem& item) const;
    QCoro::Task<ExportResult> exportPart(SoundItem item, double start, double end, EffectSettings effects, QString path);
    QCoro::Task<AddedPart> addPart(SoundItem source, EditorModel::Part part, QString name, bool isOnly, EffectSettings effects);

    Services m_services;
    EditorModel m_editor;
    std::unique_ptr<LibraryStore> m_library;
    Selection m_selection;
    LibrarySession m_librarySession;
    AppSection m_section = AppSection::library;
    std::optional<Notice> m_notice;
    std::optional<QString> m_pendingSearch;
    QStringList m_flowsAtWork; // the text of each
    Tickets m_suggestions;
    QSet<QUuid> m_beingNamed;
    QList<IncomingFile> m_incoming;
    AutoFolder m_autoFolder;
    enum class Watch { off, resting, waking, running } m_watch = Watch::off;
    bool m_changedDuringRun = false;
    bool m_createWithCredits;
    bool m_shortOnlyByDefault;
    bool m_hideCreditSounds;
    bool m_alsoFinalCut;
    std::optional<QString> m_saveFolderPath;
    FlowGroup m_flows; // last
};

} // namespace tonequill
