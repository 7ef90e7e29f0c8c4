#include "discovery/catalogue/CatalogueReader.h"
#include "fakes/FakeHttpServer.h"
#include "support/Printing.h"
#include "support/SmallCatalogue.h"
#include "support/Wav.h"

#include <gmock/gmock.h>

#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

// The program as people run it, in a folder of its own.
class IndexToolTest : public testing::Test {
protected:
    struct Result {
        int exitCode = -1;
        std::string out;
        std::string error;
    };

    Result run(const QStringList& arguments)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_s, at(u"data"_s));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder.path());
        QEventLoop loop; // for the servers of this process
        QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
        process.start(QStringLiteral(TONEQUILL_INDEXER), arguments);
        if (process.state() != QProcess::NotRunning)
            loop.exec();
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput().toStdString(), process.readAllStandardError().toStdString()};
    }

    QString at(const QString& name) const { return folder.filePath(name); }
    static QByteArray bytesOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    const QString lines = QStringLiteral(TONEQUILL_TEST_DATA "/discovery/catalogue.jsonl");
};

} // namespace

TEST_F(IndexToolTest, BuildsTheSameEveryTime)
{
    const Result first = run({u"build"_s, u"--output"_s, u"one.bin"_s, lines});
    EXPECT_EQ(first.exitCode, 1) << "one line has no identifier";
    EXPECT_THAT(first.error, HasSubstr(":209: Identifier, title or URL is missing."));
    EXPECT_THAT(first.out, HasSubstr("209 sounds, "));
    run({u"build"_s, lines});
    EXPECT_FALSE(bytesOf(at(u"one.bin"_s)).isEmpty());
    EXPECT_EQ(bytesOf(at(u"one.bin"_s)), bytesOf(at(u"sound-index.bin"_s)));
}

TEST_F(IndexToolTest, InstallsWhereTheProgramLooks)
{
    EXPECT_EQ(run({u"check"_s}).exitCode, 1);
    test::writeBytes(at(u"a.csv"_s), "id,title,url\n1,Door,https://example.org/a.mp3\n");
    EXPECT_EQ(run({u"build"_s, u"--install"_s, at(u"a.csv"_s)}).exitCode, 0);
    EXPECT_FALSE(bytesOf(at(u"data/Tonequill/sound-index.bin"_s)).isEmpty());
    const Result check = run({u"check"_s});
    EXPECT_EQ(check.exitCode, 0);
    EXPECT_THAT(check.out, HasSubstr("This is a catalogue.\n1 sounds would be loaded, 0 skipped\n"));
}

TEST_F(IndexToolTest, TellsWhatWouldBeLoaded)
{
    test::writeBytes(at(u"small.bin"_s), test::smallCatalogue());
    const Result check = run({u"check"_s, u"small.bin"_s});
    EXPECT_EQ(check.exitCode, 0);
    EXPECT_THAT(check.out, HasSubstr("207 sounds would be loaded, 3 skipped\n"
                                     "  1 without identifier, title or URL: 209 (Door Without an Identifier) …\n"
                                     "  1 in a format that isn't loaded: 207 (Door Slam Ogg) …\n"
                                     "  1 marked by the file: 208 (باب) …\n"));
    const auto json = QJsonDocument::fromJson(QByteArray::fromStdString(run({u"check"_s, u"small.bin"_s, u"--json"_s}).out));
    EXPECT_EQ(json[u"loaded"_s].toInt(), 207);
    EXPECT_EQ(json[u"skipped"_s][u"marked"_s].toInt(), 1);

    test::writeBytes(at(u"bad.bin"_s), test::smallCatalogue().chopped(9));
    const Result bad = run({u"check"_s, u"bad.bin"_s});
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_THAT(bad.out, HasSubstr("This is no raw DEFLATE stream, or one that was cut off."));
    EXPECT_EQ(run({u"check"_s, u"missing.bin"_s}).exitCode, 1);
}

