#include "base/Uuid.h"
#include "cli/Cli.h"
#include "fakes/FakeModelServer.h"
#include "platform/process/HandOver.h"
#include "platform/process/LibraryLock.h"
#include "support/LibraryFolder.h"
#include "support/Printing.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// Runs tonequill-cli over a library of its own, without a language model and
// with a network whose "loud" follows the level, so that names can be foreseen.
class NameTest : public testing::Test {
protected:
    NameTest()
    {
        door = folder.add(u"Cellar Door"_s);
        camera = folder.add(u"IMG_0042"_s);
        camera.tags = {u"kitchen"_s};
        QList<SoundItem> items;
        for (const QString& name : {u"MVI_0001"_s, u"Track 3"_s})
            items << folder.add(name);
        other = items.first();
        folder.write();
        qputenv("TONEQUILL_CLASSIFIER", TONEQUILL_TEST_DATA "/understanding/loudness.onnx");
        qputenv("TONEQUILL_LANGUAGE_MODEL", "none:");
    }
    ~NameTest() override
    {
        qunsetenv("TONEQUILL_CLASSIFIER");
        qunsetenv("TONEQUILL_LANGUAGE_MODEL");
    }

    QStringList inLibrary(const QStringList& arguments) const { return arguments + QStringList{u"--library"_s, folder.path()}; }
    test::Cli::Result run(const QStringList& arguments) const { return cli.run(inLibrary(arguments)); }
    // While what this process serves is answered.
    test::Cli::Result runServed(const QStringList& arguments) const
    {
        QProcess process;
        cli.prepare(process, inLibrary(arguments));
        process.start();
        for (QDeadlineTimer deadline(60000); process.state() != QProcess::NotRunning && !deadline.hasExpired();)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return {process.exitCode(), process.readAllStandardOutput(), QString::fromUtf8(process.readAllStandardError())};
    }
    QStringList names() const
    {
        QStringList names;
        for (const auto& record : run({u"list"_s, u"--json"_s}).json().array())
            names << record[u"name"].toString();
        return names;
    }

    test::Cli cli;
    test::LibraryFolder folder;
    SoundItem door;
    SoundItem camera;
    SoundItem other;
};

} // namespace

TEST_F(NameTest, NamesASoundByWhatIsHeardInIt)
{
    const auto named = run({u"name"_s, u"img_0042"_s});
    EXPECT_EQ(named.exitCode, 0) << named.error.toStdString();
    const QString name = names()[1];
    EXPECT_TRUE(name == u"Loud" || name == u"Quiet Hushed") << name.toStdString();
    EXPECT_TRUE(QString::fromUtf8(named.out).startsWith(u"IMG_0042 → "_s + name + u"  · "_s)) << named.out.toStdString();
    EXPECT_EQ(names(), (QStringList{u"Cellar Door"_s, name, u"MVI_0001"_s, u"Track 3"_s})); // and nothing else
}

TEST_F(NameTest, TellsTheSameAsJson)
{
    const auto result = run({u"name"_s, uuidText(other.id).first(8), u"MVI_0001"_s, u"Cellar Door"_s, u"--json"_s});
    EXPECT_EQ(result.exitCode, 0) << result.error.toStdString();
    const QJsonObject json = result.json().object();
    const QJsonArray named = json[u"named"_s].toArray();
    ASSERT_EQ(named.size(), 1); // each once
    EXPECT_EQ(named[0][u"id"].toString(), uuidText(other.id));
    EXPECT_EQ(named[0][u"oldName"].toString(), u"MVI_0001"_s);
    EXPECT_EQ(named[0][u"name"].toString(), names()[2]);
    EXPECT_FALSE(named[0][u"tags"].toArray().isEmpty());
    EXPECT_TRUE(json[u"failed"_s].toArray().isEmpty());
    EXPECT_EQ(json[u"kept"_s].toArray(), (QJsonArray{QJsonObject{{u"id"_s, uuidText(door.id)}, {u"name"_s, u"Cellar Door"_s}}}));
}

TEST_F(NameTest, AllAreThoseWhoseNamesSayNothing)
{
    EXPECT_EQ(run({u"name"_s, u"--all"_s, u"--json"_s}).json()[u"named"].toArray().size(), 3);
    EXPECT_EQ(names()[0], u"Cellar Door"_s);
    EXPECT_FALSE(names().contains(u"Track 3"_s));
    const auto again = run({u"name"_s, u"--all"_s});
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_EQ(QString::fromUtf8(again.out), u"No sound has a name that says nothing.\n"_s);
}

