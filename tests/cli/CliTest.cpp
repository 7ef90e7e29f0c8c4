#include "cli/Cli.h"
#include "platform/process/HandOver.h"
#include "platform/process/LibraryLock.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QJsonArray>
#include <QRegularExpression>
#include <QtEndian>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class CliTest : public testing::Test {
protected:
    test::Cli cli;
};

} // namespace

TEST_F(CliTest, AddsListsShowsAndDeletes)
{
    test::writeTone(cli.at(u"Door Slam.wav"_s), 0.5);
    test::writeTone(cli.at(u"Glass Break.wav"_s), 1);
    const auto added = cli.run({u"add"_s, u"Door Slam.wav"_s, u"Glass Break.wav"_s});
    EXPECT_EQ(added.exitCode, 0);
    EXPECT_EQ(QString::fromUtf8(added.out),
              u"Added “Door Slam”, 0.5 s\nAdded “Glass Break”, 1.0 s\nThe library is in %1\n"_s.arg(cli.library()));

    const QString listed = QString::fromUtf8(cli.run({u"list"_s}).out);
    EXPECT_EQ(listed.count(u'\n'), 2);
    EXPECT_LT(listed.indexOf(u"Glass Break"), listed.indexOf(u"Door Slam"));

    const QJsonArray records = cli.run({u"list"_s, u"--json"_s}).json().array();
    ASSERT_EQ(records.size(), 2);
    const QString id = records[0][u"id"].toString();
    EXPECT_EQ(records[0][u"name"].toString(), u"Glass Break"_s);

    EXPECT_EQ(cli.run({u"show"_s, id.first(8).toLower(), u"--json"_s}).json().object(), records[0].toObject());
    const QString shown = QString::fromUtf8(cli.run({u"show"_s, u"door slam"_s}).out);
    EXPECT_TRUE(shown.contains(u"Name         Door Slam\nLength       0.5 s\n"_s)) << shown.toStdString();
    EXPECT_TRUE(shown.contains(cli.library()));

    const auto deleted = cli.run({u"delete"_s, id});
    EXPECT_EQ(deleted.exitCode, 0);
    EXPECT_EQ(QString::fromUtf8(deleted.out), u"Deleted “Glass Break”\n"_s);
    EXPECT_EQ(QDir(cli.library()).entryList(QDir::Files).size(), 2); // the other sound and the index
}

TEST_F(CliTest, WhatCannotBeAddedIsSaidAndTheRestComesIn)
{
    test::writeTone(cli.at(u"good.wav"_s));
    test::writeBytes(cli.at(u"notes.txt"_s), "words\n");
    const auto plain = cli.run({u"add"_s, u"notes.txt"_s});
    EXPECT_EQ(plain.exitCode, 1);
    EXPECT_EQ(plain.error, u"notes is not a format Tonequill can read. Try WAV, MP3, M4A, AIFF, MP4, MOV or M4V.\n"_s);

    const auto json = cli.run({u"add"_s, u"--json"_s, u"good.wav"_s, u"notes.txt"_s, u"missing.wav"_s});
    EXPECT_EQ(json.exitCode, 1);
    EXPECT_EQ(json.error, QString());
    const QJsonObject document = json.json().object();
    EXPECT_EQ(document[u"added"].toArray().size(), 1);
    EXPECT_EQ(document[u"added"][0][u"name"].toString(), u"good"_s);
    EXPECT_EQ(document[u"failed"].toArray().size(), 2);
    EXPECT_EQ(document[u"failed"][0][u"file"].toString(), cli.at(u"notes.txt"_s));
    EXPECT_EQ(document[u"library"].toString(), cli.library());
}

