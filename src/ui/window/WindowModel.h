#pragma once

#include "app/model/AppModel.h"
#include "ui/editor/SoundActions.h"
#include "ui/editor/SoundView.h"
#include "ui/library/AutoFolderView.h"
#include "ui/library/LibraryFiles.h"
#include "ui/settings/SettingsView.h"

#include <QObject>

namespace tonequill {

// The root of the window's QML: AppModel as the surfaces need it. One thread.
class WindowModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window is given one")
    Q_PROPERTY(Section section READ section WRITE setSection NOTIFY sectionChanged FINAL)
    Q_PROPERTY(QString noticeText READ noticeText NOTIFY noticeChanged FINAL)
    Q_PROPERTY(bool noticeIsError READ noticeIsError NOTIFY noticeChanged FINAL)
    Q_PROPERTY(QString workingText READ workingText NOTIFY workingTextChanged FINAL)
    Q_PROPERTY(tonequill::LibraryListModel* library READ library CONSTANT FINAL)
    Q_PROPERTY(tonequill::LibraryFiles* files READ files CONSTANT FINAL)
    Q_PROPERTY(tonequill::SoundView* sound READ sound CONSTANT FINAL)
    Q_PROPERTY(tonequill::SoundActions* soundActions READ soundActions CONSTANT FINAL)
    Q_PROPERTY(tonequill::AutoFolderView* autoFolder READ autoFolder CONSTANT FINAL)
    Q_PROPERTY(tonequill::SettingsView* settings READ settings CONSTANT FINAL)

public:
    // QML takes only capitals; the order is AppSection's.
    enum Section { Library, Discover, Studio, Create };
    Q_ENUM(Section)

    // `askForFiles` shows a file panel and gives what was chosen to files().
    WindowModel(AppModel& app, std::function<void()> askForFiles);

    Section section() const { return Section(int(m_app.section())); }
    void setSection(Section section) { m_app.setSection(AppSection(int(section))); }
    QString noticeText() const { return m_app.notices().text(); }
    bool noticeIsError() const { return m_app.notices().isError(); }
    QString workingText() const { return m_app.work().text(); }
    LibraryListModel* library() { return &m_library; }
    LibraryFiles* files() { return &m_files; }
    SoundView* sound() { return &m_sound; }
    SoundActions* soundActions() { return &m_soundActions; }
    AutoFolderView* autoFolder() { return &m_autoFolder; }
    // Made when they are first asked for. REQUIRES: the process has its ThemeStore.
    SettingsView* settings();

Q_SIGNALS:
    void sectionChanged();
    void noticeChanged();
    void workingTextChanged();

private:
    AppModel& m_app;
    LibraryListModel m_library;
    LibraryFiles m_files;
    SoundView m_sound;
    SoundActions m_soundActions;
    AutoFolderView m_autoFolder;
    std::unique_ptr<SettingsView> m_settings;
};

} // namespace tonequill
