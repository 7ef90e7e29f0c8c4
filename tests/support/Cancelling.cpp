#include "support/Cancelling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <thread>

#include <pthread.h>
#include <time.h>

namespace tonequill::test {

namespace {

using namespace std::chrono_literals;
using Work = std::chrono::nanoseconds;

constexpr Work kNever = Work::max();

Work workOf(clockid_t thread)
{
    timespec time = {};
    ::clock_gettime(thread, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

struct Run {
    Work all = {};
    Work afterCancel = {};
    bool wasCancelled = false; // before it had come to its end by itself
};

// Runs the job on a thread of its own and cancels it after so much work.
Run runUntil(Work moment, const std::function<void(Progress&)>& job)
{
    struct Start {
        clockid_t clock = {};
        Work before = {};
    };
    Progress progress;
    if (moment == Work::zero())
        progress.cancel();
    Run run;
    std::promise<Start> started;
    std::promise<void> ended;
    std::promise<void> seen;
    std::thread worker([&] {
        Start start;
        ::pthread_getcpuclockid(::pthread_self(), &start.clock);
        start.before = workOf(start.clock);
        started.set_value(start);
        try {
            job(progress);
        } catch (const Cancelled&) {
            run.wasCancelled = true;
        }
        run.all = workOf(start.clock) - start.before;
        ended.set_value();
        seen.get_future().wait(); // a thread that is gone has no clock
    });
    const Start start = started.get_future().get();
    const auto end = ended.get_future();
    Work cancelled = start.before;
    if (moment != kNever && moment != Work::zero()) {
        while (workOf(start.clock) - start.before < moment && end.wait_for(100us) == std::future_status::timeout)
            ;
        progress.cancel();
        cancelled = workOf(start.clock);
    }
    end.wait();
    run.afterCancel = std::max(Work::zero(), start.before + run.all - cancelled);
    seen.set_value();
    worker.join();
    return run;
}

} // namespace

double workAfterCancel(const std::function<void(Progress&)>& job)
{
    runUntil(kNever, job); // memory that is touched for the first time takes longer
    const Work all = runUntil(kNever, job).all;
    EXPECT_GE(all, 5ms) << "too little work to be stopped in the middle of it";
    const Run atOnce = runUntil(Work::zero(), job);
    EXPECT_TRUE(atOnce.wasCancelled) << "it begins what nobody wants any more";
    Work most = atOnce.all;
    for (const int percent : {10, 35, 60, 85}) {
        // A busy machine may let the moment pass by, and takes more time for one run than for another.
        constexpr int kTries = 12;
        Work moment = all * percent / 100;
        Run run;
        for (int i = 0; i < kTries && !run.wasCancelled; ++i, moment = moment * 9 / 10)
            run = runUntil(moment, job);
        EXPECT_TRUE(run.wasCancelled) << "it never was at " << percent << " % of its work";
        most = std::max(most, run.afterCancel);
    }
    return std::chrono::duration<double>(most) / std::chrono::duration<double>(all);
}

} // namespace tonequill::test
