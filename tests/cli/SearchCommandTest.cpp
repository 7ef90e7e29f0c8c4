#include "cli/Cli.h"
#include "library/store/LibraryIndex.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QDir>
#include <QJsonArray>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class SearchCommandTest : public testing::Test {
protected:
    SearchCommandTest()
    {
        SoundItem rain = item(u"Rain"_s, u"10000000-0000-4000-8000-000000000001"_s);
        rain.license = u"CC BY 4.0"_s;
        rain.credit = u"Ana"_s;
        rain.pageURL = u"https://example.org/1"_s;
        SoundItem car = item(u"Car Pass"_s, u"20000000-0000-4000-8000-000000000002"_s);
        car.tags = {u"boom"_s};
        SoundItem hit = item(u"Thump"_s, u"30000000-0000-4000-8000-000000000003"_s);
        hit.tags = {u"hit"_s};
        hit.credit = u"Bo\x1b[31m"_s;
        QDir().mkpath(cli.library());
        QByteArrayList records;
        for (const SoundItem& one : {hit, car, rain}) {
            records << LibraryIndex::encode(one);
            test::writeBytes(cli.library() + u'/' + one.fileName, "sound");
        }
        test::writeBytes(cli.library() + u"/index.json"_s, '[' + records.join(',') + ']');
    }

    static SoundItem item(const QString& name, const QString& id)
    {
        SoundItem one;
        one.id = QUuid::fromString(id);
        one.name = name;
        one.fileName = id + u".wav"_s;
        one.duration = 2;
        return one;
    }

    QStringList names(const QStringList& arguments)
    {
        QStringList all;
        for (const QJsonValue& record : cli.run(arguments + QStringList{u"--json"_s}).json().array())
            all << record[u"name"].toString();
        return all;
    }

    test::Cli cli;
};

} // namespace

TEST_F(SearchCommandTest, FindsInAnyLanguageBestFirst)
{
    EXPECT_EQ(names({u"search"_s, u"boom"_s}), (QStringList{u"Car Pass"_s, u"Thump"_s}));
    EXPECT_EQ(names({u"search"_s, u"بالسيارة"_s}), QStringList{u"Car Pass"_s});
    EXPECT_EQ(names({u"search"_s, u"heavy"_s, u"rain"_s}), QStringList{u"Rain"_s});
    EXPECT_EQ(names({u"search"_s, u"!?"_s}), (QStringList{u"Thump"_s, u"Car Pass"_s, u"Rain"_s}));
    EXPECT_EQ(names({u"search"_s, QString(10000, u'x')}), QStringList());
    const auto plain = cli.run({u"search"_s, u"car"_s});
    EXPECT_EQ(QString::fromUtf8(plain.out), u"20000000     2.0 s  Car Pass  · boom\n"_s);
    EXPECT_EQ(cli.run({u"search"_s}).exitCode, 2);
    const auto nothing = cli.run({u"search"_s, u"xylophone"_s, u"--json"_s});
    EXPECT_EQ(nothing.exitCode, 0);
    EXPECT_EQ(nothing.out, "[]\n");
}

TEST_F(SearchCommandTest, CreditsAreReadyToPaste)
{
    EXPECT_EQ(QString::fromUtf8(cli.run({u"credits"_s}).out),
              u"“Thump” by Bo\uFFFD[31m\n“Rain” by Ana (CC BY 4.0) https://example.org/1\n"_s);
    EXPECT_EQ(QString::fromUtf8(cli.run({u"credits"_s, u"rain"_s, u"20000000"_s}).out),
              u"“Rain” by Ana (CC BY 4.0) https://example.org/1\n“Car Pass”\n"_s);
    const QJsonArray json = cli.run({u"credits"_s, u"Rain"_s, u"--json"_s}).json().array();
    EXPECT_EQ(json, (QJsonArray{QJsonObject{{u"id"_s, u"10000000-0000-4000-8000-000000000001"_s},
                                            {u"name"_s, u"Rain"_s},
                                            {u"creditLine"_s, u"“Rain” by Ana (CC BY 4.0) https://example.org/1"_s}}}));
    const auto missing = cli.run({u"credits"_s, u"Rain"_s, u"Gate"_s});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.out, "");
    EXPECT_EQ(missing.error, u"There is no sound “Gate” in the library.\n"_s);
}
