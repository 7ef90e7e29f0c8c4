#include "ui/WindowModel.h"

#include "base/Background.h"
#include "ui/DroppedFiles.h"

namespace tonequill {

static_assert(int(AppSection::library) == WindowModel::Library && int(AppSection::find) == WindowModel::Discover &&
              int(AppSection::studio) == WindowModel::Studio && int(AppSection::generate) == WindowModel::Create);

WindowModel::WindowModel(AppModel& app, std::function<void()> askForFiles)
    : m_app(app),
      m_askForFiles(std::move(askForFiles)),
      m_library(app),
      m_sound(app.editor())
{
    connect(&app, &AppModel::sectionChanged, this, &WindowModel::sectionChanged);
    connect(&app, &AppModel::noticeChanged, this, &WindowModel::noticeChanged);
}

void WindowModel::addFiles(const QStringList& paths)
{
    if (!paths.isEmpty())
        startFlow(m_app.importURLs(paths));
}

bool WindowModel::acceptsDrop(const QList<QUrl>& urls) const
{
    return !DroppedFiles::wanted(urls).isEmpty();
}

void WindowModel::drop(const QList<QUrl>& urls)
{
    addFiles(DroppedFiles::wanted(urls));
}

} // namespace tonequill