TEST_F(CliTest, AnalysesAndDrawsAFileWithoutALibrary)
{
    test::writeTone(cli.at(u"tone.wav"_s), 0.5);
    const auto analysis = cli.run({u"analyze"_s, u"tone.wav"_s, u"--json"_s}).json().object();
    EXPECT_EQ(analysis[u"duration"].toDouble(), 0.5);
    EXPECT_EQ(analysis[u"sampleRate"].toDouble(), 8000);
    EXPECT_EQ(analysis[u"hopSeconds"].toDouble(), 0.01);
    EXPECT_EQ(analysis[u"rms"].toArray().size(), 50);
    EXPECT_EQ(analysis[u"peak"].toArray().size(), 50);
    EXPECT_EQ(analysis[u"descriptors"].toArray(), QJsonArray({u"short"_s, u"hit"_s, u"punchy"_s, u"deep"_s, u"low"_s}));
    const QString plain = QString::fromUtf8(cli.run({u"analyze"_s, u"tone.wav"_s}).out);
    EXPECT_EQ(plain, u"0.5 s, 8000 Hz\nPeak -6.0 dBFS\nshort, hit, punchy, deep, low\n"_s);

    EXPECT_EQ(cli.run({u"peaks"_s, u"tone.wav"_s, u"--bins"_s, u"7"_s, u"--json"_s}).json().array().size(), 7);
    EXPECT_EQ(cli.run({u"peaks"_s, u"tone.wav"_s}).out.count('\n'), 48);
    EXPECT_EQ(cli.run({u"peaks"_s, u"tone.wav"_s, u"--bins"_s, u"0"_s}).exitCode, 2);
    EXPECT_EQ(cli.run({u"peaks"_s, u"missing.wav"_s}).exitCode, 1);
    EXPECT_EQ(cli.run({u"analyze"_s, u"missing.wav"_s}).exitCode, 1);
    EXPECT_FALSE(QDir(cli.at(u"data"_s)).exists());
}

TEST_F(CliTest, FindsPartsAndWritesThem)
{
    test::writeTone(cli.at(u"tone.wav"_s), 2, 48000);
    const QJsonArray parts = cli.run({u"parts"_s, u"tone.wav"_s, u"--json"_s}).json().array();
    ASSERT_GE(parts.size(), 1);
    EXPECT_TRUE(parts[0][u"isBest"].toBool());
    EXPECT_GT(parts[0][u"end"].toDouble(), parts[0][u"start"].toDouble());
    EXPECT_TRUE(cli.run({u"parts"_s, u"tone.wav"_s}).out.contains("best"));

    const auto exported =
        cli.run({u"export"_s, u"tone.wav"_s, u"out.wav"_s, u"--start"_s, u"0.5"_s, u"--end"_s, u"1.5"_s, u"--json"_s});
    EXPECT_EQ(exported.exitCode, 0) << exported.error.toStdString();
    EXPECT_EQ(exported.json()[u"frames"].toInt(), 48000);
    EXPECT_EQ(exported.json()[u"channels"].toInt(), 1);
    const auto peaks = cli.run({u"analyze"_s, u"out.wav"_s});
    EXPECT_TRUE(peaks.out.contains("Peak -1.0 dBFS")) << peaks.out.toStdString();

    const auto rendered =
        cli.run({u"render"_s, u"tone.wav"_s, u"slow.wav"_s, u"--effects"_s, u"{\"speed\":0.5,\"gainDb\":-6}"_s, u"--json"_s});
    EXPECT_EQ(rendered.exitCode, 0) << rendered.error.toStdString();
    EXPECT_NEAR(rendered.json()[u"frames"].toDouble(), 4 * 48000, 4800);
    EXPECT_EQ(rendered.json()[u"channels"].toInt(), 2);

    const auto mixed = cli.run({u"mix"_s, u"sum.wav"_s, u"tone.wav@0"_s, u"tone.wav@1.5*0.5"_s, u"--json"_s});
    EXPECT_EQ(mixed.exitCode, 0) << mixed.error.toStdString();
    EXPECT_EQ(mixed.json()[u"frames"].toInt(), int(3.5 * 48000));
    EXPECT_EQ(cli.run({u"export"_s, u"tone.wav"_s, u"short.m4a"_s, u"--preset"_s, u"shortForm"_s}).exitCode, 0);
}

TEST_F(CliTest, WhatTheEngineRefusesIsSaid)
{
    test::writeTone(cli.at(u"tone.wav"_s), 1);
    const auto empty = cli.run({u"export"_s, u"tone.wav"_s, u"out.wav"_s, u"--start"_s, u"5"_s});
    EXPECT_EQ(empty.exitCode, 1);
    EXPECT_EQ(empty.error, u"The selected part is empty.\n"_s);
    EXPECT_FALSE(QFile::exists(cli.at(u"out.wav"_s)));
    for (const QStringList& arguments : {QStringList{u"export"_s, u"tone.wav"_s, u"o.wav"_s, u"--preset"_s, u"best"_s},
                                         {u"export"_s, u"tone.wav"_s, u"o.wav"_s, u"--start"_s, u"x"_s},
                                         {u"export"_s, u"tone.wav"_s, u"o.wav"_s, u"--end"_s, u"nan"_s},
                                         {u"render"_s, u"tone.wav"_s, u"o.wav"_s, u"--effects"_s, u"loud"_s},
                                         {u"render"_s, u"tone.wav"_s, u"o.wav"_s, u"--effects"_s, u"{\"voice\":\"duck\"}"_s},
                                         {u"mix"_s, u"o.wav"_s, u"tone.wav"_s},
                                         {u"mix"_s, u"o.wav"_s, u"tone.wav@x"_s},
                                         {u"mix"_s, u"o.wav"_s, u"tone.wav@1*2*3"_s},
                                         {u"parts"_s, u"tone.wav"_s, u"--max"_s, u"0"_s}})
        EXPECT_EQ(cli.run(arguments).exitCode, 2) << arguments.join(u' ').toStdString();
    EXPECT_EQ(cli.run({u"mix"_s, u"o.wav"_s, u"gone.wav@0"_s}).exitCode, 1);
    EXPECT_FALSE(QFile::exists(cli.at(u"o.wav"_s)));
}

