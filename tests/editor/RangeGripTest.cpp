#include "editor/RangeGrip.h"

#include <gtest/gtest.h>

using namespace tonequill;
using Edge = RangeGrip::Edge;
using Range = RangeGrip::Range;

TEST(RangeGrip, TheNearerEdgeIsTakenHoldOf)
{
    EXPECT_EQ(RangeGrip::edgeAt(100, 100, 300), Edge::start);
    EXPECT_EQ(RangeGrip::edgeAt(84, 100, 300), Edge::start);
    EXPECT_EQ(RangeGrip::edgeAt(83, 100, 300), Edge::none);
    EXPECT_EQ(RangeGrip::edgeAt(200, 100, 300), Edge::none);
    EXPECT_EQ(RangeGrip::edgeAt(316, 100, 300), Edge::end);
    EXPECT_EQ(RangeGrip::edgeAt(104, 100, 110), Edge::start);
    EXPECT_EQ(RangeGrip::edgeAt(106, 100, 110), Edge::end);
}

TEST(RangeGrip, BothEdgesCanBeTakenHoldOfWhereTheyLieOnEachOther)
{
    EXPECT_EQ(RangeGrip::edgeAt(99, 100, 100), Edge::start);
    EXPECT_EQ(RangeGrip::edgeAt(100, 100, 100), Edge::end);
    EXPECT_EQ(RangeGrip::edgeAt(101, 100, 100), Edge::end);
}

TEST(RangeGrip, ADraggedEdgeKeepsItsDistanceFromThePointer)
{
    RangeGrip grip;
    grip.press(90, 100, 300, Range::canBeTaken);
    EXPECT_EQ(grip.edge, Edge::start);
    EXPECT_FALSE(grip.isClick);
    EXPECT_EQ(grip.edgeX(90), 100);
    EXPECT_EQ(grip.edgeX(150), 160);
    EXPECT_TRUE(grip.release());
    EXPECT_EQ(grip.edge, Edge::none);

    grip.press(312, 100, 300, Range::canBeTaken);
    EXPECT_EQ(grip.edge, Edge::end);
    EXPECT_EQ(grip.edgeX(250), 238);
}

TEST(RangeGrip, AClickIsAPressThatStaysWhereItIs)
{
    RangeGrip grip;
    grip.press(200, 100, 300, Range::canBeTaken);
    EXPECT_TRUE(grip.isClick);
    grip.move(209, 10);
    EXPECT_TRUE(grip.isClick);
    EXPECT_FALSE(grip.isSweep);
    EXPECT_FALSE(grip.release());
}

TEST(RangeGrip, APressThatLeavesItsPlaceSweeps)
{
    RangeGrip grip;
    grip.press(200, 100, 300, Range::canBeTaken);
    grip.move(190, 10);
    EXPECT_FALSE(grip.isClick);
    EXPECT_TRUE(grip.isSweep);
    EXPECT_EQ(grip.edge, Edge::none);
    grip.move(200, 10); // and coming back makes it no click again
    EXPECT_FALSE(grip.isClick);
    EXPECT_TRUE(grip.isSweep);
    EXPECT_TRUE(grip.release());
    EXPECT_FALSE(grip.isSweep);
    EXPECT_FALSE(grip.release());
}

TEST(RangeGrip, AnEdgeThatIsHeldIsNoSweep)
{
    RangeGrip grip;
    grip.press(100, 100, 300, Range::canBeTaken);
    grip.move(200, 10);
    EXPECT_FALSE(grip.isSweep);
    EXPECT_TRUE(grip.release());
}

TEST(RangeGrip, ARangeThatCannotBeTakenIsClickedOn)
{
    RangeGrip grip;
    grip.press(100, 100, 300, Range::cannot);
    EXPECT_EQ(grip.edge, Edge::none);
    EXPECT_TRUE(grip.isClick);
    EXPECT_EQ(grip.edgeX(120), 120);
    grip.move(120, 10);
    EXPECT_FALSE(grip.isClick);
    EXPECT_FALSE(grip.isSweep);
    EXPECT_FALSE(grip.release());
}

TEST(RangeGrip, AnEndedClickIsForgotten)
{
    RangeGrip grip;
    grip.press(200, 100, 300, Range::canBeTaken);
    EXPECT_FALSE(grip.release());
    EXPECT_FALSE(grip.isClick);
}

TEST(RangeGrip, ThePillStandsAtTheEndOfTheRange)
{
    EXPECT_EQ(RangeGrip::pillX(100, 300, 800, 45), 300 - 9 - 45);
}

TEST(RangeGrip, ThePillStandsBesideANarrowRange)
{
    EXPECT_EQ(RangeGrip::pillX(100, 130, 800, 45), 139);
    EXPECT_EQ(RangeGrip::pillX(740, 770, 800, 45), 740 - 9 - 45);
}

TEST(RangeGrip, ThePillStaysInTheView)
{
    EXPECT_EQ(RangeGrip::pillX(100, 3000, 800, 45), 800 - 9 - 45);
    EXPECT_EQ(RangeGrip::pillX(-500, -400, 800, 45), 9);
    EXPECT_EQ(RangeGrip::pillX(10, 20, 40, 45), 0);
}
