#pragma once

#include "ui/AutoFolderView.h"
#include "ui/LibraryListModel.h"
#include "ui/SettingsView.h"
#include "ui/SoundView.h"

#include <QObject>
#include <QUrl>

#include <functional>

namespace tonequill {

// The root of the window's QML: AppModel as the surfaces need it. One thread.
class WindowModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window is given one")
    Q_PROPERTY(Section section READ section WRITE setSection NOTIFY sectionChanged FINAL)
    Q_PROPERTY(QString noticeText READ noticeText NOTIFY noticeChanged FINAL)
    Q_PROPERTY(bool noticeIsError READ noticeIsError NOTIFY noticeChanged FINAL)
    Q_PROPERTY(bool isWorking READ isWorking NOTIFY isWorkingChanged FINAL)
    Q_PROPERTY(QString workingText READ workingText NOTIFY workingTextChanged FINAL)
    Q_PROPERTY(bool canSendToFinalCut READ canSendToFinalCut NOTIFY isWorkingChanged FINAL)
    Q_PROPERTY(bool isAdding READ isAdding NOTIFY isWorkingChanged FINAL)
    Q_PROPERTY(tonequill::LibraryListModel* library READ library CONSTANT FINAL)
    Q_PROPERTY(tonequill::SoundView* sound READ sound CONSTANT FINAL)
    Q_PROPERTY(tonequill::AutoFolderView* autoFolder READ autoFolder CONSTANT FINAL)
    Q_PROPERTY(tonequill::SettingsView* settings READ settings CONSTANT FINAL)

public:
    // QML takes only capitals; the order is AppSection's.
    enum Section { Library, Discover, Studio, Create };
    Q_ENUM(Section)

    // `askForFiles` shows a file panel and gives what was chosen to addFiles.
    WindowModel(AppModel& app, std::function<void()> askForFiles);

    Section section() const { return Section(int(m_app.section())); }
    void setSection(Section section) { m_app.setSection(AppSection(int(section))); }
    QString noticeText() const { return m_app.noticeText(); }
    bool noticeIsError() const { return m_app.noticeIsError(); }
    bool isWorking() const { return m_app.isWorking(); }
    QString workingText() const { return m_app.workingText(); }
    bool canSendToFinalCut() const { return m_app.canSendToFinalCut(); }
    bool isAdding() const { return m_isAdding && isWorking(); }
    LibraryListModel* library() { return &m_library; }
    SoundView* sound() { return &m_sound; }
    AutoFolderView* autoFolder() { return &m_autoFolder; }
    // Made when they are first asked for. REQUIRES: the process has its ThemeStore.
    SettingsView* settings();

    Q_INVOKABLE void chooseFiles() const { m_askForFiles(); }
    // What becomes of the open sound's marked parts.
    Q_INVOKABLE void addToLibrary();
    Q_INVOKABLE void saveToDesktop();
    Q_INVOKABLE void sendToFinalCut(); // the whole open sound
    // Drags them out of `from`, rendered; and the sounds of a row of the list.
    Q_INVOKABLE void dragParts(QQuickItem* from);
    Q_INVOKABLE void dragRow(int row, QQuickItem* from);

    void addFiles(const QStringList& paths);
    // Whether a drop of these would bring in anything, and the drop.
    Q_INVOKABLE bool acceptsDrop(const QList<QUrl>& urls) const;
    // Whether the list lights up for it: never for a drag out of this window.
    Q_INVOKABLE bool invitesDrop(const QList<QUrl>& urls) const;
    Q_INVOKABLE void drop(const QList<QUrl>& urls);

Q_SIGNALS:
    void sectionChanged();
    void noticeChanged();
    void isWorkingChanged();
    void workingTextChanged();

private:
    static void dragOut(QQuickItem* from, const AppModel::StagedFiles& files);

    AppModel& m_app;
    std::function<void()> m_askForFiles;
    LibraryListModel m_library;
    SoundView m_sound;
    AutoFolderView m_autoFolder;
    std::unique_ptr<SettingsView> m_settings;
    bool m_isAdding = false;
};

} // namespace tonequill
