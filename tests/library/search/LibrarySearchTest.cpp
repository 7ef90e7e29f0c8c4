#include "library/search/LibrarySearch.h"

#include "fakes/FakeClock.h"
#include "library/store/LibraryStore.h"
#include "support/Await.h"
#include "support/LibraryFolder.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

#include <chrono>
#include <random>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

class LibrarySearchTest : public testing::Test {
protected:
    void add(const QString& name, const QStringList& tags = {}, const QStringList& descriptors = {})
    {
        SoundItem item;
        item.id = QUuid::createUuid();
        item.name = name;
        item.tags = tags;
        item.descriptors = descriptors;
        items << item;
        search.inserted(items.size() - 1);
    }

    QStringList find(const QString& query) { return names(search.search(items, query)); }

    static QStringList names(const QList<SoundItem>& found)
    {
        QStringList all;
        for (const SoundItem& item : found)
            all << item.name;
        return all;
    }

    QList<SoundItem> items;
    LibrarySearch search;
};

// The score as it is told, word by word and term by term.
int plainScore(const SoundItem& item, const QStringList& words)
{
    int score = 0;
    const QString name = item.name.toLower();
    for (const QString& word : words) {
        for (const QString& term : LibrarySearch::expanded(word)) {
            const int weight = term == word ? 2 : 1;
            score += name.contains(term) ? 3 * weight : 0;
            for (const QString& tag : item.tags) {
                if (tag.toLower().contains(term)) {
                    score += 2 * weight;
                    break;
                }
            }
            score += item.descriptors.contains(term) ? weight : 0;
        }
    }
    return score;
}

} // namespace

TEST_F(LibrarySearchTest, AControlCharacterDoesNotEndAName)
{
    add(u"Bell"_s, {u"slam"_s});
    add(u"Door\u001FSlam"_s);
    EXPECT_THAT(find(u"slam"_s), ElementsAre(u"Door\u001FSlam"_s, u"Bell"_s));
}

TEST_F(LibrarySearchTest, AQueryWithoutWordsYieldsEverything)
{
    add(u"b"_s);
    add(u"a"_s);
    for (const QString& query : {u""_s, u"  \n"_s, u".,-!_"_s, u"👍🎧"_s, u"\u064E\u0651"_s, u"\u0301"_s, QString(10000, u'-')})
        EXPECT_THAT(find(query), ElementsAre(u"b"_s, u"a"_s)) << query.left(9).toStdString();
}

TEST_F(LibrarySearchTest, NameGoesBeforeTagBeforeDescriptor)
{
    add(u"x"_s, {}, {u"door"_s});
    add(u"y"_s, {u"door"_s});
    add(u"Big Doors"_s);
    add(u"z"_s);
    EXPECT_THAT(find(u"DOOR"_s), ElementsAre(u"Big Doors"_s, u"y"_s, u"x"_s));
}

TEST_F(LibrarySearchTest, ATagCountsOnceAndADescriptorOnlyWhole)
{
    add(u"one"_s, {u"door"_s});
    add(u"many"_s, {u"Door"_s, u"doors"_s, u"indoor"_s});
    add(u"part"_s, {}, {u"doors"_s});
    add(u"case"_s, {}, {u"Door"_s}); // descriptors are compared as stored
    EXPECT_THAT(find(u"door"_s), ElementsAre(u"one"_s, u"many"_s));
}

TEST_F(LibrarySearchTest, AWordIsNotFoundAcrossTwoTexts)
{
    add(u"car"_s, {u"pet"_s, u"ball"_s});
    EXPECT_THAT(find(u"carpet"_s), ElementsAre());
    EXPECT_THAT(find(u"petball"_s), ElementsAre());
}

TEST_F(LibrarySearchTest, SynonymsCountHalf)
{
    add(u"1"_s, {u"hit"_s});
    add(u"2"_s, {u"boom"_s});
    EXPECT_THAT(find(u"boom"_s), ElementsAre(u"2"_s, u"1"_s));
    EXPECT_THAT(find(u"hit"_s), ElementsAre(u"1"_s, u"2"_s));
    EXPECT_THAT(find(u"swish"_s), ElementsAre());
}

