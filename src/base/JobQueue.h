#pragma once

#include "base/Progress.h"

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

namespace tonequill {

// A piece of work for another thread. It ends once: it was run, or it was
// cancelled while it waited for a thread. Any threads.
class Job : public std::enable_shared_from_this<Job> {
public:
    // `progress` may be null: such a job can't be cancelled.
    explicit Job(ProgressPtr progress) : m_progress(std::move(progress)) {}
    virtual ~Job() = default;
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    const ProgressPtr& progress() const { return m_progress; }
    bool hasEnded() const;
    // Blocks. REQUIRES: this isn't a worker's thread; a job waits for no other.
    void waitForEnd() const;

protected:
    // On a worker's thread. Nothing may leave it.
    virtual void run() = 0;
    // Instead of run(), on the thread that cancels.
    virtual void withdraw() = 0;

private:
    friend class JobQueue;
    enum class State : std::uint8_t { queued, running, ended };
    bool claim(); // true for the one who may end it
    void end();

    ProgressPtr m_progress;
    Progress::Watch m_watch;
    mutable std::mutex m_mutex; // guards m_state
    mutable std::condition_variable m_hasEnded;
    State m_state = State::queued;
};

// Threads that take jobs in their order. They start when the first job comes.
class JobQueue {
public:
    // `niceness` as of nice(1): how much the threads give way to others.
    JobQueue(const char* name, int threads, int niceness = 0);
    // Jobs that can be cancelled are; the others are done first.
    ~JobQueue();
    JobQueue(const JobQueue&) = delete;
    JobQueue& operator=(const JobQueue&) = delete;

    enum class Place : std::uint8_t { last, first };
    void add(const std::shared_ptr<Job>& job, Place place = Place::last);
    // A job that still waits for a thread here, by its progress; or null.
    std::shared_ptr<Job> waiting(const ProgressPtr& progress) const;
    // Takes the job out if it still waits. It then ends without having run.
    static void cancel(Job& job);
    int threadCount() const { return m_threadCount; }

private:
    struct Shared;
    static void work(const std::shared_ptr<Shared>& shared);

    int m_threadCount;
    std::shared_ptr<Shared> m_shared;
};

} // namespace tonequill
