#include "base/Workers.h"

#include "base/Background.h"
#include "support/Await.h"
#include "support/Gate.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <set>
#include <thread>

using namespace tonequill;
using namespace std::chrono_literals;

namespace {

int niceness()
{
    return getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
}

} // namespace

TEST(Workers, EachLaneHasThreadsOfItsOwnOnAnyMachine)
{
    struct Machine {
        int cores;
        int shown;
        int behind;
    };
    for (const Machine& machine : {Machine{1, 2, 2}, {2, 2, 2}, {4, 4, 3}, {8, 8, 4}, {64, 8, 4}}) {
        Workers workers(machine.cores);
        EXPECT_EQ(workers.shown().threadCount(), machine.shown) << machine.cores;
        EXPECT_EQ(workers.behind().threadCount(), machine.behind) << machine.cores;
    }
}

TEST(Workers, WhatIsDoneBehindGivesWayAndNeverStandsBefore)
{
    Workers workers(2);
    FlowGroup flows;
    test::Gate gate;
    for (int i = 0; i < 4; ++i)
        startFlow(background(flows, workers.behind(), gate.job()));
    gate.waitFor(2);
    const auto ask = [] { return niceness(); };
    EXPECT_EQ(test::await(background(flows, workers.shown(), ask)), niceness());
    gate.open();
    EXPECT_EQ(test::await(background(flows, workers.behind(), ask)), 10);
}

TEST(Workers, SomebodyWhoBeginsToWaitIsServedNext)
{
    Workers workers(2);
    FlowGroup flows;
    test::Gate behind;
    for (int i = 0; i < 3; ++i)
        startFlow(background(flows, workers.behind(), behind.job()));
    behind.waitFor(2);
    const auto progress = std::make_shared<Progress>();
    std::atomic<int> runs = 0;
    const auto work = [&runs] { return ++runs; };
    auto flow = background(flows, workers.behind(), work, progress);
    workers.moveUp(progress);
    EXPECT_EQ(test::await(std::move(flow)), 1); // with the lane behind still full
    workers.moveUp(progress);                   // it is done: nothing happens
    behind.open();
    const auto last = [] {};
    for (int i = 0; i < 4; ++i)
        test::await(background(flows, workers.behind(), last));
    EXPECT_EQ(runs, 1);
}

TEST(Workers, AJobThatMovedUpCanStillBeCancelled)
{
    Workers workers(2);
    FlowGroup flows;
    test::Gate behind;
    test::Gate shown;
    for (int i = 0; i < 2; ++i) {
        startFlow(background(flows, workers.behind(), behind.job()));
        startFlow(background(flows, workers.shown(), shown.job()));
    }
    behind.waitFor(2);
    shown.waitFor(2);
    const auto progress = std::make_shared<Progress>();
    std::atomic<int> runs = 0;
    const auto work = [&runs] { return ++runs; };
    auto flow = background(flows, workers.behind(), work, progress);
    workers.moveUp(progress);
    progress->cancel();
    EXPECT_THROW(test::await(std::move(flow)), Cancelled);
    behind.open();
    shown.open();
    const auto last = [] {};
    test::await(background(flows, workers.behind(), last));
    test::await(background(flows, workers.shown(), last));
    EXPECT_EQ(runs, 0);
}

TEST(Workers, SharesWorkAmongAllWithoutWaitingForAFreeThread)
{
    Workers workers(4);
    std::vector<std::atomic<int>> done(100);
    std::mutex mutex;
    std::set<std::thread::id> threads;
    workers.parallel(100, [&](int i) {
        ++done[std::size_t(i)];
        std::this_thread::sleep_for(1ms);
        const std::scoped_lock lock(mutex);
        threads.insert(std::this_thread::get_id());
    });
    for (const auto& count : done)
        EXPECT_EQ(count, 1);
    EXPECT_GT(threads.size(), 1U);
    EXPECT_TRUE(threads.contains(std::this_thread::get_id())); // the caller works, too

    FlowGroup flows;
    test::Gate gate;
    for (int i = 0; i < 4; ++i)
        startFlow(background(flows, workers.shown(), gate.job()));
    gate.waitFor(4);
    int alone = 0;
    workers.parallel(10, [&](int) { ++alone; }); // nobody is free
    EXPECT_EQ(alone, 10);
    workers.parallel(0, [&](int) { ++alone; });
    EXPECT_EQ(alone, 10);
}

TEST(Workers, ThrowsTheFirstFailureInNumber)
{
    Workers workers(4);
    std::atomic<int> begun = 0;
    try {
        workers.parallel(1000, [&](int i) {
            ++begun;
            if (i >= 3)
                throw i;
            std::this_thread::sleep_for(5ms);
        });
        FAIL() << "nothing was thrown";
    } catch (int number) {
        EXPECT_EQ(number, 3);
    }
    EXPECT_LT(begun, 1000);
}

TEST(Workers, GoingCancelsWhatCanBeCancelledAndDoesTheRest)
{
    std::atomic<int> saved = 0;
    std::atomic<int> ran = 0;
    {
        FlowGroup flows;
        Workers workers(2);
        test::Gate gate;
        for (int i = 0; i < 2; ++i)
            startFlow(background(flows, workers.shown(), gate.job()));
        gate.waitFor(2);
        const auto save = [&saved] { ++saved; };
        const auto work = [&ran] { ++ran; };
        ProgressPtr last;
        for (int i = 0; i < 5; ++i) {
            last = std::make_shared<Progress>();
            startFlow(background(flows, workers.shown(), save));
            startFlow(background(flows, workers.shown(), work, last));
        }
        const auto watch = Progress::watch(last, [&gate] { gate.open(); }); // once all are cancelled
        flows.end();
    }
    EXPECT_EQ(saved, 5);
    EXPECT_EQ(ran, 0);
}

TEST(Sequence, DoesOneAfterTheOtherInOrderAndEverything)
{
    std::vector<int> order;
    {
        FlowGroup flows;
        Sequence sequence("test");
        for (int i = 0; i < 100; ++i) {
            const auto work = [&order, i] { order.push_back(i); };
            startFlow(background(flows, sequence, work));
        }
        flows.end();
    }
    ASSERT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}
