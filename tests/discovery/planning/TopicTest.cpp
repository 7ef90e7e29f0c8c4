#include "discovery/planning/Topic.h"

#include "support/Printing.h"

#include <QSet>

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

TEST(Topic, ThirteenStandInTheirOrder)
{
    const QList<Topic>& topics = Topic::all();
    ASSERT_EQ(topics.size(), 13);
    EXPECT_EQ(topics.first().title, u"Fighting & Action"_s);
    EXPECT_EQ(topics.first().symbol, u"figure.boxing"_s);
    EXPECT_THAT(topics.first().terms,
                ElementsAre(u"punch"_s, u"fight"_s, u"kick"_s, u"hit"_s, u"combat"_s, u"sword"_s, u"whip"_s));
    EXPECT_EQ(topics[3].title, u"Gaming"_s);
    EXPECT_THAT(topics[3].terms, ElementsAre(u"game"_s, u"8bit"_s, u"coin"_s, u"powerup"_s, u"arcade"_s, u"level-up"_s));
    EXPECT_EQ(topics.last(), (Topic{u"Everyday Foley"_s,
                                    u"door.left.hand.open"_s,
                                    {u"door"_s, u"footsteps"_s, u"glass"_s, u"keys"_s, u"cloth"_s, u"paper"_s}}));
    QSet<QString> titles;
    for (const Topic& topic : topics) {
        EXPECT_FALSE(topic.anyLength) << topic.title.toStdString();
        EXPECT_FALSE(topic.symbol.isEmpty());
        EXPECT_GE(topic.terms.size(), 4);
        titles << topic.title;
    }
    EXPECT_EQ(titles.size(), 13);
}

TEST(Topic, EqualsByAllFour)
{
    const Topic one = Topic::all().first();
    Topic other = one;
    EXPECT_EQ(one, other);
    EXPECT_EQ(qHash(one), qHash(other));
    other.anyLength = true;
    EXPECT_NE(one, other);
    EXPECT_NE(qHash(one), qHash(other));
}