TEST_F(CliTest, ALongFileShowsItsProgressOnATerminal)
{
    // A gigabyte of silence that takes no room: a header, and a hole.
    const QString file = test::writeTone(cli.at(u"long.wav"_s), 0, 48000);
    constexpr qint64 kHeader = 44;
    constexpr qint64 kData = qint64(1) << 30;
    QFile wav(file);
    ASSERT_TRUE(wav.open(QIODevice::ReadWrite));
    for (const auto& [position, value] : {std::pair<qint64, qint64>{4, kData + kHeader - 8}, {40, kData}}) {
        wav.seek(position);
        const auto size = qToLittleEndian(quint32(value));
        wav.write(reinterpret_cast<const char*>(&size), sizeof size);
    }
    ASSERT_TRUE(wav.resize(kHeader + kData));
    wav.close();

    QProcess terminal; // script gives the program a terminal of its own
    cli.prepare(terminal, {u"-qec"_s, u"'%1' analyze long.wav"_s.arg(QStringLiteral(TONEQUILL_CLI)), u"/dev/null"_s});
    terminal.setProgram(u"script"_s);
    terminal.start();
    ASSERT_TRUE(terminal.waitForFinished(120000));
    const QByteArray shown = terminal.readAllStandardOutput();
    EXPECT_TRUE(QRegularExpression(u"\rlong.wav  \\d+ %"_s).match(QString::fromUtf8(shown)).hasMatch()) << shown.toStdString();
    EXPECT_TRUE(shown.contains("Silent")) << shown.toStdString();
}

