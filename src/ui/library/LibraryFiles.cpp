#include "ui/library/LibraryFiles.h"

#include "app/delivery/StagingFlows.h"
#include "app/library/ImportFlows.h"
#include "base/Background.h"
#include "ui/kit/DragOut.h"
#include "ui/library/DroppedFiles.h"

namespace tonequill {

LibraryFiles::LibraryFiles(AppModel& app, const LibraryListModel& list, std::function<void()> askForFiles)
    : m_app(app),
      m_list(list),
      m_askForFiles(std::move(askForFiles))
{}

void LibraryFiles::add(const QStringList& paths)
{
    if (!paths.isEmpty())
        startFlow(importURLs(m_app, paths));
}

bool LibraryFiles::acceptsDrop(const QList<QUrl>& urls) const
{
    return !DroppedFiles::wanted(urls).isEmpty();
}

bool LibraryFiles::invitesDrop(const QList<QUrl>& urls) const
{
    return acceptsDrop(urls) && !DroppedFiles::comeFromApp(urls);
}

void LibraryFiles::drop(const QList<QUrl>& urls)
{
    add(DroppedFiles::wanted(urls));
}

void LibraryFiles::dragRow(int row, QQuickItem* from)
{
    const QList<SoundItem> sounds = m_list.meantBy(row);
    if (sounds.size() == 1) { // one that can't be staged goes out under the library's own name
        DragOut::startLater(from, {dragProvider(m_app, sounds.first()).path}, sounds.first().name);
    } else {
        const StagedFiles files = stageFiles(m_app, sounds);
        DragOut::startLater(from, files.paths, files.label);
    }
}

} // namespace tonequill
