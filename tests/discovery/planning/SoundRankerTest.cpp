#include "discovery/planning/SoundRanker.h"

#include "support/Printing.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using SoundRanker::PreferShort;
using testing::ElementsAre;

namespace {

OnlineSound sound(const QString& title, const QStringList& tags, double duration = 0)
{
    OnlineSound one;
    one.id = title;
    one.title = title;
    one.tags = tags;
    one.duration = duration;
    return one;
}

double pointsOf(const OnlineSound& one, const QStringList& terms, const QStringList& primary = {},
                PreferShort preferShort = PreferShort::no)
{
    return SoundRanker::score(one, terms, primary, preferShort);
}

} // namespace

TEST(SoundRanker, AddsUpWhatTermsFind)
{
    const OnlineSound door = sound(u"Door slam"_s, {u"Door"_s});
    EXPECT_EQ(pointsOf(door, {u"door"_s}, {u"door"_s}), 17);
    EXPECT_EQ(pointsOf(door, {u"door"_s}), 5.5);
    EXPECT_EQ(pointsOf(door, {u"oor"_s}), 3) << "2 in a tag and 2 in the title, by half, and 1";
    EXPECT_EQ(pointsOf(door, {u"slam"_s}), 3);
    EXPECT_EQ(pointsOf(door, {u"door"_s, u"slam"_s}, {u"door"_s}), 13 + 2 + 3 + 2);
    EXPECT_EQ(pointsOf(door, {u"door"_s, u"door"_s}), 11) << "a term counts as often as it stands there";
    EXPECT_EQ(pointsOf(sound(u"x"_s, {u"train"_s}), {u"rain"_s}), 2);
    EXPECT_EQ(pointsOf(sound(u"x"_s, {u"train"_s, u"rain"_s}), {u"rain"_s}), 3.5);
    EXPECT_EQ(pointsOf(sound(u"big-door"_s, {}), {u"door"_s}), 3) << "a whole word of the title";
}

TEST(SoundRanker, TakesAwayWhereNothingMatches)
{
    const OnlineSound cat = sound(u"Cat"_s, {u"cat"_s}, 2);
    EXPECT_EQ(pointsOf(cat, {u"door"_s}), -6);
    EXPECT_EQ(pointsOf(cat, {}), -6);
    EXPECT_EQ(pointsOf(cat, {u"door"_s}, {}, PreferShort::yes), -3);
}

TEST(SoundRanker, PrefersShortOnesIfAsked)
{
    for (const auto& [seconds, points] :
         {std::pair{0.0, 3.0}, {3.0, 3.0}, {3.01, 1.5}, {6.0, 1.5}, {6.01, 0.0}, {12.0, 0.0}, {12.01, -1.5}}) {
        const OnlineSound door = sound(u"x"_s, {u"door"_s}, seconds);
        EXPECT_EQ(pointsOf(door, {u"door"_s}, {}, PreferShort::yes), 3.5 + points) << seconds;
        EXPECT_EQ(pointsOf(door, {u"door"_s}), 3.5);
    }
}

TEST(SoundRanker, PutsBackgroundsBackOnce)
{
    for (const QString& tag : {u"loop"_s, u"Music"_s, u"song"_s, u"ambience"_s, u"AMBIENT"_s, u"test"_s, u"demo"_s}) {
        EXPECT_EQ(pointsOf(sound(u"x"_s, {u"door"_s, tag, u"loop"_s}, 10), {u"door"_s}, {}, PreferShort::yes), 1.5);
        EXPECT_EQ(pointsOf(sound(u"x"_s, {u"door"_s, tag}, 10), {u"door"_s}), 3.5);
    }
    EXPECT_EQ(pointsOf(sound(u"x"_s, {u"door"_s, u"music box"_s}, 10), {u"door"_s}, {}, PreferShort::yes), 3.5);
}

TEST(SoundRanker, OrdersAndKeepsTheOrderOfEquals)
{
    const QList<OnlineSound> sounds{sound(u"none 1"_s, {}), sound(u"one"_s, {u"door"_s}), sound(u"none 2"_s, {}),
                                    sound(u"door"_s, {u"door"_s}), sound(u"two"_s, {u"door"_s})};
    QStringList ranked;
    for (const OnlineSound& one : SoundRanker::rank(sounds, {u"door"_s}, {u"door"_s}, PreferShort::no))
        ranked << one.id;
    EXPECT_THAT(ranked, ElementsAre(u"door"_s, u"one"_s, u"two"_s, u"none 1"_s, u"none 2"_s));
}