TEST_F(CliTest, AWrongCommandLineIsExplained)
{
    for (const QStringList& arguments : {QStringList{},
                                         {u"dance"_s},
                                         {u"add"_s},
                                         {u"list"_s, u"--loud"_s},
                                         {u"show"_s},
                                         {u"show"_s, u"a"_s, u"b"_s},
                                         {u"list"_s, u"extra"_s},
                                         {u"peaks"_s, u"x"_s, u"--bins"_s, u"many"_s}}) {
        const auto result = cli.run(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments.join(u' ').toStdString();
        EXPECT_FALSE(result.error.isEmpty());
        EXPECT_TRUE(result.out.isEmpty());
    }
}

TEST_F(CliTest, EveryCommandHasItsHelp)
{
    const QString help = QString::fromUtf8(cli.run({u"--help"_s}).out);
    for (const QString& command :
         {u"add"_s, u"list"_s, u"search"_s, u"show"_s, u"delete"_s, u"credits"_s, u"analyze"_s, u"peaks"_s, u"listen"_s,
          u"parts"_s, u"export"_s, u"render"_s, u"save"_s, u"fcpxml"_s, u"sync"_s, u"mix"_s, u"name"_s}) {
        EXPECT_TRUE(help.contains(u"\n  "_s + command)) << command.toStdString();
        const auto own = cli.run({command, u"--help"_s});
        EXPECT_EQ(own.exitCode, 0);
        EXPECT_TRUE(own.out.startsWith("Usage: tonequill-cli " + command.toUtf8() + " [options]")) << own.out.toStdString();
        EXPECT_TRUE(own.out.contains("--json"));
    }
    EXPECT_TRUE(cli.run({u"--version"_s}).out.startsWith("tonequill-cli "));
}

TEST_F(CliTest, ASoundIsNamedWithoutDoubt)
{
    test::writeTone(cli.at(u"Door.wav"_s));
    cli.run({u"add"_s, u"Door.wav"_s, u"Door.wav"_s});
    const auto twice = cli.run({u"delete"_s, u"Door"_s});
    EXPECT_EQ(twice.exitCode, 1);
    EXPECT_TRUE(twice.error.startsWith(u"2 sounds are called “Door”."_s));
    EXPECT_EQ(cli.run({u"show"_s, u"Gate"_s}).error, u"There is no sound “Gate” in the library.\n"_s);
    EXPECT_EQ(cli.run({u"delete"_s, u"Door"_s, u"Gate"_s}).exitCode, 1);
    EXPECT_EQ(cli.run({u"list"_s, u"--json"_s}).json().array().size(), 2);
}

TEST_F(CliTest, AHostileNameDoesNotReachTheTerminal)
{
    test::writeTone(cli.at(u"bell\x1b[31mred\a.wav"_s));
    const auto added = cli.run({u"add"_s, u"bell\x1b[31mred\a.wav"_s});
    EXPECT_EQ(added.exitCode, 0);
    EXPECT_FALSE(added.out.contains('\x1b'));
    EXPECT_FALSE(cli.run({u"list"_s}).out.contains('\a'));
}

TEST_F(CliTest, ABusyLibraryIsToldOrTheWorkIsHandedOver)
{
    test::writeTone(cli.at(u"Door.wav"_s));
    ASSERT_EQ(cli.run({u"add"_s, u"Door.wav"_s}).exitCode, 0);
    LibraryLock owner(cli.library());
    ASSERT_TRUE(owner.acquire());
    owner.publish(u"/where/nobody/tonequill-0123456789abcdef"_s);
    const auto busy = cli.run({u"add"_s, u"Door.wav"_s});
    EXPECT_EQ(busy.exitCode, 3);
    EXPECT_EQ(busy.error, u"Another program is changing the library. Try again when it has finished.\n"_s);
    EXPECT_EQ(cli.run({u"list"_s, u"--json"_s}).json().array().size(), 1); // reading needs nobody's leave

    QJsonObject received;
    HandOver server;
    server.serve([&received](const QJsonObject& message) {
        received = message;
        return QJsonObject{{u"ok"_s, true}};
    });
    const auto address = server.listen(cli.library());
    ASSERT_TRUE(address);
    owner.publish(*address);
    QProcess process;
    cli.prepare(process, {u"add"_s, u"Door.wav"_s});
    process.start();
    for (QDeadlineTimer deadline(20000); process.state() != QProcess::NotRunning && !deadline.hasExpired();)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(received[u"add"_s].toArray(), QJsonArray{cli.at(u"Door.wav"_s)});
}

TEST_F(CliTest, EveryHelpShowsItsArgumentsAsTheListDoes)
{
    const QString help = QString::fromUtf8(cli.run({u"--help"_s}).out);
    static const QRegularExpression line(u"\n  ([a-z]+) (.*)"_s);
    int commands = 0;
    for (const QRegularExpressionMatch& match : line.globalMatch(help)) {
        const QString own = QString::fromUtf8(cli.run({match.captured(1), u"--help"_s}).out);
        const QString arguments = own.first(own.indexOf(u'\n')).section(u"[options] "_s, 1);
        EXPECT_TRUE(match.captured(2).startsWith(arguments)) << own.toStdString();
        EXPECT_EQ(arguments.contains(u'…'), match.captured(2).section(u"  "_s, 0, 0).section(u' ', 0, 1).contains(u'…'))
            << own.toStdString();
        ++commands;
    }
    EXPECT_EQ(commands, 18);
}

TEST_F(CliTest, EffectsThatCannotBeRenderedAreWrongUse)
{
    test::writeTone(cli.at(u"tone.wav"_s));
    for (const QString& effects :
         {u"{\"fadeIn\":-1}"_s, u"{\"fadeOut\":-0.001}"_s, u"{\"gainDb\":1e6}"_s, u"{\"speed\":.5}"_s, u"{\"speed\":1e999}"_s,
          u"{\"speed\":NaN}"_s, u"{\"pitch\":\"1\"}"_s, u"{\"reverse\":1}"_s, u"{\"echo\":[]}"_s, u"{\"reverb\":{}}"_s}) {
        for (const QStringList& command : {QStringList{u"render"_s, u"tone.wav"_s, u"o.wav"_s}, {u"add"_s, u"tone.wav"_s}}) {
            const auto result = cli.run(command + QStringList{u"--effects"_s, effects});
            EXPECT_EQ(result.exitCode, 2) << effects.toStdString();
            EXPECT_FALSE(result.error.isEmpty());
        }
    }
    EXPECT_TRUE(cli.run({u"render"_s, u"tone.wav"_s, u"o.wav"_s, u"--effects"_s, u"{\"fadeIn\":-1}"_s})
                    .error.startsWith(u"A fade is no shorter than 0 seconds, and a gain no more than 100 dB.\n"_s));
    for (const QString& huge : {u"{\"speed\":1e300}"_s, u"{\"pitch\":-1e300}"_s, u"{\"fadeIn\":1e300}"_s,
                                u"{\"gainDb\":-1e300}"_s, u"{\"echo\":1e300,\"reverb\":1e300}"_s})
        EXPECT_EQ(cli.run({u"render"_s, u"tone.wav"_s, u"o.wav"_s, u"--effects"_s, huge}).exitCode, 0) << huge.toStdString();
}

TEST_F(CliTest, NumbersBeyondMeasureAreTaken)
{
    test::writeTone(cli.at(u"tone.wav"_s));
    EXPECT_EQ(cli.run({u"parts"_s, u"tone.wav"_s, u"--max"_s, u"2147483647"_s}).exitCode, 0);
    EXPECT_EQ(cli.run({u"parts"_s, u"tone.wav"_s, u"--max"_s, u"2147483648"_s}).exitCode, 2);
    EXPECT_EQ(cli.run({u"mix"_s, u"o.wav"_s, u"tone.wav@0*1e38"_s}).exitCode, 2);
    EXPECT_EQ(cli.run({u"mix"_s, u"o.wav"_s, u"tone.wav@nan"_s}).exitCode, 2);
    EXPECT_EQ(cli.run({u"mix"_s, u"o.wav"_s, u"tone.wav@0*nan"_s}).exitCode, 2);
}

TEST_F(CliTest, OnAFullDiskNothingIsDeleted)
{
    test::writeTone(cli.at(u"Door.wav"_s));
    test::writeTone(cli.at(u"Gate.wav"_s));
    cli.run({u"add"_s, u"--raw"_s, u"Door.wav"_s, u"Gate.wav"_s});
    const QStringList before = QDir(cli.library()).entryList(QDir::Files | QDir::Hidden);
    const auto refused = cli.runOnFullDisk({u"delete"_s, u"Door"_s}, 0);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.error, u"Nothing was deleted: the disk may be full or read-only.\n"_s);
    EXPECT_TRUE(refused.out.isEmpty());
    EXPECT_EQ(QDir(cli.library()).entryList(QDir::Files | QDir::Hidden), before);
    EXPECT_EQ(cli.run({u"list"_s, u"--json"_s}).json().array().size(), 2);
    EXPECT_EQ(cli.run({u"delete"_s, u"Door"_s}).exitCode, 0);
}

