#include "terms/SearchTerms.h"
#include "support/Printing.h"

#include <QFile>
#include <QMap>
#include <QSet>

#include <gtest/gtest.h>

#include <thread>

using namespace tonequill;
using namespace Qt::StringLiterals;
using SearchTerms::Fuzzy;

namespace {

// The rows of the dictionary as people read them.
QList<std::pair<QString, QStringList>> rows()
{
    QFile file(u":/terms/arabic-english.txt"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<std::pair<QString, QStringList>> read;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        if (!line.startsWith(u'#'))
            read.append({line.section(u" = "_s, 0, 0), line.section(u" = "_s, 1).split(u", "_s)});
    }
    return read;
}

} // namespace

// As in another program's first use: many threads at once, before any other test.
TEST(SearchTerms, AreBuiltOnceForManyThreads)
{
    std::vector<std::thread> threads;
    std::atomic<int> right = 0;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&right] {
            for (int round = 0; round < 200; ++round)
                right += SearchTerms::english(u"بالسيارة"_s, Fuzzy::yes) == QStringList{u"car"_s};
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(right, 1600);
}

TEST(SearchTerms, TheDictionaryIsWellFormed)
{
    const auto all = rows();
    EXPECT_EQ(all.size(), 257);
    EXPECT_EQ(SearchTerms::dictionary().size(), 251);
    for (const auto& [arabic, english] : all) {
        EXPECT_TRUE(SearchTerms::containsArabic(arabic)) << arabic.toStdString();
        EXPECT_EQ(arabic, arabic.trimmed());
        for (const QString& word : english) {
            EXPECT_FALSE(word.isEmpty()) << arabic.toStdString();
            EXPECT_EQ(word, word.trimmed().toLower());
        }
    }
}

TEST(SearchTerms, OfRowsThatFoldAlikeTheUpperOneCounts)
{
    QSet<QString> seen;
    for (const auto& [arabic, english] : rows()) {
        const QString key = SearchTerms::normalize(arabic);
        if (seen.contains(key))
            continue;
        seen.insert(key);
        EXPECT_EQ(SearchTerms::dictionary().value(key), english) << arabic.toStdString();
    }
    EXPECT_EQ(seen.size(), SearchTerms::dictionary().size());
    EXPECT_EQ(SearchTerms::english(u"همسة"_s, Fuzzy::no), QStringList{u"whisper"_s});
    EXPECT_EQ(SearchTerms::english(u"مفاجأة"_s, Fuzzy::no), (QStringList{u"surprise"_s, u"stinger"_s}));
}

TEST(SearchTerms, EveryRowIsFoundAsItIsWritten)
{
    for (const auto& [arabic, english] : rows()) {
        const QStringList found = SearchTerms::english(arabic, Fuzzy::no);
        EXPECT_EQ(found, SearchTerms::dictionary().value(SearchTerms::normalize(arabic))) << arabic.toStdString();
        EXPECT_FALSE(found.isEmpty());
    }
}

TEST(SearchTerms, ArabicIsWhatStandsInItsTwoBlocks)
{
    for (const char16_t c : {u'\u0600', u'\u06FF', u'\u0750', u'\u077F', u'ب'})
        EXPECT_TRUE(SearchTerms::containsArabic(u"a"_s + QChar(c))) << int(c);
    for (const char16_t c : {u'\u05FF', u'\u0700', u'\u074F', u'\u0780', u'\uFE8F', u'é'})
        EXPECT_FALSE(SearchTerms::containsArabic(u"a"_s + QChar(c))) << int(c);
    EXPECT_FALSE(SearchTerms::containsArabic(u""));
    EXPECT_FALSE(SearchTerms::containsArabic(u"👍🎧"));
}

TEST(SearchTerms, MarksAndTatweelAreStripped)
{
    EXPECT_EQ(SearchTerms::stripMarks(u"أنتِ"), u"أنت"_s);
    EXPECT_EQ(SearchTerms::stripMarks(u"بـــاب"), u"باب"_s);
    EXPECT_EQ(SearchTerms::stripMarks(u"\u064Bب\u0652\u0653"), u"ب\u0653"_s);
    EXPECT_EQ(SearchTerms::stripMarks(u"\u064B\u064C\u0652"), QString());
    EXPECT_EQ(SearchTerms::stripMarks(u"الأب"), u"الأب"_s); // no folding
}

