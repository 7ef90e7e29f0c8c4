#include "base/NumberText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(NumberText, RoundsWhatLiesJustBetweenToTheEvenDigit)
{
    EXPECT_EQ(numberText::fixed(0.25, 1), u"0.2"_s);
    EXPECT_EQ(numberText::fixed(0.75, 1), u"0.8"_s);
    EXPECT_EQ(numberText::fixed(0.125, 2), u"0.12"_s);
    EXPECT_EQ(numberText::fixed(2.5, 0), u"2"_s);
    EXPECT_EQ(numberText::fixed(0.35, 1), u"0.3"_s); // just below
    EXPECT_EQ(numberText::shortest(1.25, 2), u"1.2"_s);
    EXPECT_EQ(numberText::withSign(0.5, 0), u"+0"_s);
    EXPECT_EQ(numberText::withSign(-1.5, 0), u"-2"_s);
}

TEST(NumberText, WritesAsCDoes)
{
    EXPECT_EQ(numberText::fixed(-1.379, 2), u"-1.38"_s);
    EXPECT_EQ(numberText::fixed(3600, 1), u"3600.0"_s);
    EXPECT_EQ(numberText::shortest(0.75, 2), u"0.75"_s);
    EXPECT_EQ(numberText::shortest(1, 2), u"1"_s);
    EXPECT_EQ(numberText::withSign(7, 0), u"+7"_s);
    EXPECT_EQ(numberText::withSign(-0.2, 0), u"-0"_s);
    EXPECT_EQ(numberText::fixed(std::numeric_limits<double>::max(), 2).size(), 309 + 3);
}

TEST(NumberText, KeepsItsPointInEveryLocale)
{
    const QByteArray before = std::setlocale(LC_NUMERIC, nullptr);
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8"); // where it is installed
    EXPECT_EQ(numberText::fixed(1.5, 1), u"1.5"_s);
    std::setlocale(LC_NUMERIC, before.constData());
}