TEST_F(CliTest, AnExportThatFailsLeavesTheOlderFile)
{
    test::writeTone(cli.at(u"tone.wav"_s), 2, 48000);
    test::writeBytes(cli.at(u"out.wav"_s), "old");
    for (const QStringList& arguments : {QStringList{u"export"_s, u"tone.wav"_s, u"out.wav"_s},
                                         {u"render"_s, u"tone.wav"_s, u"out.wav"_s},
                                         {u"mix"_s, u"out.wav"_s, u"tone.wav@0"_s}}) {
        const auto result = cli.runOnFullDisk(arguments, 100);
        EXPECT_EQ(result.exitCode, 1);
        const bool isNamed = result.error.startsWith(u"“out.wav” couldn't be saved: "_s);
        EXPECT_TRUE(isNamed) << result.error.toStdString();
        QFile old(cli.at(u"out.wav"_s));
        ASSERT_TRUE(old.open(QIODevice::ReadOnly));
        EXPECT_EQ(old.readAll(), "old");
    }
}

TEST_F(CliTest, WhatAKilledProgramLeftIsSweptAtTheNextStart)
{
    const QString temporary = cli.at(u"tmp"_s);
    const QString notes = temporary + u"/tonequill-scratch-0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9"_s;
    ASSERT_TRUE(QDir().mkpath(notes));
    QFile::setPermissions(notes, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    test::writeBytes(temporary + u"/left.wav"_s, "half");
    ASSERT_TRUE(QFile::link(temporary + u"/left.wav"_s, notes + u"/1"_s));
    QProcess process;
    cli.prepare(process, {u"--version"_s});
    auto environment = process.processEnvironment();
    environment.insert(u"TMPDIR"_s, temporary);
    process.setProcessEnvironment(environment);
    process.start();
    ASSERT_TRUE(process.waitForFinished(20000));
    EXPECT_TRUE(QDir(temporary).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).isEmpty());
}