TEST(SearchTerms, SpellingIsFolded)
{
    EXPECT_EQ(SearchTerms::normalize(u"الأبواب"), u"ابواب"_s);
    EXPECT_EQ(SearchTerms::normalize(u"ال"), u"ال"_s);
    EXPECT_EQ(SearchTerms::normalize(u"الم"), u"الم"_s);
    EXPECT_EQ(SearchTerms::normalize(u"الحب"), u"حب"_s);
    EXPECT_EQ(SearchTerms::normalize(u"المء"), u"الم"_s); // the hamza goes first
    EXPECT_EQ(SearchTerms::normalize(u"مسئول"), u"مسول"_s);
    EXPECT_EQ(SearchTerms::normalize(u"مسؤول"), u"مسول"_s);
    EXPECT_EQ(SearchTerms::normalize(u"سماء"), u"سما"_s);
    EXPECT_EQ(SearchTerms::normalize(u"آأإٱا"), u"اااٱا"_s); // the wasla form is kept
    EXPECT_EQ(SearchTerms::normalize(u"عَطْسَـةٌ"), u"عطسه"_s);
    EXPECT_EQ(SearchTerms::normalize(u"موسيقى"), u"موسيقي"_s);
    EXPECT_EQ(SearchTerms::normalize(u"الالماس"), u"الماس"_s); // one article only
    EXPECT_EQ(SearchTerms::normalize(u"والباب"), u"والباب"_s);
    EXPECT_EQ(SearchTerms::normalize(u"Door"), u"Door"_s); // no case folding
    EXPECT_EQ(SearchTerms::normalize(u""), QString());
    EXPECT_EQ(SearchTerms::normalize(u"\u064E\u0651"), QString());
}

TEST(SearchTerms, VariantsAreTriedBestFirst)
{
    EXPECT_EQ(SearchTerms::variants(u"بالسياره"_s),
              (QStringList{u"بالسيار"_s, u"سياره"_s, u"سيار"_s, u"السياره"_s, u"السيار"_s}));
    EXPECT_EQ(SearchTerms::variants(u"ابواب"_s), QStringList());
    // A prefix needs a word of more than 3 characters, a suffix leaves more than 2.
    EXPECT_EQ(SearchTerms::variants(u"بنت"_s), QStringList());
    EXPECT_EQ(SearchTerms::variants(u"وباب"_s), (QStringList{u"باب"_s}));
    EXPECT_EQ(SearchTerms::variants(u"بابه"_s), (QStringList{u"باب"_s, u"ابه"_s}));
    EXPECT_EQ(SearchTerms::variants(u"كتاب"_s), QStringList{u"تاب"_s});
    EXPECT_EQ(SearchTerms::variants(u"جوعانين"_s), QStringList{u"جوعان"_s});
    EXPECT_EQ(SearchTerms::variants(QString()), QStringList());
    // Prefixes do not chain: each is taken off the whole word.
    EXPECT_FALSE(SearchTerms::variants(u"وبالباب"_s).contains(u"باب"_s));
    // A prefix of whole characters: this ب carries a mark that no rule strips.
    EXPECT_FALSE(SearchTerms::variants(u"ب\u0653ارود"_s).contains(u"\u0653ارود"_s));
}

TEST(SearchTerms, DistanceCountsCharacters)
{
    EXPECT_EQ(SearchTerms::editDistance(u"", u""), 0);
    EXPECT_EQ(SearchTerms::editDistance(u"abc", u""), 3);
    EXPECT_EQ(SearchTerms::editDistance(u"", u"abc"), 3);
    EXPECT_EQ(SearchTerms::editDistance(u"kitten", u"sitting"), 3);
    EXPECT_EQ(SearchTerms::editDistance(u"flaw", u"lawn"), 2);
    EXPECT_EQ(SearchTerms::editDistance(u"ab", u"ba"), 2); // a swap is two steps
    EXPECT_EQ(SearchTerms::editDistance(u"ابواب", u"ابواق"), 1);
    EXPECT_EQ(SearchTerms::editDistance(u"a👩‍👩‍👧b", u"ab"), 1);
    EXPECT_EQ(SearchTerms::editDistance(u"e\u0301", u"e"), 1);
}

