#include "indexing/ApiWalk.h"

#include "fakes/FakeHttpServer.h"
#include "support/Await.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QUrlQuery>

using namespace tonequill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

// A service that has three pages of each tag, with two sounds on a page.
class ApiWalkTest : public testing::Test {
protected:
    ApiWalkTest()
    {
        settings.base = server.url({});
        settings.tags = {u"door"_s, u"rain"_s};
        settings.pace = 0ms;
        settings.firstRest = 1ms;
        settings.journal = folder.filePath(u"walk"_s);
        server.answer = [this](const QString& path, QTcpSocket& socket) {
            const QUrlQuery query(QUrl(path).query());
            const QString name = query.queryItemValue(u"tags"_s) + query.queryItemValue(u"page"_s);
            asked << name;
            if (!misbehave || !misbehave(name, socket))
                test::FakeHttpServer::sendBody(socket, page(name));
        };
    }

    static QByteArray page(const QString& name)
    {
        QByteArrayList results;
        for (const char* part : {"a", "b"})
            results << "{\"id\":\"" + name.toUtf8() + part + R"(","title":"T","url":"https://example.org/a.mp3"})";
        return "{\"page_count\":3,\"results\":[" + results.join(',') + "]}";
    }

    ApiWalk::Outcome walk()
    {
        ApiWalk one(http, clock, settings);
        return test::await(one.walk(flows, [](const QString&, qsizetype, qsizetype, qsizetype) {}));
    }

    QStringList kept() const
    {
        QStringList ids;
        ApiWalk::read(settings.journal, [&ids](const CatalogueEntry& entry) { ids << entry.sound.id; });
        return ids;
    }

    QTemporaryDir folder;
    test::FakeHttpServer server;
    QStringList asked;
    std::function<bool(const QString& name, QTcpSocket& socket)> misbehave; // true if it has answered
    Http http{{"Tester/1", Http::Proxy::none, {server.url()}}};
    SystemClock clock;
    ApiWalk::Settings settings;
    FlowGroup flows;
};

} // namespace

TEST_F(ApiWalkTest, GathersEveryPageOfEveryTag)
{
    settings.pace = 20ms;
    QElapsedTimer timer;
    timer.start();
    const ApiWalk::Outcome outcome = walk();
    EXPECT_TRUE(outcome.isWhole);
    EXPECT_EQ(outcome.sounds, 12);
    EXPECT_EQ(outcome.requests, 6);
    EXPECT_GE(timer.elapsed(), 5 * 20) << "no faster than is polite";
    EXPECT_THAT(asked, ElementsAre(u"door1"_s, u"door2"_s, u"door3"_s, u"rain1"_s, u"rain2"_s, u"rain3"_s));
    EXPECT_EQ(kept().size(), 12);
}

TEST_F(ApiWalkTest, BacksOffAndTriesAgain)
{
    int refusals = 0;
    misbehave = [&](const QString& name, QTcpSocket& socket) {
        if (name != u"door2" || ++refusals > 4)
            return false;
        if (refusals == 1)
            test::FakeHttpServer::sendBody(socket, {}, "429 Too Many Requests");
        else if (refusals == 2)
            socket.abort();
        else if (refusals == 3)
            test::FakeHttpServer::sendBody(socket, "<html>");
        else
            test::FakeHttpServer::send(socket, "HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n{");
        return true;
    };
    settings.firstRest = 10ms;
    QElapsedTimer timer;
    timer.start();
    const ApiWalk::Outcome outcome = walk();
    EXPECT_TRUE(outcome.isWhole) << outcome.message.toStdString();
    EXPECT_EQ(outcome.sounds, 12);
    EXPECT_EQ(outcome.requests, 10);
    EXPECT_GE(timer.elapsed(), 10 + 20 + 40 + 80) << "each time twice as long";
}

TEST_F(ApiWalkTest, WaitsAsLongAsItIsTold)
{
    bool isFirst = true;
    misbehave = [&](const QString&, QTcpSocket& socket) {
        if (!std::exchange(isFirst, false))
            return false;
        test::FakeHttpServer::sendBody(socket, {}, "429 Too Many Requests", "Retry-After: 1\r\n");
        return true;
    };
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(walk().isWhole);
    EXPECT_GE(timer.elapsed(), 1000);
}

TEST_F(ApiWalkTest, GivesUpAndGoesOnWhereItWas)
{
    bool isDown = true;
    misbehave = [&](const QString& name, QTcpSocket& socket) {
        if (!isDown || name != u"rain2")
            return false;
        test::FakeHttpServer::sendBody(socket, {}, "503 Down");
        return true;
    };
    const ApiWalk::Outcome first = walk();
    EXPECT_FALSE(first.isWhole);
    EXPECT_EQ(first.message, u"The service answered with status 503."_s);
    EXPECT_EQ(first.sounds, 8);
    // As a program that is killed in the middle of a page leaves it.
    QFile journal(settings.journal);
    ASSERT_TRUE(journal.open(QIODevice::Append));
    journal.write("{\"i\":\"torn\",\"t\":\"T\",\"u\":\"a.mp3\"}\n{\"tag\":\"ra");
    journal.close();
    EXPECT_EQ(kept().size(), 8);

    isDown = false;
    asked.clear();
    const ApiWalk::Outcome second = walk();
    EXPECT_TRUE(second.isWhole);
    EXPECT_THAT(asked, ElementsAre(u"rain2"_s, u"rain3"_s));
    EXPECT_EQ(second.sounds, 12);
    EXPECT_FALSE(kept().contains(u"torn"_s));
    EXPECT_EQ(kept().size(), 12);
}

TEST_F(ApiWalkTest, AMissingPageEndsItsTag)
{
    misbehave = [](const QString& name, QTcpSocket& socket) {
        if (name != u"door2")
            return false;
        test::FakeHttpServer::sendBody(socket, {}, "404 Not Found");
        return true;
    };
    EXPECT_TRUE(walk().isWhole);
    EXPECT_THAT(asked, ElementsAre(u"door1"_s, u"door2"_s, u"rain1"_s, u"rain2"_s, u"rain3"_s));
}

TEST_F(ApiWalkTest, EndsWithItsGroup)
{
    settings.pace = 1h;
    misbehave = [this](const QString&, QTcpSocket&) {
        QTimer::singleShot(20, [this] { flows.end(); });
        return false;
    };
    EXPECT_THROW(walk(), Cancelled);
    EXPECT_EQ(kept().size(), 2) << "what it has it keeps";
}
