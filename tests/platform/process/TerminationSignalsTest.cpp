#include "platform/process/TerminationSignals.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <csignal>

using namespace tonequill;

TEST(TerminationSignals, AreToldInTheEventLoop)
{
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const TerminationSignals signals;
        const QSignalSpy received(&signals, &TerminationSignals::received);
        std::raise(number);
        std::raise(number);
        EXPECT_EQ(received.count(), 0);
        QCoreApplication::processEvents();
        EXPECT_EQ(received.count(), 1); // together
    }
}

TEST(TerminationSignals, EndTheProcessAgainWhenNobodyListens)
{
    {
        const TerminationSignals signals;
    }
    EXPECT_EXIT(std::raise(SIGTERM), testing::KilledBySignal(SIGTERM), "");
}
