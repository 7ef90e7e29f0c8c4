#include "ui/WindowModel.h"

#include "base/Background.h"
#include "ui/DragOut.h"
#include "ui/DroppedFiles.h"

#include <QQuickWindow>

namespace tonequill {

static_assert(int(AppSection::library) == WindowModel::Library && int(AppSection::find) == WindowModel::Discover &&
              int(AppSection::studio) == WindowModel::Studio && int(AppSection::generate) == WindowModel::Create);

WindowModel::WindowModel(AppModel& app, std::function<void()> askForFiles)
    : m_app(app),
      m_askForFiles(std::move(askForFiles)),
      m_library(app),
      m_sound(app),
      m_autoFolder(app.autoFolder())
{
    connect(&app, &AppModel::sectionChanged, this, &WindowModel::sectionChanged);
    connect(&app, &AppModel::noticeChanged, this, &WindowModel::noticeChanged);
    connect(&app, &AppModel::workingTextChanged, this, &WindowModel::workingTextChanged);
    connect(&app, &AppModel::isWorkingChanged, this, [this] {
        m_isAdding = m_isAdding && isWorking();
        Q_EMIT isWorkingChanged();
    });
}

SettingsView* WindowModel::settings()
{
    if (!m_settings)
        m_settings = std::make_unique<SettingsView>(m_app, ThemeStore::shared());
    return m_settings.get();
}

void WindowModel::addToLibrary()
{
    m_isAdding = true;
    startFlow(m_app.addToLibrary());
}

void WindowModel::saveToDesktop()
{
    startFlow(m_app.saveToDesktop());
}

void WindowModel::sendToFinalCut()
{
    if (const SoundItem* item = m_app.selectedItem())
        startFlow(m_app.sendToFinalCut({*item}));
}

void WindowModel::dragParts(QQuickItem* from)
{
    dragOut(from, m_app.stageSelectionFiles());
}

void WindowModel::dragRow(int row, QQuickItem* from)
{
    const QList<SoundItem> sounds = m_library.meantBy(row);
    if (sounds.size() == 1) // one that can't be staged goes out under the library's own name
        dragOut(from, {{m_app.dragProvider(sounds.first()).path}, sounds.first().name});
    else
        dragOut(from, m_app.stageFiles(sounds));
}

void WindowModel::dragOut(QQuickItem* from, const AppModel::StagedFiles& files)
{
    // Queued, so that the event that began the drag has been dealt with when it blocks.
    QMetaObject::invokeMethod(
        from, [from, files] { DragOut::start(from, files.paths, files.label, from->window()->effectiveDevicePixelRatio()); },
        Qt::QueuedConnection);
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

bool WindowModel::invitesDrop(const QList<QUrl>& urls) const
{
    return acceptsDrop(urls) && !DroppedFiles::comeFromApp(urls);
}

void WindowModel::drop(const QList<QUrl>& urls)
{
    addFiles(DroppedFiles::wanted(urls));
}

} // namespace tonequill
