// The library's sounds on their way to the Auto Folder.

#include "app/model/AppModel.h"
#include "base/Background.h"

using namespace std::chrono_literals;

namespace tonequill {

namespace {

constexpr auto kDebounce = 1000ms; // a burst of changes makes one run

} // namespace

QCoro::Task<> AppModel::syncAutoFolder()
{
    QList<AutoFolder::Sound> sounds;
    for (const SoundItem& item : m_library->items())
        sounds.append({item.id, item.name, m_library->path(item), item.duration});
    const int copied = co_await m_autoFolder.sync(sounds);
    if (copied >= 1)
        say(m_autoFolder.copiedText(copied));
}

void AppModel::watchAutoFolder()
{
    if (m_watch != Watch::off)
        return;
    connect(m_library.get(), &LibraryStore::itemInserted, this, &AppModel::wakeAutoFolder);
    connect(m_library.get(), &LibraryStore::itemChanged, this, &AppModel::wakeAutoFolder);
    connect(m_library.get(), &LibraryStore::itemRemoved, this, &AppModel::wakeAutoFolder);
    connect(&m_autoFolder, &AutoFolder::settingsChanged, this, &AppModel::wakeAutoFolder);
    startFlow(runAutoFolder());
}

void AppModel::wakeAutoFolder()
{
    if (m_watch == Watch::running)
        m_changedDuringRun = true; // the next run catches it
    if (m_watch != Watch::resting)
        return;
    m_watch = Watch::waking;
    startFlow(wakeLater());
}

QCoro::Task<> AppModel::wakeLater()
{
    co_await m_flows.pause(m_services.clock, kDebounce);
    startFlow(runAutoFolder());
}

QCoro::Task<> AppModel::runAutoFolder()
{
    m_watch = Watch::running;
    m_changedDuringRun = false;
    co_await syncAutoFolder();
    m_watch = Watch::resting;
    if (m_changedDuringRun)
        wakeAutoFolder();
}

} // namespace tonequill
