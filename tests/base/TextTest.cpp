#include "base/Text.h"
#include "support/Printing.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(Text, CountsWhatAReaderTakesForACharacter)
{
    EXPECT_EQ(text::characterCount(u""), 0);
    EXPECT_EQ(text::characterCount(u"abc"), 3);
    EXPECT_EQ(text::characterCount(u"e\u0301"), 1);            // e and a combining acute
    EXPECT_EQ(text::characterCount(u"👩‍👩‍👧"), 1); // a family of five code points
    EXPECT_EQ(text::characterCount(u"🇸🇦🇩🇪"), 2);               // two flags
    EXPECT_EQ(text::characterCount(u"شَدّ"), 2);                 // two letters with their marks
}

TEST(Text, CountsLettersAndNumbersOfAnyScript)
{
    EXPECT_EQ(text::letterCount(u"clip_01"), 4);
    EXPECT_EQ(text::numberCount(u"clip_01"), 2);
    EXPECT_EQ(text::letterCount(u"باب"), 3);
    EXPECT_EQ(text::numberCount(u"٣٤"), 2);
    EXPECT_EQ(text::numberCount(u"Ⅳ½"), 2);
    EXPECT_EQ(text::letterCount(u"𝒳"), 1); // outside the first plane
    EXPECT_EQ(text::letterCount(u"- _ ."), 0);
}

TEST(Text, TakesCharactersOneByOne)
{
    EXPECT_EQ(text::characters(u""), QList<QStringView>());
    EXPECT_EQ(text::characters(u"ae\u0301🇸🇦"), (QList<QStringView>{u"a", u"e\u0301", u"🇸🇦"}));
}

TEST(Text, WordsAreRunsOfLettersAndNumbers)
{
    EXPECT_EQ(text::words(u""), QStringList());
    EXPECT_EQ(text::words(u" .-_!👍 "), QStringList());
    EXPECT_EQ(text::words(u"Door-slam_2, big"), (QStringList{u"Door"_s, u"slam"_s, u"2"_s, u"big"_s}));
    EXPECT_EQ(text::words(u"شَدّ٣ élan"), (QStringList{u"شَدّ٣"_s, u"élan"_s})); // marks belong to their letters
    EXPECT_EQ(text::words(u"\u064E\u064E"), QStringList());                  // marks alone are no letters
}

TEST(Text, NeverCutsACharacterApart)
{
    EXPECT_EQ(text::firstCharacters(u"👩‍👩‍👧ab", 2), u"👩‍👩‍👧a"_s);
    EXPECT_EQ(text::firstCharacters(u"abc", 9), u"abc"_s);
    EXPECT_EQ(text::firstCharacters(u"abc", 0), QString());
    EXPECT_EQ(text::firstBytes(u"äöü", 5), u"äö"_s);
    EXPECT_EQ(text::firstBytes(u"a👩‍👩‍👧", 10), u"a"_s);
    EXPECT_EQ(text::firstBytes(u"abc", 3), u"abc"_s);
}

TEST(Text, LowersAndCapitalises)
{
    EXPECT_EQ(text::lowercase(u"DOOR Slam Ä"), u"door slam ä"_s);
    EXPECT_EQ(text::capitalized(u"door SLAM, car-horn don't"), u"Door Slam, Car-Horn Don't"_s);
    EXPECT_EQ(text::capitalized(u"صوت باب"), u"صوت باب"_s);
    EXPECT_EQ(text::trimmed(u" \t\n a b \u00a0"), u"a b"_s);
}

TEST(Text, SurvivesBrokenSurrogates)
{
    const QString broken = QString(QChar(0xD83D)) + u"a"_s;
    EXPECT_EQ(text::letterCount(broken), 1);
    EXPECT_GE(text::characterCount(broken), 1);
    EXPECT_LE(text::firstCharacters(broken, 1).size(), 2);
}

TEST(Text, ControlCharactersBecomeBlanks)
{
    EXPECT_EQ(text::withoutControls(u"a\nb\tc\x1b\u0085d"_s + QChar(u'\0')), u"a b c  d "_s);
    EXPECT_EQ(text::withoutControls(u"باب – 👍 \u200D"_s), u"باب – 👍 \u200D"_s); // joiners are none
}

TEST(Text, OfAHostileTextOnlyTheBeginningIsShown)
{
    EXPECT_EQ(text::shownPart(u"Door"_s), u"Door"_s);
    EXPECT_EQ(text::shownPart(QString(32'768, u'x')).size(), 32'768);
    EXPECT_EQ(text::shownPart(QString(20 << 20, u'x')).size(), 32'768);
    EXPECT_EQ(text::shownPart(QString(32'767, u'x') + u"👍👍"_s), QString(32'767, u'x')); // no half of a pair
}

TEST(Text, AJointStaysInItsWord)
{
    EXPECT_EQ(text::words(u"level-up, 8-bit!", u'-'), (QStringList{u"level-up"_s, u"8-bit"_s}));
    EXPECT_EQ(text::words(u"level-up"), (QStringList{u"level"_s, u"up"_s}));
}

TEST(Text, APlainLineBreaksNoRow)
{
    EXPECT_EQ(text::plainLine(u"a\nb\tc\x1b[31m\u0085\u2028d"), u"a\uFFFDb\uFFFDc\uFFFD[31m\uFFFD\uFFFDd"_s);
    EXPECT_EQ(text::plainLine(u"\u202Eabc\u202C \u2066x\u2069\u200F\u061C"), u"abc x"_s);
    EXPECT_EQ(text::plainLine(u"باب “Door”"), u"باب “Door”"_s);
}
