#pragma once

#include "app/model/AppSection.h"
#include "app/model/AutoFolderWatch.h"
#include "app/model/FlowsAtWork.h"
#include "app/model/Incoming.h"
#include "app/model/LibrarySession.h"
#include "app/model/NamesBeingFound.h"
#include "app/model/Notices.h"
#include "app/model/Services.h"
#include "app/model/Settings.h"
#include "base/FlowGroup.h"
#include "editor/EditorModel.h"
#include "library/delivery/AutoFolder.h"

#include <QObject>

#include <memory>
#include <optional>

namespace tonequill {

// The one object that everything hangs from: the library, the open sound, and
// what the whole window shares. It owns its parts and wires them. What is done with
// sounds are flows: free functions that take it, in headers by their subject. One
// thread; it lives until the program ends, and what is borrowed outlives it.
class AppModel : public QObject {
    Q_OBJECT

public:
    AppModel(const Services& services, std::unique_ptr<LibraryStore> library);
    ~AppModel() override;

    // Ends every flow: those at work go on with Cancelled, one that is started later
    // ends at its first wait. What was begun to be saved is saved.
    void close();
    // What its flows wait in.
    FlowGroup& flows() { return m_flows; }

    const Services& services() const { return m_services; }
    LibraryStore& library() { return *m_library; }
    const LibraryStore& library() const { return *m_library; }
    EditorModel& editor() { return m_editor; }
    const EditorModel& editor() const { return m_editor; }
    AutoFolder& autoFolder() { return m_autoFolder; }
    Settings& settings() { return m_settings; }
    const Settings& settings() const { return m_settings; }
    Notices& notices() { return m_notices; }
    const Notices& notices() const { return m_notices; }
    FlowsAtWork& work() { return m_work; }
    const FlowsAtWork& work() const { return m_work; }
    Incoming& incoming() { return m_incoming; }
    const Incoming& incoming() const { return m_incoming; }
    NamesBeingFound& names() { return m_names; }
    const NamesBeingFound& names() const { return m_names; }
    AutoFolderWatch& autoFolderWatch() { return m_autoFolderWatch; }

    AppSection section() const { return m_section; }
    void setSection(AppSection section);

    // Which sound is open, and which are marked. The editor has the open one: it
    // loads a sound when another one is opened.
    Selection& selection() { return m_selection; }
    const Selection& selection() const { return m_selection; }
    void setSelection(std::optional<QUuid> id) { m_selection.setID(id); }
    const SoundItem* selectedItem() const { return m_selection.item(); }
    const QSet<QUuid>& multi() const { return m_selection.multi(); }
    void setMulti(QSet<QUuid> multi) { m_selection.setMulti(std::move(multi)); }
    QList<SoundItem> selectedItems() const { return m_selection.items(); }
    // The library's list: what is searched for, and what its pointer and keys mean.
    LibrarySession& librarySession() { return m_librarySession; }

    void say(const QString& text, Tone tone = Tone::plain) { m_notices.say(text, tone); }
    // True while a flow is at work.
    bool isWorking() const { return m_work.isWorking(); }

    // A search asked for from elsewhere, which the Discover section picks up.
    const std::optional<QString>& pendingSearch() const { return m_pendingSearch; }
    void setPendingSearch(std::optional<QString> search) { m_pendingSearch = std::move(search); }

    // How many sounds the catalogue can find; none before it is loaded.
    std::int32_t searchableCount() const { return m_searchableCount; }
    void setSearchableCount(std::int32_t count);

Q_SIGNALS:
    void sectionChanged();
    void searchableCountChanged();

private:
    void openSelection();

    Services m_services;
    Settings m_settings;
    Notices m_notices;
    FlowsAtWork m_work;
    Incoming m_incoming;
    NamesBeingFound m_names;
    EditorModel m_editor;
    std::unique_ptr<LibraryStore> m_library;
    Selection m_selection;
    LibrarySession m_librarySession;
    AutoFolder m_autoFolder;
    AutoFolderWatch m_autoFolderWatch;
    AppSection m_section = AppSection::library;
    std::optional<QString> m_pendingSearch;
    std::int32_t m_searchableCount = 0;
    FlowGroup m_flows; // last
};

} // namespace tonequill
