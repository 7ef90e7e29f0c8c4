#include "base/Workers.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>

namespace tonequill {

namespace {

constexpr int kFewest = 2;    // so that an hour-long job never owns a lane
constexpr int kMostShown = 8; // more cores than this help no single person
constexpr int kMostBehind = 4;
constexpr int kBehindNice = 10; // half the way to idle

// What the threads of one parallel() share.
class Shares {
public:
    Shares(int count, const std::function<void(int)>& work) : m_count(count), m_work(work) {}

    void take()
    {
        for (int i = m_next++; i < m_count && !m_hasFailed; i = m_next++) {
            try {
                m_work(i);
            } catch (...) {
                const std::scoped_lock lock(m_mutex);
                m_hasFailed = true;
                if (!m_error || i < m_failedAt) {
                    m_error = std::current_exception();
                    m_failedAt = i;
                }
            }
        }
    }

    void rethrow() const
    {
        if (m_error)
            std::rethrow_exception(m_error);
    }

private:
    int m_count;
    const std::function<void(int)>& m_work;
    std::atomic<int> m_next = 0;
    std::atomic<bool> m_hasFailed = false;
    std::mutex m_mutex; // guards what follows
    std::exception_ptr m_error;
    int m_failedAt = 0;
};

class Errand final : public Job {
public:
    explicit Errand(std::function<void()> work) : Job(nullptr), m_work(std::move(work)) {}

protected:
    void run() override { m_work(); }
    void withdraw() override {}

private:
    std::function<void()> m_work;
};

class Helper final : public Job {
public:
    explicit Helper(Shares& shares) : Job(nullptr), m_shares(shares) {}

protected:
    void run() override { m_shares.take(); }
    void withdraw() override {}

private:
    Shares& m_shares;
};

} // namespace

int Workers::coreCount()
{
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

Workers::Workers(int cores)
    : m_shown("shown", std::max(kFewest, std::min(cores, kMostShown))),
      m_behind("behind", std::max(kFewest, std::min(cores - 1, kMostBehind)), kBehindNice)
{}

void Workers::moveUp(const ProgressPtr& progress)
{
    if (const auto job = m_behind.waiting(progress))
        m_shown.add(job, JobQueue::Place::first); // whoever has it first claims it
}

void Workers::parallel(int count, const std::function<void(int)>& work)
{
    Shares shares(count, work);
    std::vector<std::shared_ptr<Helper>> helpers;
    for (int i = 1; i < std::min(count, m_shown.threadCount()); ++i) {
        helpers.push_back(std::make_shared<Helper>(shares));
        m_shown.add(helpers.back(), JobQueue::Place::first);
    }
    shares.take();
    for (const auto& helper : helpers) {
        JobQueue::cancel(*helper); // one that found no thread isn't waited for
        helper->waitForEnd();
    }
    shares.rethrow();
}

void Sequence::run(std::function<void()> work)
{
    add(std::make_shared<Errand>(std::move(work)));
}

void Sequence::finish()
{
    const auto last = std::make_shared<Errand>([] {});
    add(last);
    last->waitForEnd();
}

} // namespace tonequill
