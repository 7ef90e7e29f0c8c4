#include "discovery/catalogue/CatalogueTables.h"

#include "discovery/catalogue/Loaded.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

std::vector<std::string> texts(const CatalogueTables& tables, std::span<const CatalogueTables::Symbol> symbols)
{
    std::vector<std::string> all;
    for (const auto symbol : symbols)
        all.emplace_back(tables.text(symbol));
    return all;
}

std::vector<std::string> lowerTags(const CatalogueTables& tables, std::int32_t index)
{
    std::vector<std::string> all;
    for (const auto tag : tables.tags(index))
        all.emplace_back(tables.text(tables.lower(tag)));
    return all;
}

std::vector<std::int32_t> tagged(const CatalogueTables& tables, std::string_view tag)
{
    const auto symbol = tables.find(tag);
    if (symbol == SymbolTable::kNone)
        return {};
    const auto postings = tables.tagPostings(symbol);
    return {postings.begin(), postings.end()};
}

std::vector<std::int32_t> titled(const CatalogueTables& tables, std::string_view word)
{
    const auto symbol = tables.find(word);
    if (symbol == SymbolTable::kNone)
        return {};
    const auto postings = tables.wordPostings(symbol);
    return {postings.begin(), postings.end()};
}

} // namespace

TEST(CatalogueTables, GiveBackWhatTheFileSays)
{
    const auto tables = test::loaded(test::document(
        R"({"i":"a","t":"Big Door","u":"https://example.org/a.mp3","g":["Door","door","DOOR x"],"d":1.5,"l":"by","c":"","p":"https://example.org/a","s":"w","r":0.25},)"
        R"({"i":"b","t":"été","u":"b.mp3"})"));
    ASSERT_EQ(tables->soundCount(), 2);
    const OnlineSound full{u"a"_s,
                           u"Big Door"_s,
                           u"https://example.org/a.mp3"_s,
                           1.5,
                           u"by"_s,
                           QString(u""_s),
                           u"https://example.org/a"_s,
                           {u"Door"_s, u"door"_s, u"DOOR x"_s},
                           u"wikimedia_audio"_s,
                           false,
                           0.25};
    EXPECT_EQ(tables->sound(0), full);
    const OnlineSound bare{u"b"_s, u"été"_s, u"b.mp3"_s, 0, u"cc0"_s, {}, {}, {}, u"freesound"_s, false, 0};
    EXPECT_EQ(tables->sound(1), bare);
}

TEST(CatalogueTables, CloseUpOverWhatIsLeftOut)
{
    const auto tables = test::loaded(
        test::document(R"({"i":"a","t":"a","u":"a.ogg","g":["x"]},{"i":"b","t":"b","u":"b.mp3","g":["x"]},{"t":"c","u":"c.mp3"},)"
                       R"({"i":"d","t":"d","u":"d.mp3","a":1},{"i":"b","t":"e","u":"e.mp3","g":["x"]})"));
    ASSERT_EQ(tables->soundCount(), 2);
    EXPECT_EQ(tables->sound(0).id, u"b"_s);
    EXPECT_EQ(tables->sound(1).title, u"e"_s) << "two may have one identifier";
    EXPECT_THAT(tagged(*tables, "x"), ElementsAre(0, 1));
}

TEST(CatalogueTables, PostWholeTagsOnceInLowerCase)
{
    const auto tables = test::loaded(
        test::document(test::item(R"("g":["Door","door","Big Door","ÉTÉ"])") + ',' + test::item(R"("g":["big door"])")));
    EXPECT_THAT(tagged(*tables, "door"), ElementsAre(0));
    EXPECT_THAT(tagged(*tables, "big door"), ElementsAre(0, 1));
    EXPECT_THAT(tagged(*tables, "été"), ElementsAre(0));
    EXPECT_THAT(tagged(*tables, "Door"), IsEmpty());
    EXPECT_THAT(tagged(*tables, "big"), IsEmpty());
    EXPECT_THAT(lowerTags(*tables, 0), ElementsAre("door", "door", "big door", "été"));
    EXPECT_THAT(texts(*tables, tables->tags(0)), ElementsAre("Door", "door", "Big Door", "ÉTÉ"));
}

TEST(CatalogueTables, PostTheWordsOfTitlesFromThreeCharactersOn)
{
    const auto tables = test::loaded(
        test::document(test::item(R"("t":"Big-Door Slam 2")") + ',' + test::item(R"("t":"door, DOOR; ou été été ŒU 123 ab")")));
    EXPECT_THAT(texts(*tables, tables->titleWords(0)), UnorderedElementsAre("big", "door", "slam", "2"));
    EXPECT_THAT(texts(*tables, tables->titleWords(1)), UnorderedElementsAre("door", "ou", "été", "œu", "123", "ab"));
    EXPECT_THAT(titled(*tables, "big"), ElementsAre(0));
    EXPECT_THAT(titled(*tables, "door"), ElementsAre(0, 1));
    EXPECT_THAT(titled(*tables, "slam"), ElementsAre(0));
    EXPECT_THAT(titled(*tables, "été"), ElementsAre(1));
    EXPECT_THAT(titled(*tables, "123"), ElementsAre(1));
    for (const char* shortWord : {"2", "ou", "œu", "ab"})
        EXPECT_THAT(titled(*tables, shortWord), IsEmpty()) << shortWord;
    EXPECT_EQ(tables->lowerTitle(0), "big-door slam 2");
    EXPECT_EQ(tables->lowerTitle(1), "door, door; ou été été œu 123 ab");
}

TEST(CatalogueTables, KeepTitlesThatAreLowerAlready)
{
    const auto tables = test::loaded(test::document(test::item(R"("t":"door")") + ',' + test::item(R"("t":"")")));
    EXPECT_EQ(tables->lowerTitle(0), "door");
    EXPECT_EQ(tables->lowerTitle(1), "");
    EXPECT_THAT(tables->titleWords(1), IsEmpty());
}

TEST(CatalogueTables, AreQuickWithAMillionTagsOnOneSound)
{
    std::string tags = "\"g\":[\"a\"";
    for (int i = 0; i < 1000000; ++i)
        tags += ",\"T" + std::to_string(i % 50000) + "\"";
    const auto tables = test::loaded(test::document(test::item(tags + "]")));
    ASSERT_EQ(tables->soundCount(), 1);
    EXPECT_EQ(tables->tags(0).size(), 1000001U);
    EXPECT_THAT(tagged(*tables, "t49999"), ElementsAre(0));
}
