#pragma once

#include "base/Background.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace tonequill::test {

// Keeps workers busy until a test lets them go. It may go before its jobs.
class Gate {
public:
    Gate() = default;
    ~Gate() { open(); }
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    // A job that waits here.
    const std::function<void()>& job() const { return m_job; }
    void open() const
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

// All threads of a queue are busy: what is asked of it waits.
class HeldBack {
public:
    explicit HeldBack(JobQueue& queue)
    {
        for (int i = 0; i < queue.threadCount(); ++i)
            startFlow(background(m_flows, queue, m_gate.job()));
        m_gate.waitFor(queue.threadCount());
    }
    void letGo() const { m_gate.open(); }

private:
    FlowGroup m_flows; // outlives the gate, which opens when it goes
    Gate m_gate;
};

} // namespace tonequill::test
