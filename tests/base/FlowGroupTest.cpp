#include "base/FlowGroup.h"

#include "base/Background.h"
#include "fakes/FakeClock.h"
#include "support/Await.h"
#include "support/Gate.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace tonequill;
using namespace std::chrono_literals;

namespace {

// How a flow went, told by the flow itself.
struct Told {
    bool arrived = false;
    bool cancelled = false;
    bool cleaned = false; // its locals are gone
};

struct Cleaner {
    Told& told;
    ~Cleaner() { told.cleaned = true; }
};

template <typename T>
QCoro::Task<> tell(QCoro::Task<T> wait, Told& told)
{
    const Cleaner cleaner{told};
    try {
        co_await std::move(wait);
        told.arrived = true;
    } catch (const Cancelled&) {
        told.cancelled = true;
        throw;
    }
}

QCoro::Task<int> slow(FlowGroup& flows, Clock& clock)
{
    co_await flows.pause(clock, 1s);
    co_return 7;
}

} // namespace

TEST(FlowGroup, ATimeIsWaitedForAndLeftBehind)
{
    test::FakeClock clock;
    Told first;
    Told second;
    {
        FlowGroup flows;
        startFlow(tell(flows.pause(clock, 10ms), first));
        startFlow(tell(flows.pause(clock, 1h), second));
        EXPECT_FALSE(flows.isEmpty());
        clock.advance(10ms);
        EXPECT_TRUE(first.arrived);
        EXPECT_FALSE(second.arrived || second.cancelled);
    }
    EXPECT_TRUE(second.cancelled && second.cleaned);
    clock.advance(2h); // the clock still knows; nobody minds
    EXPECT_FALSE(second.arrived);
}

TEST(FlowGroup, AReplyMayComeAtOnceLateTwiceOrNever)
{
    std::function<void(int)> late;
    Told never;
    {
        FlowGroup flows;
        const auto atOnce = [](auto take) { take(1); };
        EXPECT_EQ(test::await(flows.reply<int>(atOnce)), 1);
        const auto keep = [&late](auto take) { late = take; };
        auto flow = flows.reply<int>(keep);
        late(2);
        late(3);
        EXPECT_EQ(test::await(std::move(flow)), 2);
        startFlow(tell(flows.reply<int>(keep), never));
    }
    EXPECT_TRUE(never.cancelled && never.cleaned);
    late(4);
    EXPECT_FALSE(never.arrived);
}

TEST(FlowGroup, AnotherOwnersFlowIsAwaitedOnlyAsLongAsThisOneLives)
{
    test::FakeClock clock;
    FlowGroup others;
    Told told;
    {
        FlowGroup flows;
        auto flow = flows.until(slow(others, clock));
        clock.advance(1s);
        EXPECT_EQ(test::await(std::move(flow)), 7);
        startFlow(tell(flows.until(slow(others, clock)), told));
    }
    EXPECT_TRUE(told.cancelled && told.cleaned);
    EXPECT_FALSE(others.isEmpty()); // it goes on by itself
    clock.advance(1s);
    EXPECT_TRUE(others.isEmpty());
}

TEST(FlowGroup, TheEndCancelsJobsAndWaitsForThem)
{
    Workers workers(2);
    std::atomic<bool> isRunning = false;
    std::atomic<bool> hasEnded = false;
    Told running;
    Told queued;
    {
        FlowGroup flows;
        test::Gate gate;
        startFlow(background(flows, workers.shown(), gate.job()));
        const auto progress = std::make_shared<Progress>();
        const auto work = [progress, &isRunning, &hasEnded] {
            isRunning = true;
            while (!progress->isCancelled())
                std::this_thread::sleep_for(1ms);
            std::this_thread::sleep_for(20ms);
            hasEnded = true;
        };
        startFlow(tell(background(flows, workers.shown(), work, progress), running));
        while (!isRunning)
            std::this_thread::sleep_for(1ms);
        const auto never = [] { ADD_FAILURE() << "it ran"; };
        const auto last = std::make_shared<Progress>();
        startFlow(tell(background(flows, workers.shown(), never, last), queued));
        const auto watch = Progress::watch(last, [&gate] { gate.open(); });
        flows.end();
        EXPECT_TRUE(hasEnded);
        EXPECT_TRUE(running.cancelled && running.cleaned);
        EXPECT_TRUE(flows.isEmpty());
    }
    EXPECT_TRUE(queued.cancelled && queued.cleaned);
}

TEST(FlowGroup, ASaveIsDoneAndItsFlowGoesOnToItsNextWait)
{
    Workers workers(2);
    test::FakeClock clock;
    FlowGroup flows;
    bool saved = false;
    bool reachedTheNext = false;
    struct Flow {
        static QCoro::Task<> run(FlowGroup& flows, Workers& workers, Clock& clock, bool& saved, bool& next)
        {
            const auto save = [] { std::this_thread::sleep_for(10ms); };
            co_await background(flows, workers.shown(), save);
            saved = true;
            co_await flows.pause(clock, 0ms);
            next = true;
        }
    };
    startFlow(Flow::run(flows, workers, clock, saved, reachedTheNext));
    flows.end();
    EXPECT_TRUE(saved);
    EXPECT_FALSE(reachedTheNext);
}

TEST(FlowGroup, EndingRunsNoForeignEvent)
{
    Workers workers(2);
    bool strangerCame = false;
    QTimer::singleShot(0, [&strangerCame] { strangerCame = true; });
    Told told;
    {
        FlowGroup flows;
        const auto work = [] { std::this_thread::sleep_for(10ms); };
        startFlow(tell(background(flows, workers.shown(), work), told));
    }
    EXPECT_TRUE(told.arrived);
    EXPECT_FALSE(strangerCame);
    QCoreApplication::processEvents();
    EXPECT_TRUE(strangerCame);
}

TEST(FlowGroup, AFlowThatRunsAnEventLoopKeepsNobodyWaiting)
{
    Workers workers(2);
    FlowGroup flows;
    int done = 0;
    struct Flow {
        static QCoro::Task<> drag(FlowGroup& flows, Workers& workers, int& done)
        {
            const auto work = [] {};
            co_await background(flows, workers.shown(), work);
            QEventLoop loop; // as a drag runs one
            QTimer timer;
            QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
                if (done == 8)
                    loop.quit();
            });
            timer.start(1);
            QTimer::singleShot(10s, &loop, &QEventLoop::quit);
            loop.exec();
            EXPECT_EQ(done, 8);
        }
        static QCoro::Task<> other(FlowGroup& flows, Workers& workers, int& done)
        {
            const auto work = [] {};
            co_await background(flows, workers.shown(), work);
            ++done;
        }
    };
    auto drag = Flow::drag(flows, workers, done);
    for (int i = 0; i < 8; ++i)
        startFlow(Flow::other(flows, workers, done));
    std::this_thread::sleep_for(20ms); // all of them are at the door
    test::await(std::move(drag));
}

TEST(FlowGroup, MayGoWhileOneOfItsFlowsGoesOn)
{
    Workers workers(2);
    auto flows = std::make_unique<FlowGroup>();
    Told other;
    struct Flow {
        static QCoro::Task<> run(std::unique_ptr<FlowGroup>& flows, Workers& workers)
        {
            const auto work = [] {};
            co_await background(*flows, workers.shown(), work);
            flows.reset();
        }
    };
    test::FakeClock clock;
    startFlow(tell(flows->pause(clock, 1s), other));
    test::await(Flow::run(flows, workers));
    EXPECT_FALSE(flows);
    EXPECT_TRUE(other.cancelled);
}
