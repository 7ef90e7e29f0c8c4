#include "app/model/FlowsAtWork.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using Kind = FlowsAtWork::Kind;

TEST(FlowsAtWork, WorksAsLongAsOneOfThemDoes)
{
    FlowsAtWork flows;
    const QSignalSpy changes(&flows, &FlowsAtWork::changed);
    EXPECT_FALSE(flows.isWorking());
    {
        const auto first = flows.begin(Kind::importing);
        {
            const auto second = flows.begin(Kind::importing); // imports are never refused
            EXPECT_TRUE(flows.isWorking());
        }
        EXPECT_TRUE(flows.isWorking());
    }
    EXPECT_FALSE(flows.isWorking());
    EXPECT_EQ(changes.count(), 4);
}

TEST(FlowsAtWork, TellsWhatTheNewestThatTellsIsAt)
{
    FlowsAtWork flows;
    const auto first = flows.begin(Kind::naming, u"Naming 3"_s);
    {
        const auto second = flows.begin(Kind::naming, u"Naming 2"_s);
        const auto silent = flows.begin(Kind::importing);
        EXPECT_EQ(flows.text(), u"Naming 2"_s);
    }
    EXPECT_EQ(flows.text(), u"Naming 3"_s);
}

TEST(FlowsAtWork, AFlowThatMustBeAloneIsRefusedBesideItself)
{
    FlowsAtWork flows;
    {
        const auto saving = flows.beginAlone(Kind::saving);
        EXPECT_TRUE(saving);
        EXPECT_FALSE(flows.beginAlone(Kind::saving));
        EXPECT_TRUE(flows.beginAlone(Kind::adding)); // beside another kind
        EXPECT_TRUE(flows.isAtWork(Kind::saving));
        EXPECT_FALSE(flows.isAtWork(Kind::adding)); // it has gone already
    }
    EXPECT_FALSE(flows.isAtWork(Kind::saving));
    EXPECT_TRUE(flows.beginAlone(Kind::saving));
}
