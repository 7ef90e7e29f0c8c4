#include "discovery/catalogue/CatalogueReader.h"

#include "discovery/catalogue/Inflater.h"
#include "discovery/catalogue/Loaded.h"

#include <gmock/gmock.h>

using namespace tonequill;
using Fate = CatalogueItem::Fate;
using Outcome = CatalogueReader::Outcome;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// What a visitor was shown, in texts of its own.
struct Shown final : CatalogueVisitor {
    struct Item {
        CatalogueItem values;
        std::string id, title, url, license;
        std::optional<std::string> page, creator;
        std::vector<std::string> tags;
    };
    std::vector<Item> items;

    static std::optional<std::string> own(const std::optional<std::string_view>& text)
    {
        return text ? std::optional(std::string(*text)) : std::nullopt;
    }
    void take(const CatalogueItem& item) override
    {
        items.push_back({item,
                         std::string(item.id),
                         std::string(item.title),
                         std::string(item.url),
                         std::string(item.license),
                         own(item.page),
                         own(item.creator),
                         {item.tags.begin(), item.tags.end()}});
    }
    void startAgain() override { items.clear(); }
};

Outcome read(const std::string& json, Shown& shown)
{
    return CatalogueReader::read(test::packed(json), shown);
}

Outcome outcomeOf(const std::string& json)
{
    Shown shown;
    return read(json, shown);
}

Shown::Item itemOf(const std::string& json)
{
    Shown shown;
    EXPECT_EQ(read(test::document(json), shown), Outcome::done) << json;
    EXPECT_EQ(shown.items.size(), 1U) << json;
    return shown.items.empty() ? Shown::Item() : shown.items[0];
}

Fate fateOf(const std::string& json)
{
    return itemOf(json).values.fate;
}

std::string repeated(std::size_t count, const std::string& text)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

// A stream of so many blanks, made bit by bit: one blank, and then "258 more of it" in
// the fixed codes.
std::string bombOf(std::size_t bytes)
{
    std::string stream;
    unsigned pending = 0;
    int pendingBits = 0;
    const auto put = [&](unsigned bits, int count) { // the first bit lowest
        pending |= bits << pendingBits;
        for (pendingBits += count; pendingBits >= 8; pendingBits -= 8, pending >>= 8)
            stream += char(pending & 0xFF);
    };
    put(0b011, 3);      // the last block, of fixed codes
    put(0b00001010, 8); // 0x30 + ' ', its bits turned around
    for (std::size_t i = 0; i < bytes / 258; ++i)
        put(0b00000'10100011, 13); // 258 bytes from one byte back
    put(0, 7 + 7);                 // the end, and what fills a byte
    return stream;
}

} // namespace

