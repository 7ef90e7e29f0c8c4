#pragma once

#include <QCoroFuture>
#include <QCoroTask>

#include <QPromise>
#include <QThreadPool>

#include <exception>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace tonequill {

// Runs `function` on the shared thread pool and brings its result, or its
// exception with its own type, back to the thread that awaits it.
//
// `function` works on copies: it takes no arguments, owns what it captures and
// touches no QObject. The awaiting thread needs an event loop.
//
//     const AudioAnalysis analysis = co_await background([path] { return analyze(path); });
template <typename Function>
QCoro::Task<std::invoke_result_t<Function>> background(Function function)
{
    using Result = std::invoke_result_t<Function>;
    struct Job {
        explicit Job(Function&& work) : function(std::move(work)) {}
        Function function;
        QPromise<void> promise;
        std::optional<std::conditional_t<std::is_void_v<Result>, bool, Result>> result;
    };
    auto job = std::make_shared<Job>(std::move(function));
    QFuture<void> future = job->promise.future();
    job->promise.start();
    QThreadPool::globalInstance()->start([job] {
        try {
            if constexpr (std::is_void_v<Result>)
                job->function();
            else
                job->result.emplace(job->function());
        } catch (...) {
            // QtConcurrent::run would flatten this to QUnhandledException.
            job->promise.setException(std::current_exception());
        }
        job->promise.finish();
    });
    co_await future;
    if constexpr (!std::is_void_v<Result>)
        co_return std::move(*job->result);
}

// Starts a flow that nobody awaits. A flow ends its own failures; one that
// leaves it all the same is a mistake of ours and ends the program, loudly,
// instead of being dropped.
void startFlow(QCoro::Task<> flow);

} // namespace tonequill
