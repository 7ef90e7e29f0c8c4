#pragma once

#include "base/Clock.h"
#include "base/Progress.h"

#include <QCoroTask>
#include <QObject>

#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace tonequill {

class FlowGroup;
class Job;

// One wait of a flow. It ends once: what it waits for has come, or its group has
// ended. The group's thread.
class Wait {
public:
    bool isOver() const { return m_end != End::notYet; }
    // What was waited for is there: the flow goes on before this returns. Does
    // nothing when the wait is over already.
    void arrive() { end(End::arrived); }

private:
    friend class FlowGroup;
    friend class Arrival;
    enum class End { notYet, arrived, cancelled };
    void end(End how);

    FlowGroup* m_group = nullptr;
    End m_end = End::notYet;
    std::coroutine_handle<> m_flow;
    std::shared_ptr<Job> m_job; // what is waited for, if that is one
};

// What a flow awaits: `co_await arrival`. Throws Cancelled if the group has ended.
class Arrival {
public:
    explicit Arrival(std::shared_ptr<Wait> wait) : m_wait(std::move(wait)) {}

    bool await_ready() const { return m_wait->isOver(); }
    void await_suspend(std::coroutine_handle<> flow) { m_wait->m_flow = flow; }
    void await_resume() const
    {
        if (m_wait->m_end == Wait::End::cancelled)
            throw Cancelled();
    }

private:
    std::shared_ptr<Wait> m_wait;
};

namespace detail {

// The answer of a wait, or what it threw.
template <typename T>
struct Answer {
    std::optional<std::conditional_t<std::is_void_v<T>, bool, T>> value;
    std::exception_ptr error;

    T take()
    {
        if (error)
            std::rethrow_exception(error);
        if constexpr (!std::is_void_v<T>)
            return std::move(*value);
    }
};

template <typename T>
QCoro::Task<> deliver(QCoro::Task<T> task, std::shared_ptr<Answer<T>> answer, std::shared_ptr<Wait> wait)
{
    try {
        if constexpr (std::is_void_v<T>)
            co_await std::move(task);
        else
            answer->value.emplace(std::move(co_await std::move(task)));
    } catch (...) {
        answer->error = std::current_exception();
    }
    wait->arrive();
}

} // namespace detail

// The waits of the flows of one owner, who has it as its last member: so that no
// flow is left suspended in an object that is gone, and what a flow holds, such as
// temporary files, goes on every way out. Whatever a flow awaits belongs to a
// group: a job (background()), a time (pause()), a signal (signal()), a reply
// (reply()), another flow whose owner may live longer (until()).
//
// One thread, which has an event loop.
class FlowGroup {
public:
    FlowGroup();
    ~FlowGroup();
    FlowGroup(const FlowGroup&) = delete;
    FlowGroup& operator=(const FlowGroup&) = delete;

    // Ends every wait now: the flows go on with Cancelled, and their jobs are
    // cancelled and waited for. A job that can't be cancelled, such as a save, is
    // done, and its flow goes on with the result, up to its next wait. No event is
    // handled meanwhile. From then on every wait ends at once, with Cancelled.
    void end();
    bool hasEnded() const { return m_hasEnded; }
    bool isEmpty() const { return m_waits.empty(); }

    // Until `delay` has passed.
    QCoro::Task<> pause(Clock& clock, std::chrono::milliseconds delay);

    // Until `ask` is answered: it is given a function that takes the answer, to be
    // called once on this thread, soon or late.
    template <typename T, typename Ask>
    QCoro::Task<T> reply(const Ask& ask)
    {
        auto answer = std::make_shared<detail::Answer<T>>();
        auto wait = add();
        ask([answer, weak = std::weak_ptr(wait)](T value) {
            const auto waiting = weak.lock();
            if (!waiting || waiting->isOver())
                return;
            answer->value.emplace(std::move(value));
            waiting->arrive();
        });
        return arrived(std::move(answer), std::move(wait));
    }

    // Until the object next emits the signal. It outlives the wait.
    template <typename Object, typename Signal>
    QCoro::Task<> signal(const Object* object, Signal emitted)
    {
        auto wait = add();
        auto connection = std::make_shared<QMetaObject::Connection>();
        *connection = QObject::connect(object, emitted, [weak = std::weak_ptr(wait), connection] {
            QObject::disconnect(*connection);
            if (const auto waiting = weak.lock())
                waiting->arrive();
        });
        return arrived(std::make_shared<detail::Answer<void>>(), std::move(wait));
    }

    // Until another owner's flow has ended. When this group ends first, that flow
    // goes on by itself.
    template <typename T>
    QCoro::Task<T> until(QCoro::Task<T> task)
    {
        auto answer = std::make_shared<detail::Answer<T>>();
        auto wait = add();
        detail::deliver(std::move(task), answer, wait);
        return arrived(std::move(answer), std::move(wait));
    }

    // For background(): a wait for the job, and what the job calls, on its own
    // thread, when it has its result.
    class Bell;
    std::shared_ptr<Wait> add(std::shared_ptr<Job> job = nullptr);
    std::shared_ptr<Bell> bell() const { return m_bell; }
    static void ring(const std::shared_ptr<Bell>& bell, std::shared_ptr<Wait> wait);

    template <typename Answer>
    static auto arrived(std::shared_ptr<Answer> answer, std::shared_ptr<Wait> wait) -> QCoro::Task<decltype(answer->take())>
    {
        Arrival arrival(std::move(wait));
        co_await arrival;
        if constexpr (std::is_void_v<decltype(answer->take())>)
            answer->take();
        else
            co_return answer->take();
    }

private:
    friend class Wait;
    void forget(const Wait* wait);

    std::vector<std::shared_ptr<Wait>> m_waits;
    std::shared_ptr<Bell> m_bell;
    bool m_hasEnded = false;
};

} // namespace tonequill
