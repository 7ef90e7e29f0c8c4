#include "base/TimeText.h"

#include "support/Printing.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(TimeText, PlacesHaveTheDecimalsOfTheirStep)
{
    EXPECT_EQ(TimeText::place(0, 1), u"0:00"_s);
    EXPECT_EQ(TimeText::place(65, 5), u"1:05"_s);
    EXPECT_EQ(TimeText::place(3723, 60), u"1:02:03"_s);
    EXPECT_EQ(TimeText::place(0.5, 0.5), u"0:00.5"_s);
    EXPECT_EQ(TimeText::place(4.05, 0.05), u"0:04.05"_s);
    EXPECT_EQ(TimeText::place(1.002, 0.002), u"0:01.002"_s);
}

TEST(TimeText, APlaceIsRoundedAsAWhole)
{
    EXPECT_EQ(TimeText::place(59.9999, 1), u"1:00"_s); // never "0:60"
    EXPECT_EQ(TimeText::place(59.96, 0.1), u"1:00.0"_s);
    EXPECT_EQ(TimeText::place(3599.9996, 0.001), u"1:00:00.000"_s);
}

TEST(TimeText, APlaceBeforeTheStartIsTheStart)
{
    EXPECT_EQ(TimeText::place(-1e-9, 1), u"0:00"_s);
    EXPECT_EQ(TimeText::place(-3, 0.1), u"0:00.0"_s);
}

TEST(TimeText, AnExactPlaceCountsMilliseconds)
{
    EXPECT_EQ(TimeText::exactPlace(3.61), u"0:03.610"_s);
    EXPECT_EQ(TimeText::exactPlace(3600), u"1:00:00.000"_s);
}

TEST(TimeText, ALengthHasHundredths)
{
    EXPECT_EQ(TimeText::length(1.379), u"1.38s"_s);
    EXPECT_EQ(TimeText::length(0.03), u"0.03s"_s);
    EXPECT_EQ(TimeText::length(3600), u"3600.00s"_s);
}

TEST(TimeText, ADurationHasHundredthsOrIsRough)
{
    EXPECT_EQ(TimeText::duration(6.984), u"6.98 s"_s);
    EXPECT_EQ(TimeText::roughDuration(6.98), u"7.0 s"_s);
    EXPECT_EQ(TimeText::roughDuration(1.44), u"1.4 s"_s);
}

TEST(TimeText, RoundsTiesAsPrintfDoes)
{
    EXPECT_EQ(TimeText::roughDuration(0.25), u"0.2 s"_s);
    EXPECT_EQ(TimeText::duration(0.125), u"0.12 s"_s);
    EXPECT_EQ(TimeText::length(1.375), u"1.38s"_s);
    EXPECT_EQ(TimeText::length(0.625), u"0.62s"_s);
}
