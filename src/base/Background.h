#pragma once

#include "base/FlowGroup.h"
#include "base/Workers.h"

#include <memory>
#include <utility>

namespace tonequill {

namespace detail {

template <typename Function>
class BackgroundJob final : public Job {
public:
    using Result = std::invoke_result_t<const Function&>;

    BackgroundJob(Function work, ProgressPtr progress) : Job(std::move(progress)), m_work(std::move(work)) {}

    // REQUIRES: before it is added to a queue.
    void setHome(std::weak_ptr<FlowGroup::Bell> bell, std::weak_ptr<Wait> wait)
    {
        m_bell = std::move(bell);
        m_wait = std::move(wait);
    }

    Result take() { return m_answer.take(); }

protected:
    void run() override
    {
        try {
            if constexpr (std::is_void_v<Result>)
                m_work();
            else
                m_answer.value.emplace(m_work());
        } catch (...) {
            m_answer.error = std::current_exception();
        }
        goHome();
    }
    void withdraw() override
    {
        m_answer.error = std::make_exception_ptr(Cancelled());
        goHome();
    }

private:
    void goHome()
    {
        const auto bell = m_bell.lock();
        auto wait = m_wait.lock();
        if (bell && wait)
            FlowGroup::ring(bell, std::move(wait));
    }

    Function m_work;
    Answer<Result> m_answer;
    std::weak_ptr<FlowGroup::Bell> m_bell;
    std::weak_ptr<Wait> m_wait;
};

} // namespace detail

// Runs `work` on a thread of `queue` and brings its result, or its exception with
// its own type, back to the flow that awaits it, which is one of `flows`.
//
// `work` works on copies: it takes no arguments, owns what it captures and touches
// no QObject. What may take more than 50 milliseconds has a `progress` and asks it
// whether it is still wanted; the flow then gets Cancelled. Without one it can't be
// cancelled.
//
//     const auto work = [path, progress] { return AudioAnalyzer::analyze(path, progress.get()); };
//     const AudioAnalysis analysis = co_await background(m_flows, m_workers.shown(), work, progress);
//
// The function is named first, as here, and a nameless one doesn't compile: GCC 12
// destroys the captures of a lambda written inside a co_await expression twice.
template <typename Function>
QCoro::Task<std::invoke_result_t<const Function&>> background(FlowGroup& flows, JobQueue& queue, const Function& work,
                                                              ProgressPtr progress = {})
{
    auto job = std::make_shared<detail::BackgroundJob<Function>>(work, std::move(progress));
    auto wait = flows.add(job);
    if (!wait->isOver()) { // else the group has ended, and nothing is begun
        job->setHome(flows.bell(), wait);
        queue.add(job);
    }
    return FlowGroup::arrived(std::move(job), std::move(wait));
}

template <typename Function>
void background(FlowGroup& flows, JobQueue& queue, const Function&& nameless, ProgressPtr progress = {}) = delete;

// Starts a flow that nobody awaits. A flow ends its own failures; one that leaves
// it all the same is a mistake of ours and ends the program, loudly, instead of
// being dropped. One that was cancelled has nothing to tell.
void startFlow(QCoro::Task<> flow);

// The same for one that tells what it did.
template <typename Outcome>
void startFlow(QCoro::Task<Outcome> flow)
{
    struct Deaf {
        static QCoro::Task<> run(QCoro::Task<Outcome> telling) { co_await std::move(telling); }
    };
    startFlow(Deaf::run(std::move(flow)));
}

} // namespace tonequill
