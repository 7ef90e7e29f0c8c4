#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace tonequill::test {

// Keeps workers busy until a test lets them go. It may go before its jobs.
class Gate {
public:
    ~Gate() { open(); }

    // A job that waits here.
    const std::function<void()>& job() const { return m_job; }
    void open()
    {
        const std::scoped_lock lock(m_shared->mutex);
        m_shared->isOpen = true;
        m_shared->changed.notify_all();
    }
    // Until so many wait here.
    void waitFor(int count) const
    {
        std::unique_lock lock(m_shared->mutex);
        m_shared->changed.wait(lock, [&] { return m_shared->waiting >= count; });
    }

private:
    struct Shared {
        std::mutex mutex;
        std::condition_variable changed;
        int waiting = 0;
        bool isOpen = false;
    };
    std::shared_ptr<Shared> m_shared = std::make_shared<Shared>();
    std::function<void()> m_job = [shared = m_shared] {
        std::unique_lock lock(shared->mutex);
        ++shared->waiting;
        shared->changed.notify_all();
        shared->changed.wait(lock, [&shared] { return shared->isOpen; });
    };
};

} // namespace tonequill::test
