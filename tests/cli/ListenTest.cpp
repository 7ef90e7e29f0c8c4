#include "cli/Cli.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QDir>
#include <QJsonArray>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

const QString kData = QStringLiteral(TONEQUILL_TEST_DATA "/understanding/");

// Runs tonequill-cli with a network of the test's own, whose "loud" follows the
// level, so that what it says can be foreseen; or with the one that is named.
class ListenTest : public testing::Test {
protected:
    ListenTest()
    {
        test::writeTone(cli.at(u"tone.wav"_s), 2, 44100);
        useNetwork(kData + u"loudness.onnx"_s);
    }
    ~ListenTest() override { qunsetenv("TONEQUILL_CLASSIFIER"); }

    static void useNetwork(const QString& path) { qputenv("TONEQUILL_CLASSIFIER", path.toUtf8()); }

    test::Cli cli;
};

} // namespace

TEST_F(ListenTest, TellsLabelsAndWordsAsText)
{
    const auto heard = cli.run({u"listen"_s, u"tone.wav"_s});
    EXPECT_EQ(heard.exitCode, 0) << heard.error.toStdString();
    const QStringList lines = QString::fromUtf8(heard.out).split(u'\n');
    ASSERT_GE(lines.size(), 5) << heard.out.toStdString();
    EXPECT_TRUE(lines[1].contains(lines[0].toLower())) << heard.out.toStdString();
    EXPECT_TRUE(lines[1].endsWith(u"% sure)"_s));
    EXPECT_TRUE(lines[2].startsWith(lines[0] + u", with a hint of "_s));
    EXPECT_EQ(QString::fromUtf8(cli.run({u"listen"_s, u"tone.wav"_s, u"--top"_s, u"1"_s}).out).count(u'\n'), 4);
}

TEST_F(ListenTest, TellsTheSameAsJson)
{
    const QJsonObject heard = cli.run({u"listen"_s, u"tone.wav"_s, u"--json"_s}).json().object();
    const QJsonArray labels = heard[u"labels"_s].toArray();
    ASSERT_EQ(labels.size(), 2);
    EXPECT_EQ(heard[u"name"_s], labels[0][u"name"]);
    EXPECT_EQ(QString(labels[0][u"label"].toString()).replace(u'_', u' '), labels[0][u"name"].toString().toLower());
    EXPECT_GE(labels[0][u"confidence"].toDouble(), labels[1][u"confidence"].toDouble());
    EXPECT_EQ(heard[u"summary"_s].toString(),
              u"%1, with a hint of %2."_s.arg(heard[u"name"_s].toString(), labels[1][u"name"].toString().toLower()));
    EXPECT_FALSE(heard[u"headline"_s].toString().isEmpty());
}

TEST_F(ListenTest, HearsOnlyTheRange)
{
    const QString half = test::makeMedia(
        u"half.wav"_s, {u"-f"_s, u"lavfi"_s, u"-i"_s, u"aevalsrc='0.5*sin(2*PI*1000*t)*lt(t\\,2)':s=44100:d=4"_s});
    const auto loudest = [&](const QString& start, const QString& end) {
        const auto heard = cli.run({u"listen"_s, half, u"--start"_s, start, u"--end"_s, end, u"--json"_s}).json();
        return heard[u"labels"][0][u"label"].toString();
    };
    EXPECT_EQ(loudest(u"2.5"_s, u"4"_s), u"quiet_hushed"_s);
    const auto one = cli.run({u"listen"_s, half, u"--start"_s, u"1"_s, u"--end"_s, u"1.00003"_s, u"--json"_s});
    EXPECT_EQ(one.exitCode, 0) << "one frame" << one.error.toStdString();
    const auto cut = cli.run({u"listen"_s, half, u"--start"_s, u"-5"_s, u"--end"_s, u"99"_s, u"--json"_s});
    EXPECT_EQ(cut.out, cli.run({u"listen"_s, half, u"--json"_s}).out);
}

