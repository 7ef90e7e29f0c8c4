#include "discovery/catalogue/IndexSearch.h"

#include "discovery/catalogue/Loaded.h"
#include "discovery/catalogue/PlainSearch.h"
#include "support/Catalogues.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// One sound: its title is also its identifier.
std::string sound(const std::string& title, const std::string& tags, double duration = 20, double popularity = 0)
{
    return R"({"i":")" + title + R"(","t":")" + title + R"(","u":"https://example.org/a.mp3","g":[)" + tags + R"(],"d":)" +
           std::to_string(duration) + R"(,"r":)" + std::to_string(popularity) + "}";
}

QStringList found(const std::string& items, const IndexQuery& query)
{
    SoundIndex index;
    test::install(index, test::document(items));
    QStringList ids;
    for (const OnlineSound& one : index.search(query))
        ids << one.id;
    return ids;
}

// Questions as people's plans make them: words by how common they are, parts of words,
// and words that nobody uses.
IndexQuery randomQuery(test::RandomCatalogue& words)
{
    IndexQuery query;
    const std::size_t count = 1 + words.below(12);
    for (std::size_t i = 0; i < count; ++i) {
        QString term = QString::fromStdString(words.word(words.drawnRank()));
        if (words.below(10) == 0)
            term.truncate(3);
        if (words.below(20) == 0)
            term += u"zz"_s;
        query.terms << term;
        if (words.below(3) == 0)
            query.primary << term;
    }
    if (words.below(8) == 0)
        query.primary << u"notaterm"_s;
    if (words.below(2) == 0)
        query.maxSeconds = double(words.below(30));
    query.limit = words.below(4) == 0 ? qsizetype(words.below(600)) : 300;
    query.preferArabic = words.below(2) == 0;
    return query;
}

} // namespace

TEST(IndexSearch, EqualsThePlainOne)
{
    SoundIndex index;
    ASSERT_EQ(test::install(index, test::RandomCatalogue(1, 4000).json(20000)), CatalogueReader::Outcome::done);
    const auto tables = index.tables();
    QList<OnlineSound> all;
    for (std::int32_t n = 0; n < tables->soundCount(); ++n)
        all << tables->sound(n);
    const test::PlainSearch plain(all);
    test::RandomCatalogue words(2, 4000);
    qsizetype longest = 0;
    for (int i = 0; i < 500; ++i) {
        const IndexQuery query = randomQuery(words);
        const QList<OnlineSound> expected = plain.search(query);
        ASSERT_EQ(index.search(query), expected) << i << ": " << query.terms.join(u' ').toStdString();
        longest = std::max(longest, expected.size());
    }
    EXPECT_GT(longest, 400) << "the questions find too little to tell anything";
}

TEST(IndexSearch, FindsNothingWithoutTerms)
{
    EXPECT_THAT(found(sound("Door", R"("door")"), {}), IsEmpty());
    EXPECT_THAT(found({}, {{u"door"_s}, {}, {}, 300, false}), IsEmpty());
    SoundIndex nothing;
    EXPECT_THAT(nothing.search({{u"door"_s}, {}, {}, 300, false}), IsEmpty());
}

TEST(IndexSearch, MakesOneCandidateOfTagAndTitle)
{
    EXPECT_THAT(found(sound("Door Slam", R"("Door","door")"), {{u"door"_s}, {u"door"_s}, {}, 300, false}),
                ElementsAre(u"Door Slam"_s));
}

TEST(IndexSearch, CountsATermTwiceThatIsAskedForTwice)
{
    // Twice "b" outweighs "a" and its popularity of 1: 2 × 3.5 beside 3.5 + 4 at last.
    const std::string items = sound("A", R"("a")", 20, 0.9) + ',' + sound("B", R"("b")");
    EXPECT_THAT(found(items, {{u"a"_s, u"b"_s}, {}, {}, 300, false}), ElementsAre(u"A"_s, u"B"_s));
    EXPECT_THAT(found(items, {{u"a"_s, u"b"_s, u"b"_s}, {}, {}, 300, false}), ElementsAre(u"B"_s, u"A"_s));
}

TEST(IndexSearch, LooksAtFourHundredHoweverFewAreWanted)
{
    // The last one is the best, though the first stage, which knows no parts of words,
    // puts it behind the others, whose popularity is a little greater.
    std::string items;
    for (int i = 0; i < 399; ++i)
        items += sound("Other" + std::to_string(i), R"("door")", 20, 0.01) + ',';
    items += sound("Bells", R"("door")");
    const IndexQuery query{{u"door"_s, u"bell"_s}, {}, {}, 10, false};
    EXPECT_EQ(found(items, query).size(), 10);
    EXPECT_EQ(found(items, query).first(), u"Bells"_s);
    items = sound("First", R"("door")", 20, 0.01) + ',' + items;
    EXPECT_FALSE(found(items, query).contains(u"Bells"_s)) << "it is the 401st";
}

