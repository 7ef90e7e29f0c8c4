#include "discovery/records/OnlineSound.h"

#include "support/Printing.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(OnlineSound, NamesItsLicence)
{
    OnlineSound sound;
    for (const auto& [code, name] : {std::pair{u"pdm"_s, u"Public domain"_s},
                                     {u"PDM"_s, u"Public domain"_s},
                                     {u"by"_s, u"CC BY"_s},
                                     {u"By-SA"_s, u"CC BY-SA"_s},
                                     {u"cc0"_s, u"CC0"_s},
                                     {u"by-nc"_s, u"CC0"_s},
                                     {u""_s, u"CC0"_s}}) {
        sound.license = code;
        EXPECT_EQ(sound.licenseName(), name) << code.toStdString();
    }
}

TEST(OnlineSound, TakesItsFactsIntoTheLibrary)
{
    OnlineSound sound;
    sound.id = u"7"_s;
    sound.title = u"Door"_s;
    sound.license = u"by"_s;
    sound.tags = {u"A"_s, u"b"_s, u"C"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s, u"H"_s, u"i"_s};
    SoundInfo facts = sound.info();
    EXPECT_EQ(facts.name, u"Door"_s);
    EXPECT_EQ(facts.tags, (QStringList{u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s, u"h"_s}));
    EXPECT_EQ(facts.sourceID, u"7"_s);
    EXPECT_EQ(facts.license, u"CC BY"_s);
    EXPECT_EQ(facts.credit, std::nullopt);
    EXPECT_EQ(facts.pageURL, std::nullopt);
    sound.creator = u"Ana"_s;
    sound.pageURL = u"https://example.org/7"_s;
    facts = sound.info();
    EXPECT_EQ(facts.credit, u"Ana"_s);
    EXPECT_EQ(facts.pageURL, u"https://example.org/7"_s);
}

TEST(OnlineSound, EqualsByAllFields)
{
    OnlineSound one;
    one.creator = u"a"_s;
    OnlineSound other = one;
    EXPECT_EQ(one, other);
    EXPECT_EQ(qHash(one), qHash(other));
    other.creator.reset();
    other.pageURL = u"a"_s;
    EXPECT_NE(one, other);
    EXPECT_NE(qHash(one), qHash(other));
    other = one;
    other.popularity = 1;
    EXPECT_NE(one, other);
}