TEST(CatalogueReader, ReadsEveryField)
{
    const Shown::Item item = itemOf(
        R"({"i":"id 7","t":"Door Slam","u":"https://example.org/a.mp3","g":["Door","SLAM"],"a":0,"d":3.5,"l":"by","c":"Ana","p":"https://example.org/7","s":"w","r":0.75,"x":[{"y":null}]})");
    EXPECT_EQ(item.values.fate, Fate::kept);
    EXPECT_EQ(item.id, "id 7");
    EXPECT_EQ(item.title, "Door Slam");
    EXPECT_EQ(item.url, "https://example.org/a.mp3");
    EXPECT_THAT(item.tags, ElementsAre("Door", "SLAM"));
    EXPECT_EQ(item.values.duration, 3.5);
    EXPECT_EQ(item.license, "by");
    EXPECT_EQ(item.creator, "Ana");
    EXPECT_EQ(item.page, "https://example.org/7");
    EXPECT_TRUE(item.values.isFromWikimedia);
    EXPECT_EQ(item.values.popularity, 0.75);
}

TEST(CatalogueReader, HasAnAnswerForWhatIsMissing)
{
    const Shown::Item item = itemOf(test::item());
    EXPECT_EQ(item.values.fate, Fate::kept);
    EXPECT_THAT(item.tags, IsEmpty());
    EXPECT_EQ(item.values.duration, 0);
    EXPECT_EQ(item.license, "cc0");
    EXPECT_EQ(item.creator, std::nullopt);
    EXPECT_EQ(item.page, std::nullopt);
    EXPECT_FALSE(item.values.isFromWikimedia);
    EXPECT_EQ(item.values.popularity, 0);
}

TEST(CatalogueReader, TakesAnotherTypeForMissing)
{
    for (const std::string field : {"i", "t", "u"}) {
        for (const std::string value : {"3", "null", "[\"a\"]", "{}", "true"})
            EXPECT_EQ(fateOf(test::item("\"" + field + "\":" + value)), Fate::unusable) << field << value;
        EXPECT_EQ(fateOf(test::item("\"" + field + "\":\"\"")), field == "u" ? Fate::unusable : Fate::kept) << field;
    }
    const Shown::Item item =
        itemOf(test::item(R"("g":["a",1],"d":"3","l":5,"c":[1,[2]],"p":{"q":[]},"s":"W","r":"0.5","a":"1")"));
    EXPECT_EQ(item.values.fate, Fate::kept);
    EXPECT_THAT(item.tags, IsEmpty()) << "an array of strings, or none";
    EXPECT_EQ(item.values.duration, 0);
    EXPECT_EQ(item.license, "cc0");
    EXPECT_EQ(item.creator, std::nullopt);
    EXPECT_EQ(item.page, std::nullopt);
    EXPECT_FALSE(item.values.isFromWikimedia);
    EXPECT_EQ(item.values.popularity, 0);
    EXPECT_THAT(itemOf(test::item(R"("g":"a")")).tags, IsEmpty());
    EXPECT_THAT(itemOf(test::item(R"("g":{"a":["b"]})")).tags, IsEmpty());
    EXPECT_EQ(itemOf(test::item(R"("d":true)")).values.duration, 0);
}

TEST(CatalogueReader, ReadsNumbersOfBothKinds)
{
    EXPECT_EQ(itemOf(test::item(R"("d":3)")).values.duration, 3.0);
    EXPECT_EQ(itemOf(test::item(R"("d":-2.5e-1)")).values.duration, -0.25);
    EXPECT_EQ(itemOf(test::item(R"("d":123456789012345678901234)")).values.duration, 123456789012345678901234.0);
    // Such a number can't be read: it is as good as missing.
    EXPECT_EQ(itemOf(test::item(R"("d":1e999,"r":1e999)")).values.duration, 0);
    EXPECT_EQ(itemOf(test::item(R"("r":-1e999)")).values.popularity, 0);
    EXPECT_EQ(itemOf(test::item(R"("d":01)")).values.duration, 0);
}

TEST(CatalogueReader, LeavesOutInOneOrder)
{
    EXPECT_EQ(fateOf(test::item(R"("a":0)")), Fate::kept);
    EXPECT_EQ(fateOf(test::item(R"("a":2)")), Fate::kept);
    EXPECT_EQ(fateOf(test::item(R"("a":true)")), Fate::kept);
    EXPECT_EQ(fateOf(test::item(R"("a":1)")), Fate::marked);
    for (const std::string extension : {"ogg", "OGG", "oga", "opus", "WebM"}) {
        EXPECT_EQ(fateOf(test::item("\"u\":\"https://example.org/a." + extension + "\"")), Fate::format) << extension;
        EXPECT_EQ(fateOf(test::item("\"a\":1,\"u\":\"https://example.org/a." + extension + "?x=1\"")), Fate::format);
        EXPECT_EQ(fateOf(R"({"t":"a","u":"https://example.org/a.)" + extension + "\"}"), Fate::unusable);
    }
    EXPECT_EQ(fateOf(test::item(R"("u":"https://example.org/a.mp3?file=b.ogg")")), Fate::kept);
    EXPECT_EQ(fateOf(test::item(R"("u":"http://[::1/a.mp3")")), Fate::unusable);
}

TEST(CatalogueReader, LoadsAnyScheme)
{
    for (const std::string url : {"file:///etc/passwd", "javascript:alert(1)", "data:,x", "sounds/a.mp3", "ftp://example.org/a"})
        EXPECT_EQ(fateOf(test::item("\"u\":\"" + url + "\"")), Fate::kept) << url;
    EXPECT_EQ(itemOf(test::item(R"("p":"http://[::1/")")).page, std::nullopt);
    const std::string longUrl = "https://example.org/" + std::string(64 << 10, 'a');
    EXPECT_EQ(itemOf(test::item("\"u\":\"" + longUrl + "\"")).url, longUrl);
}

TEST(CatalogueReader, ReadsEscapes)
{
    EXPECT_EQ(itemOf(test::item(R"("t":"a\"\\\/\n\u00e9\ud83d\ude00")")).title, "a\"\\/\né😀");
    EXPECT_EQ(itemOf(R"({"\u0069":"7","\u0074":"T","\u0075":"a.mp3"})").title, "T") << "a key may be escaped, too";
    EXPECT_EQ(itemOf(test::item(R"("c" : "Ana"  )")).creator, "Ana");
    EXPECT_EQ(itemOf(test::item("\"t\":\"" + std::string(3, ' ') + "\"")).title, "   ");
    // Half a surrogate and an unknown escape can't be read.
    EXPECT_EQ(fateOf(test::item(R"("t":"\ud83d")")), Fate::unusable);
    EXPECT_EQ(fateOf(test::item(R"("t":"\ude00\ud83d")")), Fate::unusable);
    EXPECT_EQ(itemOf(test::item(R"("c":"\q")")).creator, std::nullopt);
    EXPECT_THAT(itemOf(test::item(R"("g":["a","\ud83d"])")).tags, IsEmpty());
}

TEST(CatalogueReader, TakesTheLastOfEqualKeys)
{
    EXPECT_EQ(itemOf(R"({"i":"1","t":"One","u":"a.mp3","t":"Two"})").title, "Two");
    EXPECT_EQ(fateOf(R"({"i":"1","t":"One","u":"a.mp3","t":2})"), Fate::unusable);
    EXPECT_THAT(itemOf(test::item(R"("g":["a"],"g":["b"])")).tags, ElementsAre("b"));
    Shown shown;
    EXPECT_EQ(read("{\"items\":[" + test::item() + "," + test::item() + "],\"items\":[" + test::item() + "]}", shown),
              Outcome::done);
    EXPECT_EQ(shown.items.size(), 1U);
    EXPECT_EQ(outcomeOf("{\"items\":[" + test::item() + "],\"items\":3}"), Outcome::noItems);
}

TEST(CatalogueReader, WantsAnObjectWithItems)
{
    for (const std::string json : {"{}", "[]", "3", "\"items\"", "null", R"({"items":{}})", R"({"items":null})",
                                   R"({"items":[1]})", R"({"items":[{},[]]})", R"({"Items":[]})", R"([{"items":[]}])"})
        EXPECT_EQ(outcomeOf(json), Outcome::noItems) << json;
    EXPECT_EQ(outcomeOf(R"({"items":[]})"), Outcome::done);
    EXPECT_EQ(outcomeOf(R"( {"version":{"a":[1,2,{}]}, "items" : [ ] , "more":"x"} )"), Outcome::done);
}

TEST(CatalogueReader, RefusesBrokenStructureWhereverItIs)
{
    const std::string good = test::item();
    for (const std::string& json : {std::string(),
                                    std::string(" "),
                                    std::string("{"),
                                    std::string("{\"items\":["),
                                    "{\"items\":[" + good,
                                    "{\"items\":[" + good + "]",
                                    "{\"items\":[" + good + ",]}",
                                    "{\"items\":[" + good + good + "]}",
                                    "{\"items\":[" + good + "]} x",
                                    "{\"items\":[" + good + "]}{}",
                                    "{\"items\":[" + good + "}}",
                                    std::string(R"({"items":[{"i":"1","t":"a" "u":"b"}]})"),
                                    std::string(R"({"items":[{"i":"1","t":}]})"),
                                    std::string(R"({"items":[{"i":"1",}]})"),
                                    std::string(R"({"items":[{"i"}]})"),
                                    std::string(R"({"items":[{i:"1"}]})"),
                                    std::string(R"({"items":[{"i":"1":"t"}]})"),
                                    std::string(R"({"items":[{"x":[1 2]}]})"),
                                    std::string(R"({"items":[{"x":[1,}]}]})"),
                                    std::string(R"({"items":[{"g":["a" "b"]}]})"),
                                    std::string(R"({"items":[{"x":xyz}]})"),
                                    std::string(R"({"items":[],"x":[}]})"),
                                    std::string("{\"items\":[{\"t\":\"a\nb\"}]}"),
                                    std::string("{\"items\":[{\"t\":\"\xff\"}]}"),
                                    std::string("{\"items\":[{\"t\":\"\xed\xa0\x80\"}]}"),
                                    std::string("{\"items\":[{\"t\":\"a}]}")})
        EXPECT_EQ(outcomeOf(json), Outcome::notJson) << json;
}

TEST(CatalogueReader, TakesAByteOrderMark)
{
    EXPECT_EQ(outcomeOf("\xEF\xBB\xBF" + test::document(test::item())), Outcome::done);
    EXPECT_EQ(outcomeOf("\xEF\xBB\xBF\xEF\xBB\xBF" + test::document(test::item())), Outcome::notJson);
}

TEST(CatalogueReader, EndsWhereItIsNestedTooDeep)
{
    const auto nested = [](std::size_t depth) { return test::item("\"x\":" + repeated(depth, "[") + repeated(depth, "]")); };
    EXPECT_EQ(outcomeOf(test::document(nested(500))), Outcome::done);
    EXPECT_EQ(outcomeOf(test::document(nested(520))), Outcome::notJson);
    EXPECT_EQ(outcomeOf(test::document(nested(100000))), Outcome::notJson);
    EXPECT_EQ(outcomeOf(repeated(100000, "{\"a\":") + repeated(100000, "}")), Outcome::notJson);
    EXPECT_EQ(outcomeOf(R"({"items":[{"i":)" + repeated(100000, "[") + repeated(100000, "]") + "}]}"), Outcome::notJson);
}

TEST(CatalogueReader, RefusesWhatIsNoStream)
{
    const std::string good = test::packed(test::document(test::item()));
    Shown shown;
    EXPECT_EQ(CatalogueReader::read(good, shown), Outcome::done);
    EXPECT_EQ(CatalogueReader::read({}, shown), Outcome::notDeflate);
    for (std::size_t cut = 0; cut < good.size(); ++cut)
        EXPECT_EQ(CatalogueReader::read(std::string_view(good).substr(0, cut), shown), Outcome::notDeflate) << cut;
    EXPECT_EQ(CatalogueReader::read(good + "x", shown), Outcome::goesOn);
    EXPECT_EQ(CatalogueReader::read(test::document(test::item()), shown), Outcome::notDeflate) << "it isn't packed";
}

TEST(CatalogueReader, RefusesABomb)
{
    const std::string bomb = bombOf(std::size_t(600) << 20);
    EXPECT_LT(bomb.size(), 4U << 20);
    Shown shown;
    EXPECT_EQ(CatalogueReader::read(bomb, shown), Outcome::tooLarge);
    EXPECT_EQ(CatalogueReader::read(bombOf(1 << 20), shown), Outcome::notJson) << "a small one is none";
}

TEST(CatalogueReader, TakesAMillionTags)
{
    Shown shown;
    EXPECT_EQ(read(test::document(test::item("\"g\":[\"a\"" + repeated(999999, ",\"b\"") + "]")), shown), Outcome::done);
    ASSERT_EQ(shown.items.size(), 1U);
    EXPECT_EQ(shown.items[0].tags.size(), 1000000U);
}