TEST(SearchTerms, PrefixesAndSuffixesComeOff)
{
    EXPECT_EQ(SearchTerms::english(u"بالسيارة"_s, Fuzzy::no), QStringList{u"car"_s});
    EXPECT_EQ(SearchTerms::english(u"جوعانين"_s, Fuzzy::no), QStringList{u"hungry"_s});
    EXPECT_EQ(SearchTerms::english(u"والانفجارات"_s, Fuzzy::no), QStringList{u"explosion"_s});
    EXPECT_EQ(SearchTerms::english(u"للباب"_s, Fuzzy::no), QStringList{u"door"_s});
    EXPECT_EQ(SearchTerms::english(u"انفجار"_s, Fuzzy::no), QStringList{u"explosion"_s});
    EXPECT_EQ(SearchTerms::english(u"مبارك"_s, Fuzzy::no), (QStringList{u"congratulations"_s, u"celebration"_s}));
}

TEST(SearchTerms, EveryPrefixAndEverySuffixComesOff)
{
    for (const QString& prefix : u"عال بال لل وال فال كال و ف ب ل ك س"_s.split(u' '))
        EXPECT_EQ(SearchTerms::english(prefix + u"باب"_s, Fuzzy::no), QStringList{u"door"_s}) << prefix.toStdString();
    for (const QString& suffix : u"ات ون ين ان ه ي ك نا ها هم"_s.split(u' '))
        EXPECT_EQ(SearchTerms::english(u"انفجار"_s + suffix, Fuzzy::no), QStringList{u"explosion"_s}) << suffix.toStdString();
}

TEST(SearchTerms, WordsOfEveryPartOfTheDictionaryMeanWhatTheyMean)
{
    const QMap<QString, QStringList> some{{u"وووش"_s, {u"whoosh"_s}},    {u"كاميرا"_s, {u"camera shutter"_s}},
                                          {u"قطه"_s, {u"cat"_s}},        {u"تحدي"_s, {u"challenge"_s, u"fanfare"_s}},
                                          {u"عطسة"_s, {u"sneeze"_s}},    {u"جايع"_s, {u"hungry"_s}},
                                          {u"زهقان"_s, {u"bored"_s}},    {u"صحراء"_s, {u"desert"_s}},
                                          {u"اطلاق"_s, {u"shooting"_s}}, {u"ماشاءالله"_s, {u"mashallah"_s}},
                                          {u"مريض"_s, {u"sick"_s}},      {u"غموض"_s, {u"mystery"_s}}};
    for (auto word = some.begin(); word != some.end(); ++word)
        EXPECT_EQ(SearchTerms::english(word.key(), Fuzzy::no), word.value()) << word.key().toStdString();
}

TEST(SearchTerms, OneWrongLetterIsForgivenWhereItLeavesNoDoubt)
{
    EXPECT_EQ(SearchTerms::english(u"الأبواب"_s, Fuzzy::no), QStringList());
    EXPECT_EQ(SearchTerms::english(u"الأبواب"_s, Fuzzy::yes), QStringList{u"horn"_s});
    EXPECT_EQ(SearchTerms::english(u"انفجاز"_s, Fuzzy::yes), QStringList{u"explosion"_s});
    EXPECT_EQ(SearchTerms::english(u"انجار"_s, Fuzzy::yes), QStringList{u"explosion"_s});
    EXPECT_EQ(SearchTerms::english(u"انفجججار"_s, Fuzzy::yes), QStringList());
    EXPECT_EQ(SearchTerms::english(u"صوت"_s, Fuzzy::yes), QStringList()); // too short for a guess
}

