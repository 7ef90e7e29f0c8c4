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

namespace detail {

template <typename Function>
struct BackgroundJob {
    using Result = std::invoke_result_t<Function>;

    explicit BackgroundJob(Function work) : function(std::move(work)) {}

    void run()
    {
        try {
            if constexpr (std::is_void_v<Result>)
                function();
            else
                result.emplace(function());
        } catch (...) {
            // QtConcurrent::run would flatten this to QUnhandledException.
            promise.setException(std::current_exception());
        }
        promise.finish();
    }

    Function function;
    QPromise<void> promise;
    std::optional<std::conditional_t<std::is_void_v<Result>, bool, Result>> result;
};

template <typename Function>
QCoro::Task<std::invoke_result_t<Function>> finished(std::shared_ptr<BackgroundJob<Function>> job)
{
    co_await job->promise.future();
    if constexpr (!std::is_void_v<std::invoke_result_t<Function>>)
        co_return std::move(*job->result);
}

} // namespace detail

// Runs `function` on the shared thread pool and brings its result, or its
// exception with its own type, back to the thread that awaits it.
//
// `function` works on copies: it takes no arguments, owns what it captures and
// touches no QObject. The awaiting thread needs an event loop.
//
//     const auto work = [path] { return AudioAnalyzer::analyze(path); };
//     const AudioAnalysis analysis = co_await background(work);
//
// The function is named first, as here, and a nameless one doesn't compile: GCC 12
// destroys the captures of a lambda written inside a co_await expression twice.
template <typename Function>
QCoro::Task<std::invoke_result_t<const Function&>> background(const Function& function)
{
    auto job = std::make_shared<detail::BackgroundJob<Function>>(function);
    job->promise.start();
    QThreadPool::globalInstance()->start([job] { job->run(); });
    return detail::finished(std::move(job));
}

template <typename Function>
void background(const Function&& nameless) = delete;

// Starts a flow that nobody awaits. A flow ends its own failures; one that
// leaves it all the same is a mistake of ours and ends the program, loudly,
// instead of being dropped.
void startFlow(QCoro::Task<> flow);

} // namespace tonequill
