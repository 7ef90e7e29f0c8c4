#include "cli/Cli.h"
#include "platform/media/AudioFile.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class AddTest : public testing::Test {
protected:
    // A video of ten seconds: three bursts, the loudest in the middle, in room noise.
    static QString video()
    {
        const QString burst = u"(gt(t,%1)*lt(t,%1+0.6))*exp(-(t-%1)*6)*%2*(random(0)-0.5)"_s;
        const QString sum = u"0.002*(random(1)-0.5)+"_s + burst.arg(u"1"_s, u"0.5"_s) + u'+' + burst.arg(u"4"_s, u"1.6"_s) +
                            u'+' + burst.arg(u"7"_s, u"0.9"_s);
        return test::makeMedia(u"three events.mp4"_s,
                               test::picture(10) + QStringList{u"-f"_s, u"lavfi"_s, u"-i"_s,
                                                               u"aevalsrc=exprs='%1':s=48000:d=10"_s.arg(sum), u"-c:v"_s,
                                                               u"mpeg4"_s, u"-c:a"_s, u"aac"_s, u"-shortest"_s});
    }
    QJsonArray add(const QStringList& options)
    {
        const auto result = cli.run(QStringList{u"add"_s, u"--json"_s} + options + QStringList{video()});
        EXPECT_EQ(result.exitCode, 0) << result.error.toStdString();
        return result.json()[u"added"].toArray();
    }
    QJsonArray library() { return cli.run({u"list"_s, u"--json"_s}).json().array(); }

    test::Cli cli;
};

} // namespace

TEST_F(AddTest, TheBestPartReplacesTheFile)
{
    const QJsonArray added = add({});
    ASSERT_EQ(added.size(), 1);
    EXPECT_EQ(library(), added);
    EXPECT_EQ(added[0][u"origin"].toString(), u"cut"_s);
    EXPECT_NEAR(added[0][u"duration"].toDouble(), 0.7, 0.6);
    const AudioFile file(cli.library() + u'/' + added[0][u"fileName"].toString());
    EXPECT_EQ(file.sampleRate(), 48000);
    EXPECT_EQ(QDir(cli.library()).entryList({u"*.wav"_s, u"*.m4a"_s}, QDir::Files).size(), 1);
}

TEST_F(AddTest, AsManyPartsAsAreAskedFor)
{
    const QJsonArray two = add({u"--max"_s, u"2"_s});
    ASSERT_EQ(two.size(), 2);
    for (const auto& record : two) {
        EXPECT_TRUE(record[u"name"].toString().startsWith(u"three events – "_s)) << record[u"name"].toString().toStdString();
        EXPECT_EQ(record[u"nameIsAuto"].toBool(true), false);
    }
    EXPECT_EQ(add({u"--all-parts"_s}).size(), 3);
    EXPECT_EQ(add({u"--all-parts"_s, u"--max"_s, u"1"_s}).size(), 1);
    EXPECT_EQ(library().size(), 6);
}

TEST_F(AddTest, TheSourceIsKeptWhereThatIsAskedFor)
{
    EXPECT_EQ(add({u"--keep-source"_s}).size(), 1);
    const QJsonArray sounds = library();
    ASSERT_EQ(sounds.size(), 2);
    EXPECT_EQ(sounds[1][u"origin"].toString(), u"imported"_s);
}

TEST_F(AddTest, EffectsGoOnTheParts)
{
    const double plain = add({})[0][u"duration"].toDouble();
    const double slow = add({u"--effects"_s, u"{\"speed\": 0.5}"_s})[0][u"duration"].toDouble();
    EXPECT_NEAR(slow, plain * 2, 0.1);
}

TEST_F(AddTest, ARawFileComesInWhole)
{
    const QJsonArray added = add({u"--raw"_s});
    ASSERT_EQ(added.size(), 1);
    EXPECT_EQ(added[0][u"origin"].toString(), u"imported"_s);
    EXPECT_EQ(added[0][u"name"].toString(), u"three events"_s);
    EXPECT_NEAR(added[0][u"duration"].toDouble(), 10, 0.1);
}

