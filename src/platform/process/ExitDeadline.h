#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace tonequill {

// Ends the process when it takes longer to end than it may: what the kernel holds,
// such as a read from a disk that is away, can't be cancelled. From its making until
// it goes.
class ExitDeadline {
public:
    // `leave` is called on a thread of its own when the time has passed; it doesn't
    // return. By default the files that are still temporary are removed, and the
    // process ends with 0.
    explicit ExitDeadline(std::chrono::milliseconds time, std::function<void()> leave = leaveAtOnce);
    ~ExitDeadline();
    ExitDeadline(const ExitDeadline&) = delete;
    ExitDeadline& operator=(const ExitDeadline&) = delete;

    [[noreturn]] static void leaveAtOnce();

private:
    std::mutex m_mutex; // guards m_isOver
    std::condition_variable m_changed;
    bool m_isOver = false;
    std::thread m_thread;
};

} // namespace tonequill
