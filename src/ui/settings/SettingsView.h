#pragma once

#include "app/model/AppModel.h"
#include "ui/kit/OpenPanel.h"
#include "ui/settings/ThemesModel.h"

#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace tonequill {

// The settings as their window needs them. Every change takes effect, and is
// on the disk, at once. One thread.
class SettingsView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window is given one")
    Q_PROPERTY(tonequill::ThemesModel* themes READ themes CONSTANT FINAL)
    Q_PROPERTY(QStringList appearances READ appearances CONSTANT FINAL)
    Q_PROPERTY(int appearance READ appearance WRITE setAppearance NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(bool shortOnlyByDefault READ shortOnlyByDefault WRITE setShortOnlyByDefault NOTIFY changed FINAL)
    Q_PROPERTY(bool hideCreditSounds READ hideCreditSounds WRITE setHideCreditSounds NOTIFY changed FINAL)
    Q_PROPERTY(bool alsoFinalCut READ alsoFinalCut WRITE setAlsoFinalCut NOTIFY changed FINAL)
    Q_PROPERTY(bool hasFinalCut READ hasFinalCut NOTIFY changed FINAL)
    Q_PROPERTY(SaveTo saveTo READ saveTo NOTIFY changed FINAL)
    Q_PROPERTY(QString saveFolderName READ saveFolderName NOTIFY changed FINAL)
    Q_PROPERTY(QString saveFolder READ saveFolder NOTIFY changed FINAL)
    Q_PROPERTY(QString soundCounts READ soundCounts NOTIFY soundCountsChanged FINAL)

public:
    enum SaveTo { Desktop, Downloads, OtherFolder };
    Q_ENUM(SaveTo)

    // What is borrowed outlives it.
    SettingsView(AppModel& app, ThemeStore& themes);

    ThemesModel* themes() { return &m_themes; }

    // Light or dark: the row of `appearances`, in the order of Appearance.
    QStringList appearances() const;
    int appearance() const { return int(m_store.appearance()); }
    void setAppearance(int row);

    bool shortOnlyByDefault() const { return m_app.settings().shortOnlyByDefault(); }
    void setShortOnlyByDefault(bool value) { m_app.settings().setShortOnlyByDefault(value); }
    bool hideCreditSounds() const { return m_app.settings().hideCreditSounds(); }
    void setHideCreditSounds(bool value) { m_app.settings().setHideCreditSounds(value); }
    bool alsoFinalCut() const { return m_app.settings().alsoFinalCut(); }
    void setAlsoFinalCut(bool value) { m_app.settings().setAlsoFinalCut(value); }
    bool hasFinalCut() const { return m_hasFinalCut; }

    // Where sounds are saved now: a chosen folder that is gone means the desktop.
    SaveTo saveTo() const;
    QString saveFolderName() const;
    QString saveFolder() const { return m_app.settings().saveFolder(); }
    Q_INVOKABLE void saveToDesktop();
    Q_INVOKABLE void saveToDownloads(); // makes the folder where there is none
    // Asks for another one with a panel over `window`.
    Q_INVOKABLE void chooseSaveFolder(QQuickWindow* window);

    // "128 saved, 302,114 searchable"
    QString soundCounts() const;
    Q_INVOKABLE void showLibrary();

    // Looks again at what can change without the program: the other
    // applications and the folders. To be called when the settings are shown.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void appearanceChanged();
    void changed();
    void soundCountsChanged();

private:
    AppModel& m_app;
    ThemeStore& m_store;
    ThemesModel m_themes;
    OpenPanel m_folderPanel;
    bool m_hasFinalCut = false;
};

} // namespace tonequill