TEST_F(LibrarySearchTest, ASynonymLeadsToItsWholeRows)
{
    EXPECT_EQ(LibrarySearch::expanded(u"boom"_s), (QSet<QString>{u"hit"_s, u"impact"_s, u"punch"_s, u"slam"_s, u"thud"_s,
                                                                 u"boom"_s, u"bass"_s, u"deep"_s, u"low"_s, u"drop"_s}));
    EXPECT_EQ(LibrarySearch::expanded(u"giggle"_s), (QSet<QString>{u"laugh"_s, u"giggle"_s, u"funny"_s}));
    EXPECT_EQ(LibrarySearch::expanded(u"door"_s), QSet<QString>{u"door"_s});
    for (const QString& word : {u"pop"_s, u"click"_s})
        EXPECT_EQ(LibrarySearch::expanded(word), (QSet<QString>{u"pop"_s, u"click"_s, u"bubble"_s, u"tap"_s}));
    for (const QString& word : {u"riser"_s, u"tension"_s}) {
        EXPECT_EQ(LibrarySearch::expanded(word), (QSet<QString>{u"riser"_s, u"rise"_s, u"swell"_s, u"build"_s, u"tension"_s}));
    }
    for (const QString& word : {u"sparkle"_s, u"chime"_s}) {
        EXPECT_EQ(LibrarySearch::expanded(word), (QSet<QString>{u"sparkle"_s, u"bright"_s, u"shine"_s, u"magic"_s, u"chime"_s}));
    }
}

TEST_F(LibrarySearchTest, ArabicIsUnderstood)
{
    add(u"Car Pass"_s);
    add(u"انفجار كبير"_s);
    add(u"Explosion Far"_s, {u"boom"_s});
    add(u"Wind"_s);
    EXPECT_THAT(find(u"بالسيارة"_s), ElementsAre(u"Car Pass"_s));
    EXPECT_THAT(find(u"انفجار"_s), ElementsAre(u"انفجار كبير"_s, u"Explosion Far"_s));
    // Its English words bring the synonyms of the rows they are keys of, no more.
    EXPECT_EQ(LibrarySearch::expanded(u"ووش"_s),
              (QSet<QString>{u"ووش"_s, u"whoosh"_s, u"swoosh"_s, u"swish"_s, u"swipe"_s, u"transition"_s, u"fast"_s}));
    EXPECT_EQ(LibrarySearch::expanded(u"دوي"_s), (QSet<QString>{u"دوي"_s, u"boom"_s}));
    EXPECT_TRUE(LibrarySearch::expanded(u"الأبواب"_s).contains(u"horn"_s)); // by one letter
}

TEST_F(LibrarySearchTest, AnEnglishMeaningOfTwoWordsIsFoundAsItStands)
{
    add(u"Camera Shutter"_s);
    add(u"Camera"_s);
    EXPECT_THAT(find(u"كاميرا"_s), ElementsAre(u"Camera Shutter"_s));
}

TEST_F(LibrarySearchTest, EqualSoundsKeepTheirOrder)
{
    for (int i = 0; i < 100; ++i)
        add(u"door %1"_s.arg(i), {}, i % 2 ? QStringList{u"door"_s} : QStringList());
    const QStringList found = find(u"door"_s);
    ASSERT_EQ(found.size(), 100);
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(found[i], u"door %1"_s.arg(2 * i + 1));
        EXPECT_EQ(found[50 + i], u"door %1"_s.arg(2 * i));
    }
}

TEST_F(LibrarySearchTest, EveryScriptIsFoldedAlike)
{
    add(u"ÉLAN ΣΊΣΥΦΟΣ ДВЕРЬ ドア 门 문 दरवाज़ा דלת"_s);
    add(u"E\u0301lan"_s); // as some systems write file names
    for (const QString& query : {u"élan"_s, u"e\u0301lan"_s})
        EXPECT_EQ(find(query).size(), 2) << query.toStdString();
    for (const QString& query : {u"дверь"_s, u"ドア"_s, u"门"_s, u"문"_s, u"दरवाज़ा"_s, u"דלת"_s, u"σίσυ"_s})
        EXPECT_EQ(find(query).size(), 1) << query.toStdString();
}

