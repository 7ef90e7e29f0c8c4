#include "discovery/planning/ArabicLabels.h"

#include "discovery/planning/TableFile.h"
#include "support/Printing.h"
#include "terms/SearchTerms.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

OnlineSound sound(const QString& title, const QStringList& tags)
{
    OnlineSound one;
    one.title = title;
    one.tags = tags;
    return one;
}

std::optional<QString> label(const QString& title, const QStringList& tags, const QStringList& terms)
{
    return ArabicLabels::label(sound(title, tags), terms);
}

} // namespace

TEST(ArabicLabels, TheTableIsWellFormed)
{
    const auto rows = TableFile::rows(u"captions"_s);
    EXPECT_EQ(rows.size(), 277);
    for (const QStringList& row : rows) {
        ASSERT_EQ(row.size(), 2);
        EXPECT_EQ(row[0], row[0].trimmed().toLower());
        EXPECT_TRUE(SearchTerms::containsArabic(row[1])) << row[0].toStdString();
        EXPECT_EQ(row[1], row[1].trimmed());
    }
    EXPECT_EQ(ArabicLabels::names().value(u"rumble"_s), u"قصف"_s) << "the upper row counts";
    EXPECT_EQ(ArabicLabels::names().value(u"growl"_s), u"زئير"_s);
    EXPECT_EQ(ArabicLabels::names().value(u"oriental"_s), u"شرقي"_s);
    EXPECT_EQ(ArabicLabels::names().size(), 275);
}

TEST(ArabicLabels, TheFirstTermThatTheSoundBearsCounts)
{
    EXPECT_EQ(label(u"Slam"_s, {u"Door"_s, u"cat"_s}, {u"cat"_s, u"door"_s}), u"قطة"_s);
    EXPECT_EQ(label(u"Doorbell"_s, {u"x"_s}, {u"cat"_s, u"door"_s}), u"باب"_s) << "a part of the title is enough";
    EXPECT_EQ(label(u"x"_s, {u"doorbell"_s}, {u"door"_s}), std::nullopt) << "of a tag it isn't";
}

TEST(ArabicLabels, OwnTagsAreTriedNext)
{
    EXPECT_EQ(label(u"x"_s, {u"nothing"_s, u"CAT"_s, u"dog"_s}, {u"door"_s, u"unknown"_s}), u"قطة"_s);
    EXPECT_EQ(label(u"A cat"_s, {}, {}), std::nullopt) << "the title alone gives none";
    EXPECT_EQ(label({}, {}, {}), std::nullopt);
}

TEST(ArabicLabels, AnArabicTitleNeedsNone)
{
    OnlineSound arabic = sound(u"باب"_s, {u"door"_s});
    EXPECT_EQ(ArabicLabels::label(arabic, {}), u"باب"_s);
    arabic.isArabic = true;
    EXPECT_EQ(ArabicLabels::label(arabic, {}), std::nullopt);
    arabic.title = u"Door"_s;
    EXPECT_EQ(ArabicLabels::label(arabic, {}), u"باب"_s);
}
