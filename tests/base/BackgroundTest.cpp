#include "base/Background.h"

#include "base/Ticket.h"
#include "base/UserError.h"
#include "support/Await.h"
#include "support/Gate.h"
#include "support/Printing.h"

#include <QThread>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class BackgroundTest : public testing::Test {
protected:
    Workers workers{2};
    FlowGroup flows;
};

QCoro::Task<> runAndReturn(FlowGroup& flows, Workers& workers, QThread** workerOut, QThread** afterOut)
{
    const auto work = [] { return QThread::currentThread(); };
    *workerOut = co_await background(flows, workers.shown(), work);
    *afterOut = QThread::currentThread();
}

} // namespace

TEST_F(BackgroundTest, RunsElsewhereAndComesHome)
{
    QThread* const home = QThread::currentThread();
    QThread* worker = nullptr;
    QThread* after = nullptr;
    test::await(runAndReturn(flows, workers, &worker, &after));
    EXPECT_NE(worker, home);
    EXPECT_EQ(after, home);
}

TEST_F(BackgroundTest, CarriesAnExceptionWithItsType)
{
    const auto work = []() -> int { throw UserError(u"No sound here."_s); };
    try {
        test::await(background(flows, workers.behind(), work));
        FAIL() << "nothing was thrown";
    } catch (const UserError& error) {
        EXPECT_EQ(error.message(), u"No sound here."_s);
    }
}

TEST_F(BackgroundTest, ReturnsWhatCanOnlyBeMoved)
{
    const auto work = [] { return std::make_unique<int>(7); };
    const auto value = test::await(background(flows, workers.shown(), work));
    EXPECT_EQ(*value, 7);
}

TEST_F(BackgroundTest, WhatIsCancelledInTheQueueEndsWithoutAWorker)
{
    test::Gate gate;
    for (int i = 0; i < 2; ++i)
        startFlow(background(flows, workers.shown(), gate.job()));
    std::atomic<bool> ran = false;
    const auto work = [&ran] { ran = true; };
    const auto progress = std::make_shared<Progress>();
    auto flow = background(flows, workers.shown(), work, progress);
    progress->cancel();
    EXPECT_THROW(test::await(std::move(flow)), Cancelled); // while both workers still wait
    gate.open();
    const auto last = [] {};
    test::await(background(flows, workers.shown(), last));
    EXPECT_FALSE(ran);
}

TEST_F(BackgroundTest, WhatWasCancelledBeforeIsNeverBegun)
{
    std::atomic<bool> ran = false;
    const auto work = [&ran] { ran = true; };
    const auto progress = std::make_shared<Progress>();
    progress->cancel();
    EXPECT_THROW(test::await(background(flows, workers.shown(), work, progress)), Cancelled);
    EXPECT_FALSE(ran);
}

TEST_F(BackgroundTest, NothingIsBegunForAGroupThatHasEnded)
{
    flows.end();
    std::atomic<bool> ran = false;
    const auto work = [&ran] { ran = true; };
    EXPECT_THROW(test::await(background(flows, workers.shown(), work)), Cancelled);
    EXPECT_FALSE(ran);
}

TEST(UserError, TellsASentenceForEveryFailure)
{
    EXPECT_EQ(messageOf(UserError(u"It’s gone."_s)), u"It’s gone."_s);
    EXPECT_EQ(messageOf(std::bad_alloc()), u"There is not enough memory for this."_s);
    EXPECT_EQ(messageOf(std::runtime_error("x")), u"Something went wrong: x"_s);
    EXPECT_STREQ(UserError(u"“ä”"_s).what(), "“ä”");
}

TEST(Ticket, OnlyTheNewestIsCurrent)
{
    Tickets loads;
    const Ticket first = loads.begin();
    EXPECT_TRUE(first.isCurrent());
    const Ticket second = loads.begin();
    EXPECT_FALSE(first.isCurrent());
    EXPECT_TRUE(second.isCurrent());
    loads.cancel();
    EXPECT_FALSE(second.isCurrent());
}

TEST(Ticket, IsStaleOnceItsOwnerIsGone)
{
    auto loads = std::make_unique<Tickets>();
    const Ticket ticket = loads->begin();
    loads.reset();
    EXPECT_FALSE(ticket.isCurrent());
}