TEST_F(IndexToolTest, MergesAndCounts)
{
    test::writeBytes(at(u"a.jsonl"_s), R"({"i":"1","t":"A","u":"a.mp3","g":["x","y"],"d":1,"l":"by"})");
    test::writeBytes(at(u"b.jsonl"_s), "{\"i\":\"2\",\"t\":\"B\",\"u\":\"b.mp3\",\"g\":[\"X\"],\"d\":20}\n"
                                       "{\"i\":\"1\",\"t\":\"A again\",\"u\":\"a.mp3\"}");
    EXPECT_EQ(run({u"build"_s, u"--output"_s, u"a.bin"_s, u"a.jsonl"_s}).exitCode, 0);
    EXPECT_EQ(run({u"build"_s, u"--output"_s, u"b.bin"_s, u"b.jsonl"_s}).exitCode, 0);
    const Result merged = run({u"merge"_s, u"c.bin"_s, u"a.bin"_s, u"b.bin"_s});
    EXPECT_EQ(merged.exitCode, 0);
    EXPECT_THAT(merged.out, HasSubstr("1 came twice and stand there once."));
    EXPECT_EQ(run({u"stats"_s, u"c.bin"_s}).out, "2 sounds with 3 tags, 1 of them up to 15 seconds long\n"
                                                 "         1 CC BY\n         1 CC0\nThe commonest tags:\n"
                                                 "         2 x\n         1 y\n");
    const auto json = QJsonDocument::fromJson(QByteArray::fromStdString(run({u"stats"_s, u"c.bin"_s, u"--json"_s}).out));
    EXPECT_EQ(json[u"sounds"_s].toInt(), 2);
    EXPECT_EQ(json[u"commonestTags"_s][0][u"tag"_s].toString(), u"x"_s);
    test::writeBytes(at(u"bad.bin"_s), "bad");
    EXPECT_EQ(run({u"merge"_s, u"d.bin"_s, u"a.bin"_s, u"bad.bin"_s}).exitCode, 1);
    EXPECT_FALSE(QFile::exists(at(u"d.bin"_s)));
}

TEST_F(IndexToolTest, WalksTheService)
{
    test::FakeHttpServer server;
    int refusals = 2;
    server.answer = [&](const QString&, QTcpSocket& socket) {
        if (refusals-- > 0)
            return test::FakeHttpServer::sendBody(socket, {}, "429 Too Many Requests");
        test::FakeHttpServer::sendBody(
            socket,
            R"({"page_count":1,"results":[{"id":"7","title":"Door.wav","url":"https://example.org/7.mp3","tags":[{"name":"door"}]}]})");
    };
    const QStringList call{u"build"_s,  u"--api"_s, u"--tags"_s, u"door,bell"_s,
                           u"--pace"_s, u"0.001"_s, u"--url"_s,  server.url({}).toString()};
    const Result result = run(call);
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(server.requests.size(), 4);
    EXPECT_THAT(result.error, HasSubstr("bell: page 1 of 1, 2 sounds so far"));
    EXPECT_THAT(result.out, HasSubstr("1 sounds, ")) << "it came for both tags";
    EXPECT_THAT(run({u"stats"_s, u"sound-index.bin"_s}).out, HasSubstr("         1 door\n"));
    EXPECT_FALSE(QFile::exists(at(u"sound-index.bin.walk"_s)));

    refusals = 100;
    const Result down = run(call);
    EXPECT_EQ(down.exitCode, 1);
    EXPECT_THAT(down.error, HasSubstr("The service asks for patience. What was gathered is kept; the same call goes on."));
}

TEST_F(IndexToolTest, IsUsedRightly)
{
    EXPECT_EQ(run({}).exitCode, 2);
    EXPECT_EQ(run({u"destroy"_s}).exitCode, 2);
    EXPECT_EQ(run({u"build"_s}).exitCode, 2);
    EXPECT_EQ(run({u"build"_s, u"--api"_s, u"a.jsonl"_s}).exitCode, 2);
    EXPECT_EQ(run({u"build"_s, u"--api"_s, u"--pace"_s, u"soon"_s}).exitCode, 2);
    EXPECT_EQ(run({u"merge"_s, u"a.bin"_s}).exitCode, 2);
    EXPECT_EQ(run({u"check"_s, u"a"_s, u"b"_s}).exitCode, 2);
    EXPECT_EQ(run({u"--help"_s}).exitCode, 0);
    EXPECT_EQ(run({u"build"_s, u"missing.jsonl"_s}).exitCode, 1);
}