TEST_F(NameTest, AChosenNameStays)
{
    const auto kept = run({u"name"_s, u"Cellar Door"_s});
    EXPECT_EQ(kept.exitCode, 0);
    EXPECT_EQ(QString::fromUtf8(kept.out), u"“Cellar Door” keeps its name: somebody chose it.\n"_s);
    EXPECT_EQ(names()[0], u"Cellar Door"_s);
}

TEST_F(NameTest, ALanguageModelIsAsked)
{
    test::FakeModelServer server;
    server.content = u"{\"name\": \"kettle whistle\", \"tags\": [\"Kettle\", \"steam\"]}"_s;
    qputenv("TONEQUILL_LANGUAGE_MODEL", server.base().toEncoded());
    const auto named = runServed({u"name"_s, u"IMG_0042"_s});
    EXPECT_EQ(named.exitCode, 0) << named.error.toStdString();
    EXPECT_EQ(QString::fromUtf8(named.out), u"IMG_0042 → Kettle Whistle  · kettle, steam\n"_s);
    EXPECT_EQ(server.questions.size(), 1);
    EXPECT_EQ(names()[1], u"Kettle Whistle"_s);
}

TEST_F(NameTest, ANameThatIsGivenAgainIsGiven)
{
    folder.add(u"Voice"_s);
    folder.write();
    test::FakeModelServer server;
    server.content = u"{\"name\": \"voice\", \"tags\": [\"steam\"]}"_s;
    qputenv("TONEQUILL_LANGUAGE_MODEL", server.base().toEncoded());
    const auto named = runServed({u"name"_s, u"Voice"_s});
    EXPECT_EQ(named.exitCode, 0);
    EXPECT_EQ(named.error, QString());
    EXPECT_EQ(QString::fromUtf8(named.out), u"Voice → Voice  · steam\n"_s);
}

TEST_F(NameTest, WhatCannotBeHeardKeepsItsName)
{
    QFile::resize(folder.path() + u'/' + camera.fileName, 0);
    const auto failed = run({u"name"_s, u"IMG_0042"_s, u"MVI_0001"_s});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_EQ(failed.error, u"Nothing in “IMG_0042” could be recognised: it keeps its name.\n"_s);
    EXPECT_TRUE(failed.out.startsWith("MVI_0001 → "));
    EXPECT_EQ(names()[1], u"IMG_0042"_s);
    const QJsonObject json = run({u"name"_s, u"IMG_0042"_s, u"--json"_s}).json().object();
    EXPECT_EQ(json[u"failed"_s].toArray()[0][u"name"].toString(), u"IMG_0042"_s);
}

TEST_F(NameTest, AWrongCommandLineIsSaidAndNothingIsDone)
{
    EXPECT_EQ(run({u"name"_s}).exitCode, 2);
    EXPECT_EQ(run({u"name"_s, u"--all"_s, u"IMG_0042"_s}).exitCode, 2);
    const auto unknown = run({u"name"_s, u"IMG_0042"_s, u"Gate"_s});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(unknown.error, u"There is no sound “Gate” in the library.\n"_s);
    EXPECT_EQ(names()[1], u"IMG_0042"_s);
}

TEST_F(NameTest, AnOpenWindowNamesThemItself)
{
    LibraryLock owner(folder.path());
    ASSERT_TRUE(owner.acquire());
    owner.publish(u"/where/nobody/tonequill-0123456789abcdef"_s);
    const auto busy = run({u"name"_s, u"--all"_s});
    EXPECT_EQ(busy.exitCode, 3);
    EXPECT_EQ(busy.error, u"Another program is changing the library. Try again when it has finished.\n"_s);
    EXPECT_EQ(run({u"name"_s, u"Cellar Door"_s}).exitCode, 0); // there is nothing to change

    QJsonObject received;
    HandOver server;
    server.serve([&received](const QJsonObject& message) {
        received = message;
        return QJsonObject{{u"ok"_s, true}};
    });
    const auto address = server.listen(folder.path());
    ASSERT_TRUE(address);
    owner.publish(*address);
    const auto handed = runServed({u"name"_s, u"IMG_0042"_s, u"Cellar Door"_s});
    EXPECT_EQ(handed.exitCode, 0) << handed.error.toStdString();
    EXPECT_EQ(QString::fromUtf8(handed.out), u"Tonequill is open and names them.\n"_s);
    EXPECT_EQ(received[u"name"_s].toArray(), QJsonArray{uuidText(camera.id)});
    EXPECT_EQ(names()[1], u"IMG_0042"_s);
}
