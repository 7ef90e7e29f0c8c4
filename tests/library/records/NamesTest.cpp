#include "library/records/FileNames.h"
#include "library/records/NamePolicy.h"
#include "support/Printing.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(NamePolicy, ANameThatSaysNothingIsGeneric)
{
    for (const QString& name : {u""_s,
                                u"  "_s,
                                u"A1"_s,
                                u"ab"_s,
                                u"B12"_s,
                                u"12345"_s,
                                u"2024-05-01 12.30.11"_s,
                                u"(1)"_s,
                                u"Final"_s,
                                u"FINAL (3)"_s,
                                u"clip_01"_s,
                                u"IMG_2041"_s,
                                u"screen_recording_2"_s,
                                u"Screen Recording"_s,
                                u" untitled "_s,
                                u"New Recording 7"_s,
                                u"MVI 12"_s,
                                u"voice"_s,
                                u"Export.(2)"_s,
                                u"٣٤٥"_s,
                                u"screen - recording"_s,
                                u"track--"_s,
                                u"بب"_s})
        EXPECT_TRUE(NamePolicy::isGeneric(name)) << name.toStdString();
}

TEST(NamePolicy, EveryListedWordIsGeneric)
{
    for (const QString& name : {u"img"_s,        u"vid"_s,       u"mov"_s,   u"dsc"_s,      u"mvi"_s,     u"screen recording"_s,
                                u"screenshot"_s, u"recording"_s, u"audio"_s, u"untitled"_s, u"track"_s,   u"new recording"_s,
                                u"voice"_s,      u"clip"_s,      u"sound"_s, u"video"_s,    u"capture"_s, u"output"_s,
                                u"export"_s,     u"final"_s})
        EXPECT_TRUE(NamePolicy::isGeneric(name)) << name.toStdString();
}

TEST(NamePolicy, AChosenNameIsNot)
{
    for (const QString& name : {u"Door Slam"_s, u"voice memo"_s, u"Take 12"_s, u"final boss"_s, u"باب"_s, u"recorded"_s,
                                u"my clip"_s, u"abc"_s, u"clips 01"_s, u"new recording of rain"_s, u"final\nboss"_s})
        EXPECT_FALSE(NamePolicy::isGeneric(name)) << name.toStdString();
}

TEST(NamePolicy, TheShareOfNumbersDecidesAtFourTenths)
{
    EXPECT_TRUE(NamePolicy::isGeneric(u"abc12"_s));      // 2 of 5
    EXPECT_FALSE(NamePolicy::isGeneric(u"abcd12"_s));    // 2 of 6
    EXPECT_FALSE(NamePolicy::isGeneric(u"door---12"_s)); // other characters don't count
}

TEST(FileNames, ReplacesWhatNoFileNameMayHold)
{
    EXPECT_EQ(FileNames::safe(u"a/b"_s), u"a-b"_s);
    EXPECT_EQ(FileNames::safe(u"///"_s), u"---"_s);
    EXPECT_EQ(FileNames::safe(u"/:\\?*\"<>|"_s), u"---------"_s);
    EXPECT_EQ(FileNames::safe(u"  Door \n"_s), u"Door"_s);
    EXPECT_EQ(FileNames::safe(u"   "_s), u"Sound"_s);
    EXPECT_EQ(FileNames::safe(u""_s), u"Sound"_s);
    EXPECT_EQ(FileNames::safe(u"صوت. élan"_s), u"صوت. élan"_s);
}

TEST(FileNames, KeepsEightyCharactersNotBytes)
{
    EXPECT_EQ(FileNames::safe(QString(100, u'x')), QString(80, u'x'));
    const QString family = u"👩‍👩‍👧"_s;
    EXPECT_EQ(FileNames::safe(family + QString(100, u'x')), family + QString(79, u'x'));
    EXPECT_EQ(FileNames::safe(QString(79, u'x') + family + u"y"_s), QString(79, u'x') + family);
}

TEST(FileNames, HoldsNoControlCharacter)
{
    EXPECT_EQ(FileNames::safe(u"notes.txt"_s + QChar(u'\0') + u"x\x1b"_s), u"notes.txt x"_s);
    EXPECT_EQ(FileNames::safe(QString(1, QChar(u'\0'))), u"Sound"_s);
    EXPECT_EQ(FileNames::safe(QString(20 << 20, u'x')).size(), 80);
}
