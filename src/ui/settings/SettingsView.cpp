#include "ui/settings/SettingsView.h"

#include "app/delivery/ExportFlows.h"

#include <QDir>
#include <QLocale>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

QString place(QStandardPaths::StandardLocation location)
{
    return QStandardPaths::writableLocation(location);
}

bool isSame(const QString& a, const QString& b)
{
    return QDir::cleanPath(a) == QDir::cleanPath(b);
}

} // namespace

SettingsView::SettingsView(AppModel& app, ThemeStore& themes)
    : m_app(app),
      m_store(themes),
      m_themes(themes),
      m_folderPanel(OpenPanel::Wanted::folder, u"Choose Folder"_s, u"Save Here"_s,
                    [this](const QStringList& paths) { m_app.settings().setSaveFolderPath(paths.first()); })
{
    connect(&themes, &ThemeStore::changed, this, &SettingsView::appearanceChanged);
    connect(&app.settings(), &Settings::changed, this, &SettingsView::changed);
    connect(&app.library(), &LibraryStore::itemInserted, this, &SettingsView::soundCountsChanged);
    connect(&app.library(), &LibraryStore::itemRemoved, this, &SettingsView::soundCountsChanged);
    connect(&app, &AppModel::searchableCountChanged, this, &SettingsView::soundCountsChanged);
    refresh();
}

QStringList SettingsView::appearances() const
{
    QStringList labels;
    for (const Appearance appearance : kAppearances)
        labels << appearanceLabel(appearance);
    return labels;
}

void SettingsView::setAppearance(int row)
{
    if (row >= 0 && row < int(kAppearances.size()))
        m_store.setAppearance(kAppearances[std::size_t(row)]);
}

SettingsView::SaveTo SettingsView::saveTo() const
{
    const QString folder = saveFolder();
    if (isSame(folder, place(QStandardPaths::DesktopLocation)))
        return Desktop;
    return isSame(folder, place(QStandardPaths::DownloadLocation)) ? Downloads : OtherFolder;
}

QString SettingsView::saveFolderName() const
{
    switch (saveTo()) {
    case Desktop:
        return u"Desktop"_s;
    case Downloads:
        return u"Downloads"_s;
    case OtherFolder: {
        const QString name = QDir(saveFolder()).dirName();
        return name.isEmpty() ? saveFolder() : name; // the root has none
    }
    }
    Q_UNREACHABLE();
}

void SettingsView::saveToDesktop()
{
    m_app.settings().setSaveFolderPath({});
}

void SettingsView::saveToDownloads()
{
    const QString folder = place(QStandardPaths::DownloadLocation);
    QDir().mkpath(folder);
    m_app.settings().setSaveFolderPath(folder);
}

void SettingsView::chooseSaveFolder(QQuickWindow* window)
{
    m_folderPanel.open(window, saveFolder());
}

QString SettingsView::soundCounts() const
{
    const QLocale words(QLocale::English); // as the words around the numbers
    return words.toString(m_app.library().items().size()) + u" saved, "_s + words.toString(m_app.searchableCount()) +
           u" searchable"_s;
}

void SettingsView::refresh()
{
    m_hasFinalCut = canSendToFinalCut(m_app);
    Q_EMIT changed();
}

void SettingsView::showLibrary()
{
    showLibraryFolder(m_app);
}

} // namespace tonequill
