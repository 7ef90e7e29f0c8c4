#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace tonequill {

// The user's own cancel, or the end of whoever waited: an outcome, not an error,
// and never shown.
struct Cancelled {};

// How far a piece of background work has come, and whether it is still wanted.
// The worker writes the one and asks the other, the window or the terminal looks
// a few times a second; any threads.
class Progress {
public:
    // REQUIRES: 0 <= fraction <= 1.
    void set(double fraction) { m_fraction.store(fraction, std::memory_order_relaxed); }
    double fraction() const { return m_fraction.load(std::memory_order_relaxed); }

    // Asks the worker to stop at its next block; it then throws Cancelled. Work
    // that still waits for a worker ends at once.
    void cancel();
    bool isCancelled() const { return m_cancelled.load(std::memory_order_relaxed); }

    // Calls `cancelled` when it is cancelled, on the thread that cancels, for as long
    // as the watch is kept; at once if it is cancelled already.
    class Watch {
    public:
        Watch() = default;
        ~Watch();
        Watch(Watch&& other) noexcept;
        Watch& operator=(Watch&& other) noexcept;

    private:
        friend class Progress;
        std::shared_ptr<Progress> m_progress;
        int m_number = 0;
    };
    static Watch watch(const std::shared_ptr<Progress>& progress, std::function<void()> cancelled);

private:
    struct Watcher {
        int number = 0;
        std::function<void()> cancelled;
    };

    std::atomic<double> m_fraction = 0;
    std::atomic<bool> m_cancelled = false;
    std::mutex m_mutex; // guards what follows
    std::vector<Watcher> m_watchers;
    int m_newest = 0;
};

using ProgressPtr = std::shared_ptr<Progress>;

} // namespace tonequill
