#pragma once

#include "base/Background.h"

#include <QCoroTask>

#include <QEventLoop>

#include <exception>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace tonequill::test {

template <typename T>
struct Outcome {
    std::optional<std::conditional_t<std::is_void_v<T>, bool, T>> value;
    std::exception_ptr error;
    bool isDone = false;
    QEventLoop loop;
};

template <typename T>
QCoro::Task<> settle(QCoro::Task<T> task, std::shared_ptr<Outcome<T>> outcome)
{
    try {
        if constexpr (std::is_void_v<T>)
            co_await task;
        else
            outcome->value.emplace(std::move(co_await std::move(task)));
    } catch (...) {
        outcome->error = std::current_exception();
    }
    outcome->isDone = true;
    outcome->loop.quit();
}

// Runs the event loop until the task is done and gives its result, or throws
// what it threw (QCoro::waitFor would wait for ever on an exception).
template <typename T>
T await(QCoro::Task<T>&& task)
{
    auto outcome = std::make_shared<Outcome<T>>();
    settle(std::move(task), outcome);
    if (!outcome->isDone)
        outcome->loop.exec();
    if (outcome->error)
        std::rethrow_exception(outcome->error);
    if constexpr (!std::is_void_v<T>)
        return std::move(*outcome->value);
}

// Runs `work` on another thread, while this one serves events.
template <typename Work>
auto awaitElsewhere(const Work& work)
{
    Workers workers;
    FlowGroup flows;
    return await(background(flows, workers.shown(), work));
}

} // namespace tonequill::test