TEST_F(ListenTest, AnEmptyRangeIsSaid)
{
    for (const QStringList& range : {QStringList{u"--start"_s, u"1.5"_s, u"--end"_s, u"1"_s},
                                     {u"--start"_s, u"1"_s, u"--end"_s, u"1"_s},
                                     {u"--start"_s, u"2"_s},
                                     {u"--end"_s, u"-1"_s}}) {
        const auto result = cli.run(QStringList{u"listen"_s, u"tone.wav"_s} + range);
        EXPECT_EQ(result.exitCode, 1) << range.join(u' ').toStdString();
        EXPECT_EQ(result.error, u"The selected part is empty.\n"_s);
        EXPECT_TRUE(result.out.isEmpty());
    }
}

TEST_F(ListenTest, WhatCannotBeHeardIsSaid)
{
    test::writeBytes(cli.at(u"letter.wav"_s), "Hello\n");
    for (const QString& file : {u"missing.wav"_s, u"letter.wav"_s}) {
        const auto result = cli.run({u"listen"_s, file});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.error.count(u'\n'), 1) << result.error.toStdString();
        EXPECT_TRUE(result.out.isEmpty());
    }
    for (const QStringList& wrong : {QStringList{u"--top"_s, u"0"_s},
                                     {u"--top"_s, u"many"_s},
                                     {u"--start"_s, u"x"_s},
                                     {u"--end"_s, u"nan"_s},
                                     {u"extra.wav"_s}})
        EXPECT_EQ(cli.run(QStringList{u"listen"_s, u"tone.wav"_s} + wrong).exitCode, 2) << wrong.join(u' ').toStdString();
}

TEST_F(ListenTest, ABrokenNetworkIsSaidWhoeverNamedIt)
{
    const QString sentence = u"The sound classifier “broken.onnx” can't be used: it is not an ONNX network that can be read.\n"_s;
    const QString broken = cli.at(u"broken.onnx"_s);
    test::writeBytes(broken, "Hello, this is a letter.\n");
    QFile::copy(kData + u"loudness_class_map.csv"_s, cli.at(u"broken_class_map.csv"_s));
    useNetwork(broken);
    const auto named = cli.run({u"listen"_s, u"tone.wav"_s, u"--json"_s});
    EXPECT_EQ(named.exitCode, 1);
    EXPECT_EQ(named.error, sentence);
    EXPECT_TRUE(named.out.isEmpty());

    qunsetenv("TONEQUILL_CLASSIFIER");
    QDir(cli.home.path()).mkpath(u"config/Tonequill"_s);
    test::writeBytes(cli.at(u"config/Tonequill/tonequill.ini"_s), "[General]\nclassifier=" + broken.toUtf8() + "\n");
    const auto set = cli.run({u"listen"_s, u"tone.wav"_s});
    EXPECT_EQ(set.exitCode, 1);
    EXPECT_EQ(set.error, sentence);
}

TEST_F(ListenTest, TheProgramsOwnNetworkNeedsNothing)
{
    qunsetenv("TONEQUILL_CLASSIFIER");
    const QString silence = test::makeMedia(u"quiet.wav"_s, {u"-f"_s, u"lavfi"_s, u"-i"_s, u"anullsrc=r=48000:cl=stereo:d=2"_s});
    const auto nothing = cli.run({u"listen"_s, silence});
    EXPECT_EQ(nothing.exitCode, 0);
    EXPECT_EQ(QString::fromUtf8(nothing.out),
              u"Not sure what this is\nI couldn't tell what this is. Listen and rename it if you like.\n"_s);
    EXPECT_EQ(cli.run({u"listen"_s, silence, u"--json"_s}).json()[u"name"].toString(), QString());
    EXPECT_EQ(cli.run({u"listen"_s, u"tone.wav"_s, u"--json"_s}).exitCode, 0);
}
