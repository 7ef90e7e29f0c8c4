#include "base/FlowGroup.h"

#include "base/JobQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <algorithm>
#include <deque>
#include <mutex>

namespace tonequill {

// Carries waits whose jobs have ended home to the group's thread. Jobs may hold it
// longer than the group lives.
class FlowGroup::Bell {
public:
    Bell() : m_ear(std::make_unique<Ear>(*this)) {}

    // Any thread.
    void ring(std::shared_ptr<Wait> wait)
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_ear)
            return; // the group has ended the wait itself
        m_arrived.push_back(std::move(wait));
        call();
    }

    void close()
    {
        std::unique_ptr<Ear> ear; // goes without the lock
        const std::scoped_lock lock(m_mutex);
        m_arrived.clear();
        ear = std::move(m_ear);
    }

private:
    class Ear : public QObject {
    public:
        explicit Ear(Bell& bell) : m_bell(bell) {}
        bool event(QEvent* event) override
        {
            if (event->type() != QEvent::User)
                return QObject::event(event);
            m_bell.answer();
            return true;
        }

    private:
        Bell& m_bell;
    };

    // One wait for each event: the flow that goes on may run an event loop of its
    // own, as a drag does, or may end the group.
    void answer()
    {
        std::shared_ptr<Wait> wait;
        {
            const std::scoped_lock lock(m_mutex);
            m_isCalled = false;
            if (m_arrived.empty())
                return;
            wait = std::move(m_arrived.front());
            m_arrived.pop_front();
            if (!m_arrived.empty())
                call();
        }
        wait->arrive();
    }

    void call()
    {
        if (!std::exchange(m_isCalled, true))
            QCoreApplication::postEvent(m_ear.get(), new QEvent(QEvent::User));
    }

    std::mutex m_mutex; // guards what follows
    std::deque<std::shared_ptr<Wait>> m_arrived;
    bool m_isCalled = false;
    std::unique_ptr<Ear> m_ear;
};

void Wait::end(End how)
{
    if (isOver())
        return;
    m_end = how;
    m_job.reset();
    if (FlowGroup* const group = std::exchange(m_group, nullptr))
        group->forget(this);
    if (const auto flow = std::exchange(m_flow, nullptr))
        flow.resume();
}

FlowGroup::FlowGroup() : m_bell(std::make_shared<Bell>())
{}

FlowGroup::~FlowGroup()
{
    end();
    m_bell->close();
}

std::shared_ptr<Wait> FlowGroup::add(std::shared_ptr<Job> job)
{
    auto wait = std::make_shared<Wait>();
    if (m_hasEnded) {
        wait->m_end = Wait::End::cancelled;
        return wait;
    }
    wait->m_group = this;
    wait->m_job = std::move(job);
    m_waits.push_back(wait);
    return wait;
}

void FlowGroup::forget(const Wait* wait)
{
    std::erase_if(m_waits, [wait](const std::shared_ptr<Wait>& other) { return other.get() == wait; });
}

void FlowGroup::ring(const std::shared_ptr<Bell>& bell, std::shared_ptr<Wait> wait)
{
    bell->ring(std::move(wait));
}

void FlowGroup::end()
{
    m_hasEnded = true;
    const std::vector<std::shared_ptr<Wait>> waits = m_waits; // the flows take theirs out
    for (const auto& wait : waits) {
        if (wait->m_job && wait->m_job->progress())
            wait->m_job->progress()->cancel();
    }
    for (const auto& wait : waits) {
        const auto job = wait->m_job;
        if (job)
            job->waitForEnd();
        wait->end(job && !job->progress() ? Wait::End::arrived : Wait::End::cancelled);
    }
}

QCoro::Task<> FlowGroup::pause(Clock& clock, std::chrono::milliseconds delay)
{
    auto wait = add();
    clock.after(delay, [weak = std::weak_ptr(wait)] {
        if (const auto waiting = weak.lock())
            waiting->arrive();
    });
    return arrived(std::make_shared<detail::Answer<void>>(), std::move(wait));
}

} // namespace tonequill
