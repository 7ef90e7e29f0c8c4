#include "base/Background.h"
#include "base/Ticket.h"
#include "base/UserError.h"
#include "support/Await.h"
#include "support/Printing.h"

#include <QThread>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(Background, RunsElsewhereAndComesHome)
{
    QThread* const home = QThread::currentThread();
    QThread* worker = nullptr;
    QThread* after = nullptr;
    // A named function, since a capturing coroutine would outlive its captures.
    struct Flow {
        static QCoro::Task<> run(QThread** workerOut, QThread** afterOut)
        {
            const auto work = [] { return QThread::currentThread(); };
            *workerOut = co_await background(work);
            *afterOut = QThread::currentThread();
        }
    };
    test::await(Flow::run(&worker, &after));
    EXPECT_NE(worker, home);
    EXPECT_EQ(after, home);
}

TEST(Background, CarriesAnExceptionWithItsType)
{
    const auto work = []() -> int { throw UserError(u"No sound here."_s); };
    try {
        test::await(background(work));
        FAIL() << "nothing was thrown";
    } catch (const UserError& error) {
        EXPECT_EQ(error.message(), u"No sound here."_s);
    }
}

TEST(Background, ReturnsWhatCanOnlyBeMoved)
{
    const auto work = [] { return std::make_unique<int>(7); };
    const auto value = test::await(background(work));
    EXPECT_EQ(*value, 7);
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