TEST(IndexSearch, LeavesOutWhatIsTooLong)
{
    const std::string items = sound("Six", R"("door")", 6) + ',' + sound("More", R"("door")", 6.01);
    EXPECT_THAT(found(items, {{u"door"_s}, {}, 6.0, 300, false}), ElementsAre(u"Six"_s));
    EXPECT_THAT(found(items, {{u"door"_s}, {}, {}, 300, false}), ElementsAre(u"Six"_s, u"More"_s));
}

TEST(IndexSearch, PrefersShortOnesOnlyWhereALengthIsGiven)
{
    const std::string items = sound("Thirteen", R"("door")", 13) + ',' + sound("Twelve", R"("door")", 12) + ',' +
                              sound("Six", R"("door")", 6) + ',' + sound("Three", R"("door")", 3);
    EXPECT_THAT(found(items, {{u"door"_s}, {}, 15.0, 300, false}), ElementsAre(u"Three"_s, u"Six"_s, u"Twelve"_s, u"Thirteen"_s));
    EXPECT_THAT(found(items, {{u"door"_s}, {}, {}, 300, false}), ElementsAre(u"Thirteen"_s, u"Twelve"_s, u"Six"_s, u"Three"_s));
}

TEST(IndexSearch, PutsBackgroundsBehindOnceAndOnlyWhereALengthIsGiven)
{
    const std::string items = sound("Loop", R"("door","Loop","music")") + ',' + sound("Box", R"("door","music box")");
    EXPECT_THAT(found(items, {{u"door"_s}, {u"door"_s}, 300.0, 300, false}), ElementsAre(u"Box"_s, u"Loop"_s));
    EXPECT_THAT(found(items, {{u"door"_s}, {u"door"_s}, {}, 300, false}), ElementsAre(u"Loop"_s, u"Box"_s));
    // 2 for the word, 1 for the match, −2 once: 1; twice would leave nothing.
    EXPECT_THAT(found(sound("A door", R"("Loop","music")", 10), {{u"door"_s}, {}, 15.0, 300, false}), ElementsAre(u"A door"_s));
}

TEST(IndexSearch, LetsPopularityBringNothingIn)
{
    // 2.5 points for the tag, 1 for the match, −1.5 for the length, −2 for the loop: 0.
    const std::string items = sound("Long", R"("loop","door")", 20, 10);
    EXPECT_THAT(found(items, {{u"door"_s}, {}, 30.0, 300, false}), IsEmpty());
    EXPECT_THAT(found(items, {{u"door"_s}, {}, {}, 300, false}), ElementsAre(u"Long"_s));
}

TEST(IndexSearch, SeesPartsOfWordsOnlyOfWhatWasFoundOtherwise)
{
    const std::string items = sound("Doorbell", R"("ring")") + ',' + sound("Ring", R"("ring","phone")");
    EXPECT_THAT(found(items, {{u"door"_s}, {}, {}, 300, false}), IsEmpty());
    EXPECT_THAT(found(items, {{u"phone"_s, u"ring"_s, u"door"_s}, {u"door"_s}, {}, 300, false}),
                ElementsAre(u"Doorbell"_s, u"Ring"_s));
}

TEST(IndexSearch, KeepsTheOrderOfTheTermsAmongEquals)
{
    const std::string items = sound("One", R"("b")") + ',' + sound("Two", R"("a")") + ',' + sound("Three", R"("a")");
    EXPECT_THAT(found(items, {{u"a"_s, u"b"_s}, {}, {}, 300, false}), ElementsAre(u"Two"_s, u"Three"_s, u"One"_s));
}

TEST(IndexSearch, TakesAnyLimit)
{
    const std::string items = sound("One", R"("a")") + ',' + sound("Two", R"("a")");
    for (const auto& [limit, size] : {std::pair<qsizetype, qsizetype>{-1, 0}, {0, 0}, {1, 1}, {2, 2}, {5000000000, 2}})
        EXPECT_EQ(found(items, {{u"a"_s}, {}, {}, limit, false}).size(), size);
}

TEST(IndexSearch, OrdersAnyPopularity)
{
    const std::string items =
        R"({"i":"low","t":"x","u":"a.mp3","g":["a"],"r":-1e300},{"i":"zero","t":"x","u":"a.mp3","g":["a"]},)"
        R"({"i":"minus","t":"x","u":"a.mp3","g":["a"],"r":-2.5},{"i":"high","t":"x","u":"a.mp3","g":["a"],"r":1e300})";
    EXPECT_THAT(found(items, {{u"a"_s}, {}, {}, 300, false}), ElementsAre(u"high"_s, u"zero"_s, u"minus"_s, u"low"_s));
}
