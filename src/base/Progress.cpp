#include "base/Progress.h"

#include <utility>

namespace tonequill {

void Progress::cancel()
{
    std::vector<Watcher> watchers;
    {
        const std::scoped_lock lock(m_mutex);
        m_cancelled.store(true, std::memory_order_relaxed);
        watchers = std::exchange(m_watchers, {});
    }
    for (const Watcher& watcher : watchers)
        watcher.cancelled();
}

Progress::Watch Progress::watch(const std::shared_ptr<Progress>& progress, std::function<void()> cancelled)
{
    Watch watch;
    {
        const std::scoped_lock lock(progress->m_mutex);
        if (!progress->isCancelled()) {
            watch.m_progress = progress;
            watch.m_number = ++progress->m_newest;
            progress->m_watchers.push_back({watch.m_number, std::move(cancelled)});
            return watch;
        }
    }
    cancelled();
    return watch;
}

Progress::Watch::~Watch()
{
    if (!m_progress)
        return;
    const std::scoped_lock lock(m_progress->m_mutex);
    std::erase_if(m_progress->m_watchers, [this](const Watcher& watcher) { return watcher.number == m_number; });
}

Progress::Watch::Watch(Watch&& other) noexcept : m_progress(std::move(other.m_progress)), m_number(other.m_number)
{}

Progress::Watch& Progress::Watch::operator=(Watch&& other) noexcept
{
    std::swap(m_progress, other.m_progress); // the other one forgets what was watched here
    std::swap(m_number, other.m_number);
    return *this;
}

} // namespace tonequill