TEST(SearchTerms, AGuessBetweenTwoIsRefused)
{
    // In one letter from "يضحك" and from "مضحك".
    EXPECT_EQ(SearchTerms::closest(u"زضحك"_s), QStringList());
    int refused = 0;
    for (auto one = SearchTerms::dictionary().begin(); one != SearchTerms::dictionary().end(); ++one) {
        const QString& key = one.key();
        int near = 0;
        for (auto other = SearchTerms::dictionary().begin(); other != SearchTerms::dictionary().end(); ++other) {
            const bool isCandidate = other.key().size() >= 3 && SearchTerms::editDistance(key, other.key()) <= 1;
            near += isCandidate ? 1 : 0;
        }
        if (key.size() < 4)
            EXPECT_TRUE(SearchTerms::closest(key).isEmpty()) << key.toStdString();
        else
            EXPECT_EQ(SearchTerms::closest(key), near == 1 ? *one : QStringList()) << key.toStdString();
        refused += near > 1 ? 1 : 0;
    }
    EXPECT_GT(refused, 10);
}

TEST(SearchTerms, OnlyArabicIsLookedUp)
{
    EXPECT_EQ(SearchTerms::english(u"door"_s, Fuzzy::yes), QStringList());
    EXPECT_EQ(SearchTerms::english(QString(), Fuzzy::yes), QStringList());
    EXPECT_EQ(SearchTerms::english(u"👍"_s, Fuzzy::yes), QStringList());
    EXPECT_EQ(SearchTerms::english(u"\u064E\u0651"_s, Fuzzy::yes), QStringList()); // marks alone
}

TEST(SearchTerms, AnOnlineQueryIsInEnglish)
{
    EXPECT_EQ(SearchTerms::onlineQuery(u"door"_s), std::nullopt);
    EXPECT_EQ(SearchTerms::onlineQuery(QString()), std::nullopt);
    EXPECT_EQ(SearchTerms::onlineQuery(u"أنا جوعان"_s), u"hungry"_s);
    EXPECT_EQ(SearchTerms::onlineQuery(u"صوت باب 3"_s), u"door 3"_s);
    EXPECT_EQ(SearchTerms::onlineQuery(u"مبارك"_s), u"congratulations"_s); // the first word only
    EXPECT_EQ(SearchTerms::onlineQuery(u"big باب-انفجار!"_s), u"big door explosion"_s);
    EXPECT_EQ(SearchTerms::onlineQuery(u"أنتِ هو"_s), std::nullopt); // stop words, with marks too
    EXPECT_EQ(SearchTerms::onlineQuery(u"صوت"_s), std::nullopt);    // nothing left
    EXPECT_EQ(SearchTerms::onlineQuery(u"صوتX"_s), u"صوتX"_s);      // joined to Latin: as it is
    EXPECT_EQ(SearchTerms::onlineQuery(u"é باب"_s), u"door"_s);     // no ASCII, unknown: dropped
    EXPECT_EQ(SearchTerms::onlineQuery(u"\u064E\u0651"_s), std::nullopt);
    EXPECT_EQ(SearchTerms::onlineQuery(u"ماء"_s), u"water"_s); // folded it would be the stop word "ما"
    EXPECT_EQ(SearchTerms::onlineQuery(u"صَوتX"_s), u"صَوتX"_s); // and keeps its marks
}

TEST(SearchTerms, EveryStopWordIsDroppedWithOrWithoutItsMarks)
{
    for (
        const QString& word :
        u"أنا أنت أنتِ هو هي نحن هم هذا هذه ذلك تلك في من على إلى عن مع هل ما ماذا كيف لا يا و ثم أن إن كان كل بعض لي لك له بدي عم شو ليش انا انت"_s
            .split(u' ')) {
        EXPECT_EQ(SearchTerms::onlineQuery(word + u" x باب"_s), u"x door"_s) << word.toStdString();
        EXPECT_EQ(SearchTerms::onlineQuery(word.first(1) + u'\u064E' + word.sliced(1) + u" باب"_s), u"door"_s);
    }
}

TEST(SearchTerms, AnyTextIsTakenHoweverLong)
{
    EXPECT_EQ(SearchTerms::english(QString(10000, u'ب'), Fuzzy::yes), QStringList());
    EXPECT_EQ(SearchTerms::english(u'ب' + QString(10000, u'\u0653'), Fuzzy::yes), QStringList());
    const QString many = u"باب "_s.repeated(2500);
    EXPECT_EQ(SearchTerms::onlineQuery(many)->count(u"door"), 2500);
    EXPECT_EQ(SearchTerms::onlineQuery(u"ب"_s + QChar(0xD800)), std::nullopt); // half a surrogate pair
}
