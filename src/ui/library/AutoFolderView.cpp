#include "ui/library/AutoFolderView.h"

#include <QDateTime>
#include <QDir>
#include <QLocale>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace tonequill {

AutoFolderView::AutoFolderView(AutoFolder& folder)
    : m_folder(folder),
      m_panel(OpenPanel::Wanted::folder, u"Choose where Tonequill keeps a copy of your sounds, for example a folder in Movies."_s,
              u"Use This Folder"_s, [this](const QStringList& paths) { m_folder.chooseFolder(paths.first()); })
{
    connect(&folder, &AutoFolder::changed, this, &AutoFolderView::changed);
}

QString AutoFolderView::folderText() const
{
    return m_folder.folderName().isEmpty() ? u"No folder chosen"_s : m_folder.folderName();
}

QString AutoFolderView::chooserText() const
{
    return hasFolder() ? u"Change…"_s : u"Choose Folder…"_s;
}

QString AutoFolderView::problem() const
{
    return isCopying() ? QString() : m_folder.problem();
}

QString AutoFolderView::copyingText() const
{
    if (!isCopying())
        return {};
    const int at = std::min(m_folder.stepsDone() + 1, m_folder.stepCount());
    return u"Copying %1 of %2…"_s.arg(at).arg(m_folder.stepCount());
}

QString AutoFolderView::standText() const
{
    const bool isTold = !hasFolder() || isCopying() || !m_folder.problem().isEmpty();
    return isTold ? QString() : u"%1 sounds in the folder"_s.arg(m_folder.copiedCount());
}

double AutoFolderView::progress() const
{
    return isCopying() ? double(m_folder.stepsDone()) / m_folder.stepCount() : 0;
}

QString AutoFolderView::checkedText() const
{
    if (!m_folder.lastSync())
        return {};
    const QDateTime epoch(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    const QDateTime at = epoch.addMSecs(qint64(*m_folder.lastSync() * 1000)).toLocalTime();
    const bool isToday = at.date() == QDate::currentDate();
    return u"Checked "_s +
           (isToday ? QLocale().toString(at.time(), QLocale::ShortFormat) : QLocale().toString(at.date(), QLocale::ShortFormat));
}

void AutoFolderView::chooseFolder(QQuickWindow* window)
{
    const QString movies = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    m_panel.open(window, QFileInfo(movies).isDir() ? movies : QDir::homePath());
}

} // namespace tonequill