TEST_F(AddTest, ATwentyMillisecondSoundStaysAsItIs)
{
    test::writeTone(cli.at(u"click.wav"_s), 0.02);
    EXPECT_EQ(cli.run({u"add"_s, u"click.wav"_s}).exitCode, 0);
    ASSERT_EQ(library().size(), 1);
    EXPECT_EQ(library()[0][u"origin"].toString(), u"imported"_s);
}

TEST_F(AddTest, WrongOptionsAreExplained)
{
    for (const QStringList& options : {QStringList{u"--max"_s, u"0"_s}, {u"--max"_s, u"many"_s}, {u"--effects"_s, u"loud"_s}}) {
        const auto result = cli.run(QStringList{u"add"_s, u"x.wav"_s} + options);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_FALSE(result.error.isEmpty());
    }
    EXPECT_TRUE(library().isEmpty());
}

TEST_F(AddTest, ANetworkThatCannotBeReadIsSaidBeforeAnythingChanges)
{
    test::writeBytes(cli.at(u"broken.onnx"_s), "not a network");
    test::writeTone(cli.at(u"Door.wav"_s));
    QProcess process;
    cli.prepare(process, {u"add"_s, u"Door.wav"_s});
    auto environment = process.processEnvironment();
    environment.insert(u"TONEQUILL_CLASSIFIER"_s, cli.at(u"broken.onnx"_s));
    process.setProcessEnvironment(environment);
    process.start();
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardError().contains("broken.onnx"));
    EXPECT_TRUE(library().isEmpty());
}

// save and fcpxml

TEST_F(AddTest, SoundsAreSavedUnderTheirNames)
{
    test::writeTone(cli.at(u"Door & Gate.wav"_s), 1);
    cli.run({u"add"_s, u"--raw"_s, u"Door & Gate.wav"_s});
    QDir(cli.home.path()).mkdir(u"out"_s);
    const auto saved = cli.run({u"save"_s, u"Door & Gate"_s, u"Door & Gate"_s, u"--to"_s, u"out"_s});
    EXPECT_EQ(saved.exitCode, 0) << saved.error.toStdString();
    EXPECT_EQ(QString::fromUtf8(saved.out),
              cli.at(u"out/Door & Gate.wav"_s) + u'\n' + cli.at(u"out/Door & Gate 2.wav"_s) + u'\n');
    EXPECT_DOUBLE_EQ(AudioFile(cli.at(u"out/Door & Gate.wav"_s)).durationSeconds(), 1);
    EXPECT_EQ(cli.run({u"save"_s, u"Door & Gate"_s, u"--to"_s, u"nowhere"_s}).exitCode, 1);
    EXPECT_EQ(cli.run({u"save"_s, u"Window"_s, u"--to"_s, u"out"_s}).exitCode, 1);
    EXPECT_EQ(library().size(), 1);
}

TEST_F(AddTest, ADocumentListsTheSounds)
{
    test::writeTone(cli.at(u"Door & Gate.wav"_s), 1);
    cli.run({u"add"_s, u"--raw"_s, u"Door & Gate.wav"_s});
    QDir(cli.home.path()).mkdir(u"out"_s);
    const auto written = cli.run({u"fcpxml"_s, u"Door & Gate"_s, u"--to"_s, u"out"_s, u"--json"_s}).json();
    EXPECT_EQ(written[u"files"].toArray(), QJsonArray{cli.at(u"out/Door & Gate.wav"_s)});
    const QString document = QString::fromUtf8(test::bytesOfFile(written[u"document"].toString()));
    EXPECT_TRUE(document.contains(u"<event name=\"Tonequill\">"_s));
    EXPECT_TRUE(document.contains(u"name=\"Door &amp; Gate\" start=\"0s\" duration=\"48000/48000s\""_s));
    EXPECT_TRUE(document.contains(u"/out/Door%20&amp;%20Gate.wav\""_s)) << document.toStdString();
}

// What goes wrong

TEST_F(AddTest, WhatCannotBeReadIsToldWithItsCause)
{
    QDir(cli.home.path()).mkdir(u"folder.wav"_s);
    const auto result = cli.run({u"add"_s, u"folder.wav"_s, u"missing.wav"_s});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, u"“folder.wav” couldn't be read because it is a folder.\n"
                            "“missing.wav” couldn't be read because it isn't there any more.\n"_s);
}

