#include "cli/Cli.h"
#include "support/Printing.h"
#include "support/SmallCatalogue.h"
#include "support/Wav.h"

#include <QDir>
#include <QJsonArray>

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;

namespace {

class FindTest : public testing::Test {
protected:
    FindTest()
    {
        QDir(cli.home.path()).mkpath(u"data/Tonequill"_s);
        test::writeBytes(cli.at(u"data/Tonequill/sound-index.bin"_s), test::smallCatalogue());
    }

    QJsonObject found(const QStringList& arguments)
    {
        const auto result = cli.run(QStringList{u"find"_s, u"--json"_s} + arguments);
        EXPECT_EQ(result.exitCode, 0) << result.error.toStdString();
        return result.json().object();
    }

    static QStringList texts(const QJsonValue& array)
    {
        QStringList all;
        for (const QJsonValue& text : array.toArray())
            all << text.toString();
        return all;
    }

    test::Cli cli;
};

} // namespace

TEST_F(FindTest, AnswersFromTheCatalogue)
{
    const QJsonObject answer = found({u"sword"_s, u"fight"_s, u"--limit"_s, u"3"_s});
    EXPECT_THAT(texts(answer[u"plan"_s][u"terms"_s]),
                ElementsAre(u"sword"_s, u"fight"_s, u"combat"_s, u"punch"_s, u"kick"_s, u"hit"_s));
    EXPECT_EQ(answer[u"plan"_s][u"summary"_s].toString(), u"sword, fight, combat, punch, kick"_s);
    const QJsonArray results = answer[u"results"_s].toArray();
    ASSERT_EQ(results.size(), 3);
    const QJsonObject best = results[0].toObject();
    EXPECT_TRUE(best[u"title"_s].toString().contains(u"Sword Clash"_s)) << best[u"title"_s].toString().toStdString();
    EXPECT_EQ(best[u"caption"_s].toString(), u"سيف"_s);
    for (const QString& key : {u"id"_s, u"title"_s, u"url"_s, u"duration"_s, u"license"_s, u"creator"_s, u"pageURL"_s, u"tags"_s,
                               u"source"_s, u"isArabic"_s, u"popularity"_s})
        EXPECT_TRUE(best.contains(key)) << key.toStdString();
    EXPECT_TRUE(answer[u"related"_s].isArray());
    EXPECT_EQ(answer[u"message"_s].toString(), QString());
    EXPECT_GT(answer[u"seconds"_s].toDouble(), 0);
}

TEST_F(FindTest, UnderstandsDialect)
{
    const QJsonObject answer = found({u"بدي صوت ضحك"_s});
    EXPECT_THAT(texts(answer[u"plan"_s][u"terms"_s]), ElementsAre(u"laugh"_s, u"laughing"_s, u"giggle"_s));
    const QJsonObject best = answer[u"results"_s][0].toObject();
    EXPECT_TRUE(texts(best[u"tags"_s]).contains(u"laugh"_s, Qt::CaseInsensitive));
    EXPECT_EQ(best[u"caption"_s].toString(), u"ضحك"_s);
}

TEST_F(FindTest, LeavesLongOnesOut)
{
    const QJsonArray all = found({u"rain"_s})[u"results"_s].toArray();
    const QJsonArray brief = found({u"rain"_s, u"--max-seconds"_s, u"3"_s})[u"results"_s].toArray();
    EXPECT_LT(brief.size(), all.size());
    EXPECT_FALSE(brief.isEmpty());
    for (const QJsonValue& sound : brief)
        EXPECT_LE(sound[u"duration"_s].toDouble(), 3);
}

TEST_F(FindTest, ShowsThePlanAlone)
{
    QFile::remove(cli.at(u"data/Tonequill/sound-index.bin"_s)); // it needs no catalogue
    const auto plan = cli.run({u"find"_s, u"--plan"_s, u"Fight sounds"_s});
    EXPECT_EQ(plan.exitCode, 0);
    EXPECT_EQ(QString::fromUtf8(plan.out), u"Looking for: fight, punch, kick, hit, combat\n"
                                           "Terms: fight, punch, kick, hit, combat\nYour own words: fight\n"_s);
    EXPECT_EQ(found({u"--plan"_s, u"hungry"_s}).keys(), QStringList{u"plan"_s});
}

TEST_F(FindTest, PrintsRowsThatNothingBreaks)
{
    const auto result = cli.run({u"find"_s, u"door"_s, u"creak"_s, u"old"_s, u"--limit"_s, u"100"_s});
    EXPECT_EQ(result.exitCode, 0);
    const QStringList rows = QString::fromUtf8(result.out).split(u'\n');
    EXPECT_EQ(rows.first(), u"Looking for: door, creak, old"_s);
    EXPECT_THAT(rows, Contains(u"2004           2.0 s  CC0            Old Doortxt.exe\uFFFDnot a second row  · باب"_s));
    EXPECT_TRUE(rows.at(rows.size() - 2).contains(u" sounds in "_s));
}

TEST_F(FindTest, NothingFoundIsNoFailure)
{
    const auto result = cli.run({u"find"_s, u"xylophone"_s});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, u"No sounds found. Try another word.\n"_s);
    EXPECT_EQ(found({u"xylophone"_s})[u"message"_s].toString(), u"No sounds found. Try another word."_s);
}

TEST_F(FindTest, NoCatalogueIsAFailure)
{
    QFile::remove(cli.at(u"data/Tonequill/sound-index.bin"_s));
    const auto result = cli.run({u"find"_s, u"door"_s});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, u"There is no catalogue of free sounds yet. “tonequill-index build --install” makes one.\n"_s);
}

TEST_F(FindTest, IsUsedRightly)
{
    EXPECT_EQ(cli.run({u"find"_s}).exitCode, 2);
    EXPECT_EQ(cli.run({u"find"_s, u"door"_s, u"--limit"_s, u"0"_s}).exitCode, 2);
    EXPECT_EQ(cli.run({u"find"_s, u"door"_s, u"--max-seconds"_s, u"soon"_s}).exitCode, 2);
}