TEST_F(LibrarySearchTest, AgreesWithThePlainRules)
{
    const QStringList words{u"door"_s, u"Boom"_s,  u"hit"_s, u"Deep"_s, u"pop"_s,
                            u"باب"_s,  u"laugh"_s, u"low"_s, u"o"_s,    u"Car"_s};
    std::mt19937 random(7);
    const auto some = [&](int most) {
        QStringList chosen;
        for (int left = int(random() % std::size_t(most + 1)); left > 0; --left)
            chosen << words[qsizetype(random() % std::size_t(words.size()))];
        return chosen;
    };
    for (int i = 0; i < 300; ++i)
        add(some(3).join(u' '), some(3), some(2));
    const QStringList queries{u"boom"_s,  u"door hit"_s,       u"باب"_s, u"pop pop o"_s, u"سيارة low"_s,
                              u"funny"_s, u"bass laugh door"_s};
    for (const QString& query : queries) {
        QList<SoundItem> expected;
        QMultiMap<int, SoundItem> byScore;
        for (auto item = items.crbegin(); item != items.crend(); ++item) // a multimap puts the last one first
            byScore.insert(-plainScore(*item, query.split(u' ')), *item);
        for (auto entry = byScore.cbegin(); entry != byScore.cend() && entry.key() < 0; ++entry)
            expected << *entry;
        EXPECT_FALSE(expected.isEmpty());
        EXPECT_EQ(search.search(items, query), expected) << query.toStdString();
    }
}

TEST_F(LibrarySearchTest, ALongQueryIsAnswered)
{
    for (int i = 0; i < 1000; ++i)
        add(u"Sound %1"_s.arg(i));
    std::mt19937 random(3);
    QString query;
    while (query.size() < 10000)
        query += QString::number(random() % 100000, 36) + u' ';
    EXPECT_LE(find(query).size(), 1000);
    EXPECT_THAT(find(QString(10000, u'x')), ElementsAre());
    EXPECT_EQ(find(u"sound "_s.repeated(1700)).size(), 1000);
    EXPECT_EQ(find(u"sound 👍 "_s.repeated(1000)).size(), 1000);
}

TEST_F(LibrarySearchTest, RelatedWordsAreFoundInNamesAndTags)
{
    add(u"Old Door"_s);
    add(u"x"_s, {u"Doorbell"_s});
    add(u"y"_s, {u"bell"_s}, {u"door"_s}); // not in descriptors
    add(u"Knock"_s);
    EXPECT_EQ(names(search.containing(items, {u"knock"_s, u"door"_s})), (QStringList{u"Old Door"_s, u"x"_s, u"Knock"_s}));
    EXPECT_EQ(names(search.containing(items, {})), QStringList());
}

TEST(LibraryStoreSearch, FollowsEveryChange)
{
    test::LibraryFolder folder;
    folder.add(u"Door"_s);
    folder.add(u"Glass"_s);
    folder.write();
    test::FakeClock clock;
    Workers workers;
    LibraryStore store(clock, workers, folder.path());
    EXPECT_EQ(store.search(u"door"_s).size(), 1);
    EXPECT_EQ(store.search(u"glass"_s).size(), 1);

    const SoundItem glass = store.items()[1];
    store.rename(glass, u"Indoor"_s);
    EXPECT_EQ(store.search(u"glass"_s), QList<SoundItem>());
    EXPECT_EQ(store.search(u"door"_s), store.items());

    store.update(glass, [](SoundItem& item) { item.tags = {u"Rain"_s}; });
    EXPECT_EQ(store.search(u"rain"_s), QList<SoundItem>{store.items()[1]});

    const SoundItem added =
        test::await(store.importFile(test::writeTone(folder.filePath(u"Rainy.wav"_s)), SoundOrigin::imported));
    EXPECT_EQ(store.search(u"rain"_s), (QList<SoundItem>{added, store.items()[2]}));
    EXPECT_EQ(store.containing({u"rain"_s}), (QList<SoundItem>{added, store.items()[2]}));

    store.deleteItems({store.items()[1]});
    EXPECT_EQ(store.search(u"indoor"_s), QList<SoundItem>{store.items()[1]});
    EXPECT_EQ(store.search(u"door"_s), QList<SoundItem>{store.items()[1]});
}
