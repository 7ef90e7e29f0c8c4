#include "discovery/planning/SearchPlanner.h"

#include "discovery/planning/TableFile.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SearchPlanner, TheTableIsWellFormed)
{
    const auto rows = TableFile::rows(u"intents"_s);
    EXPECT_EQ(rows.size(), 109);
    EXPECT_EQ(SearchPlanner::intents().size(), 108) << "\"knock\" stands there twice";
    for (const QStringList& row : rows) {
        ASSERT_EQ(row.size(), 2) << row.join(u'|').toStdString();
        EXPECT_EQ(row[0], row[0].trimmed().toLower());
        for (const QString& term : TableFile::entries(row[1])) {
            EXPECT_FALSE(term.isEmpty());
            EXPECT_EQ(term, term.trimmed().toLower()) << row[0].toStdString();
        }
    }
    EXPECT_THAT(SearchPlanner::intents().value(u"camera"_s), ElementsAre(u"camera"_s, u"shutter"_s));
    EXPECT_THAT(SearchPlanner::intents().value(u"storm"_s), ElementsAre(u"storm"_s, u"thunder"_s, u"rain"_s));
}

TEST(SearchPlanner, NothingPlansNothing)
{
    EXPECT_EQ(SearchPlanner::plan({}), SearchPlanner::Plan());
    EXPECT_EQ(SearchPlanner::plan(u"  "_s), SearchPlanner::Plan());
}

TEST(SearchPlanner, StopWordsAloneStaySearchable)
{
    const auto plan = SearchPlanner::plan(u"Sound effects "_s);
    EXPECT_THAT(plan.terms, ElementsAre(u"sound effects "_s)) << "in lower case, not trimmed";
    EXPECT_THAT(plan.primary, IsEmpty());
    EXPECT_EQ(plan.summary, u"sound effects "_s);
    EXPECT_THAT(SearchPlanner::plan(u"?!"_s).terms, ElementsAre(u"?!"_s));
}

TEST(SearchPlanner, AnIntentReplacesItsWord)
{
    const auto fight = SearchPlanner::plan(u"Fight sounds"_s);
    EXPECT_THAT(fight.primary, ElementsAre(u"fight"_s));
    EXPECT_THAT(fight.terms, ElementsAre(u"fight"_s, u"punch"_s, u"kick"_s, u"hit"_s, u"combat"_s));
    EXPECT_EQ(fight.summary, u"fight, punch, kick, hit, combat"_s);

    const auto hungry = SearchPlanner::plan(u"hungry"_s);
    EXPECT_THAT(hungry.primary, ElementsAre(u"hungry"_s));
    EXPECT_THAT(hungry.terms,
                ElementsAre(u"stomach"_s, u"growl"_s, u"belly"_s, u"eating"_s, u"chewing"_s, u"munch"_s, u"slurp"_s));
    EXPECT_EQ(hungry.summary, u"stomach, growl, belly, eating, chewing"_s);
}

TEST(SearchPlanner, AWordWithoutAnIntentStandsForItself)
{
    const auto plan = SearchPlanner::plan(u"doors"_s);
    EXPECT_THAT(plan.primary, ElementsAre(u"doors"_s, u"door"_s));
    EXPECT_THAT(plan.terms, ElementsAre(u"doors"_s, u"door"_s));
    EXPECT_THAT(SearchPlanner::plan(u"level-up, level-up"_s).terms, ElementsAre(u"level-up"_s));
}

TEST(SearchPlanner, TwoWordsMayBeOneIntent)
{
    const auto plan = SearchPlanner::plan(u"sword fight"_s);
    EXPECT_THAT(plan.primary, ElementsAre(u"sword"_s, u"fight"_s));
    EXPECT_THAT(plan.terms, ElementsAre(u"sword"_s, u"fight"_s, u"combat"_s, u"punch"_s, u"kick"_s, u"hit"_s));
    EXPECT_THAT(SearchPlanner::plan(u"kung fu"_s).terms,
                ElementsAre(u"kung"_s, u"fu"_s, u"kungfu"_s, u"kick"_s, u"punch"_s, u"whoosh"_s))
        << "the person's words first";
}

TEST(SearchPlanner, KeepsEightTermsAndTellsFive)
{
    const auto plan = SearchPlanner::plan(u"one two three four five six seven eight nine"_s);
    EXPECT_EQ(plan.terms.size(), 8);
    EXPECT_EQ(plan.terms.last(), u"eight"_s);
    EXPECT_EQ(plan.primary.size(), 9);
    EXPECT_EQ(plan.summary, u"one, two, three, four, five"_s);
}

TEST(SearchPlanner, TakesOneEndingOff)
{
    EXPECT_THAT(SearchPlanner::variants(u"barking"_s), ElementsAre(u"barking"_s, u"bark"_s));
    EXPECT_THAT(SearchPlanner::variants(u"acting"_s), ElementsAre(u"acting"_s, u"act"_s));
    EXPECT_THAT(SearchPlanner::variants(u"bring"_s), ElementsAre(u"bring"_s)) << "too short";
    EXPECT_THAT(SearchPlanner::variants(u"boxes"_s), ElementsAre(u"boxes"_s, u"box"_s));
    EXPECT_THAT(SearchPlanner::variants(u"axes"_s), ElementsAre(u"axes"_s, u"axe"_s)) << "too short for es";
    EXPECT_THAT(SearchPlanner::variants(u"cars"_s), ElementsAre(u"cars"_s, u"car"_s));
    EXPECT_THAT(SearchPlanner::variants(u"bus"_s), ElementsAre(u"bus"_s));
    EXPECT_THAT(SearchPlanner::variants(u"ings"_s), ElementsAre(u"ings"_s, u"ing"_s));
}
