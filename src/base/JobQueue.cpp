#include "base/JobQueue.h"

#include <algorithm>
#include <deque>
#include <string>
#include <thread>
#include <vector>

#ifdef __linux__
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace tonequill {

bool Job::hasEnded() const
{
    const std::scoped_lock lock(m_mutex);
    return m_state == State::ended;
}

void Job::waitForEnd() const
{
    std::unique_lock lock(m_mutex);
    m_hasEnded.wait(lock, [this] { return m_state == State::ended; });
}

bool Job::claim()
{
    const std::scoped_lock lock(m_mutex);
    if (m_state != State::queued)
        return false;
    m_state = State::running;
    return true;
}

void Job::end()
{
    const std::scoped_lock lock(m_mutex);
    m_state = State::ended;
    m_hasEnded.notify_all();
}

struct JobQueue::Shared {
    std::string name;
    int niceness = 0;
    std::mutex mutex; // guards what follows
    std::condition_variable isWanted;
    std::deque<std::shared_ptr<Job>> jobs;
    std::vector<std::shared_ptr<Job>> running;
    std::vector<std::thread> threads;
    bool isEnding = false;

    void remove(const Job* job)
    {
        const std::scoped_lock lock(mutex);
        std::erase_if(jobs, [job](const std::shared_ptr<Job>& other) { return other.get() == job; });
    }

    // Qt gives threads no nice level on Linux, and a user can't take one back: so
    // a thread has its own from birth.
    void dress() const
    {
#ifdef __linux__
        pthread_setname_np(pthread_self(), name.c_str());
        if (niceness != 0)
            setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), niceness);
#endif
    }
};

JobQueue::JobQueue(const char* name, int threads, int niceness) : m_threadCount(threads), m_shared(std::make_shared<Shared>())
{
    m_shared->name = name;
    m_shared->niceness = niceness;
}

JobQueue::~JobQueue()
{
    std::vector<std::shared_ptr<Job>> unwanted;
    {
        const std::scoped_lock lock(m_shared->mutex);
        unwanted.assign(m_shared->jobs.begin(), m_shared->jobs.end());
        unwanted.insert(unwanted.end(), m_shared->running.begin(), m_shared->running.end());
        m_shared->isEnding = true;
    }
    for (const auto& job : unwanted) {
        if (job->progress())
            job->progress()->cancel();
    }
    m_shared->isWanted.notify_all();
    for (std::thread& thread : m_shared->threads)
        thread.join();
}

void JobQueue::add(const std::shared_ptr<Job>& job, Place place)
{
    if (job->progress() && job->progress()->isCancelled())
        return cancel(*job);
    {
        const std::scoped_lock lock(m_shared->mutex);
        if (place == Place::first)
            m_shared->jobs.push_front(job);
        else
            m_shared->jobs.push_back(job);
        while (static_cast<int>(m_shared->threads.size()) < m_threadCount)
            m_shared->threads.emplace_back(work, m_shared);
    }
    m_shared->isWanted.notify_one();
    if (!job->progress())
        return;
    const auto withdraw = [weakJob = std::weak_ptr(job), weakShared = std::weak_ptr(m_shared)] {
        const auto waiting = weakJob.lock();
        if (!waiting)
            return;
        if (const auto shared = weakShared.lock())
            shared->remove(waiting.get());
        cancel(*waiting);
    };
    job->m_watch = Progress::watch(job->progress(), withdraw);
}

std::shared_ptr<Job> JobQueue::waiting(const ProgressPtr& progress) const
{
    const std::scoped_lock lock(m_shared->mutex);
    const auto found = std::find_if(m_shared->jobs.begin(), m_shared->jobs.end(),
                                    [&progress](const std::shared_ptr<Job>& job) { return job->progress() == progress; });
    return found == m_shared->jobs.end() ? nullptr : *found;
}

void JobQueue::cancel(Job& job)
{
    if (!job.claim())
        return;
    job.withdraw();
    job.end();
}

void JobQueue::work(const std::shared_ptr<Shared>& shared)
{
    shared->dress();
    std::unique_lock lock(shared->mutex);
    for (;;) {
        shared->isWanted.wait(lock, [&shared] { return shared->isEnding || !shared->jobs.empty(); });
        if (shared->jobs.empty())
            return;
        auto job = std::move(shared->jobs.front());
        shared->jobs.pop_front();
        if (!job->claim()) // it was cancelled, or another queue had it first
            continue;
        shared->running.push_back(job);
        lock.unlock();
        job->run();
        job->end();
        lock.lock();
        std::erase(shared->running, job);
        lock.unlock();
        job.reset(); // what it holds may take its time to go
        lock.lock();
    }
}

} // namespace tonequill
