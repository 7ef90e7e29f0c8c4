#pragma once

#include <atomic>
#include <memory>

namespace tonequill {

// How far a piece of background work has come. The worker writes, the window or
// the terminal looks a few times a second; any threads.
class Progress {
public:
    // REQUIRES: 0 <= fraction <= 1.
    void set(double fraction) { m_fraction.store(fraction, std::memory_order_relaxed); }
    double fraction() const { return m_fraction.load(std::memory_order_relaxed); }

    // Asks the worker to stop at its next block; it then throws Cancelled.
    void cancel() { m_cancelled.store(true, std::memory_order_relaxed); }
    bool isCancelled() const { return m_cancelled.load(std::memory_order_relaxed); }

private:
    std::atomic<double> m_fraction = 0;
    std::atomic<bool> m_cancelled = false;
};

using ProgressPtr = std::shared_ptr<Progress>;

// The user's own cancel: an outcome, not an error, and never shown.
struct Cancelled {};

} // namespace tonequill