TEST_F(AddTest, WhatComesInAndCannotBeCutIsAddedWholeAndTold)
{
    // At 8 kHz it comes in; its cut of 24 bits at 48 kHz finds the disk full.
    test::writeTone(cli.at(u"Door.wav"_s), 4);
    const auto plain = cli.runOnFullDisk({u"add"_s, u"Door.wav"_s}, 200);
    EXPECT_EQ(plain.exitCode, 1);
    EXPECT_TRUE(plain.out.startsWith("Added “Door”, 4.0 s\n")) << plain.out.toStdString();
    EXPECT_TRUE(plain.error.startsWith(u"“Door.wav” came in whole. “Door” couldn't be saved: "_s)) << plain.error.toStdString();
    ASSERT_EQ(library().size(), 1);
    EXPECT_EQ(library()[0][u"origin"].toString(), u"imported"_s);

    const QJsonObject json = cli.runOnFullDisk({u"add"_s, u"--json"_s, u"Door.wav"_s}, 200).json().object();
    EXPECT_EQ(json[u"added"].toArray().size(), 1);
    EXPECT_TRUE(json[u"failed"].toArray().isEmpty()); // a retry would make a second one of it
    EXPECT_EQ(json[u"uncut"][0][u"file"].toString(), cli.at(u"Door.wav"_s));
    EXPECT_TRUE(json[u"uncut"][0][u"error"].toString().startsWith(u"“Door” couldn't be saved: "_s));
}

TEST_F(AddTest, EachSoundThatIsSavedHasItsLine)
{
    for (const QString& name : {u"One.wav"_s, u"Two.wav"_s, u"Three.wav"_s})
        test::writeTone(cli.at(name), name == u"Two.wav" ? 4 : 0.1);
    ASSERT_EQ(cli.run({u"add"_s, u"--raw"_s, u"One.wav"_s, u"Two.wav"_s, u"Three.wav"_s}).exitCode, 0);
    QDir(cli.home.path()).mkdir(u"out"_s);
    const QStringList words{u"One"_s, u"Two"_s, u"Three"_s, u"--to"_s, u"out"_s};
    const auto saved = cli.runOnFullDisk(QStringList{u"save"_s} + words, 200);
    EXPECT_EQ(saved.exitCode, 1);
    EXPECT_EQ(QString::fromUtf8(saved.out), cli.at(u"out/One.wav"_s) + u'\n' + cli.at(u"out/Three.wav"_s) + u'\n');
    EXPECT_TRUE(saved.error.startsWith(u"“Two” couldn't be saved: "_s)) << saved.error.toStdString();
    const QStringList made = QDir(cli.at(u"out"_s)).entryList(QDir::Files | QDir::Hidden);
    EXPECT_EQ(made, (QStringList{u"One.wav"_s, u"Three.wav"_s}));

    const QJsonObject json = cli.runOnFullDisk(QStringList{u"fcpxml"_s, u"--json"_s} + words, 200).json().object();
    EXPECT_EQ(json[u"files"].toArray().size(), 2);
    EXPECT_EQ(json[u"failed"][0][u"name"].toString(), u"Two"_s);
    EXPECT_FALSE(json.contains(u"document"_s));
}

TEST_F(AddTest, ANameWithAZeroInItSavesToNoOtherFile)
{
    test::writeTone(cli.at(u"Door.wav"_s));
    ASSERT_EQ(cli.run({u"add"_s, u"--raw"_s, u"Door.wav"_s}).exitCode, 0);
    const QString index = cli.library() + u"/index.json"_s;
    test::writeBytes(index, test::bytesOfFile(index).replace("\"Door\"", "\"notes.txt\\u0000x\""));
    QDir(cli.home.path()).mkdir(u"out"_s);
    test::writeBytes(cli.at(u"out/notes.txt"_s), "mine");
    const auto saved = cli.run({u"save"_s, u"notes.txt x"_s, u"--to"_s, u"out"_s});
    EXPECT_EQ(saved.exitCode, 0) << saved.error.toStdString();
    EXPECT_EQ(QString::fromUtf8(saved.out), cli.at(u"out/notes.txt x.wav"_s) + u'\n');
    EXPECT_EQ(test::bytesOfFile(cli.at(u"out/notes.txt"_s)), "mine");
}
