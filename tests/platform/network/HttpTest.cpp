#include "platform/network/Http.h"

#include "fakes/FakeHttpServer.h"
#include "support/Await.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>

using namespace tonequill;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Outcome = HttpReply::Outcome;
using Redirects = HttpRequest::Redirects;

namespace {

class HttpTest : public testing::Test {
protected:
    HttpReply fetch(const QString& path = u"/"_s, Redirects redirects = Redirects::refused)
    {
        request.url = server.url(path);
        request.redirects = redirects;
        return test::await(http.fetch(flows, request));
    }

    test::FakeHttpServer server;
    HttpRequest request;
    Http http{{"Tester/1", Http::Proxy::none, {server.url()}}};
    FlowGroup flows;
};

} // namespace

TEST_F(HttpTest, AsksAndIsAnswered)
{
    server.answer = [](const QString&, QTcpSocket& socket) {
        test::FakeHttpServer::sendBody(socket, "hello", "429 Too Many", "Retry-After: 7\r\n");
    };
    request.headers = {{"X-Own", "1"}};
    const HttpReply reply = fetch(u"/a%20b?c=d%20e#f"_s);
    EXPECT_EQ(reply.outcome, Outcome::answered);
    EXPECT_EQ(reply.status, 429);
    EXPECT_EQ(reply.body, "hello");
    EXPECT_EQ(reply.retryAfter, 7s);
    const QByteArray asked = server.requests.at(0);
    EXPECT_TRUE(asked.startsWith("GET /a%20b?c=d%20e HTTP/1.1\r\nHost: 127.0.0.1:")) << asked.toStdString();
    for (const char* line : {"User-Agent: Tester/1\r\n", "Accept-Encoding: identity\r\n", "X-Own: 1\r\n"})
        EXPECT_TRUE(asked.contains(line)) << line;
    EXPECT_FALSE(asked.toLower().contains("cookie"));

    request.body = "{}";
    fetch();
    EXPECT_TRUE(server.requests.at(1).startsWith("POST / HTTP/1.1\r\n"));
    EXPECT_TRUE(server.requests.at(1).endsWith("Content-Length: 2\r\n\r\n{}"));
}

TEST_F(HttpTest, EndsHoweverAServerMisbehaves)
{
    using Server = test::FakeHttpServer;
    request.largestBody = 256 * 1024;
    request.timeOut = 10s;
    request.deadline = 10s;
    const QByteArray chunk = "1000\r\n" + QByteArray(0x1000, 'x') + "\r\n";
    const std::pair<std::function<void(QTcpSocket&)>, Outcome> cases[] = {
        {[&](QTcpSocket& socket) { Server::flood(socket, "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n", chunk); },
         Outcome::badResponse},
        {[](QTcpSocket& socket) { Server::flood(socket, "HTTP/1.1 200 OK\r\n\r\n", QByteArray(4096, 'x')); },
         Outcome::badResponse},
        {[](QTcpSocket& socket) { Server::flood(socket, "HTTP/1.1 200 OK\r\n", "X-Header: again and again\r\n"); },
         Outcome::badResponse},
        {[](QTcpSocket& socket) { Server::flood(socket, "HTTP/1.1 200 ", "x"); }, Outcome::badResponse},
        {[](QTcpSocket& socket) { Server::sendBody(socket, "\x1f\x8b", "200 OK", "Content-Encoding: gzip\r\n"); },
         Outcome::badResponse},
        {[](QTcpSocket& socket) { Server::send(socket, "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nab"); }, Outcome::offline},
        {[](QTcpSocket& socket) { Server::send(socket, "SSH-2.0-x\r\n"); }, Outcome::badResponse},
        {[](QTcpSocket& socket) { Server::send(socket, {}); }, Outcome::offline}};
    for (const auto& [misbehave, outcome] : cases) {
        server.answer = [&misbehave = misbehave](const QString&, QTcpSocket& socket) { misbehave(socket); };
        QElapsedTimer timer;
        timer.start();
        const HttpReply reply = fetch();
        const auto number = &misbehave - &cases[0].first;
        EXPECT_EQ(reply.outcome, outcome) << number;
        EXPECT_TRUE(reply.body.isEmpty());
        EXPECT_LT(timer.elapsed(), 5000) << number;
    }
}

TEST_F(HttpTest, EndsInTime)
{
    server.answer = [](const QString&, QTcpSocket&) {};
    request.timeOut = 100ms;
    EXPECT_EQ(fetch().outcome, Outcome::timedOut) << "without a byte";
    request.timeOut = 10s;
    request.deadline = 300ms;
    server.answer = [](const QString&, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
        auto* timer = new QTimer(&socket);
        QObject::connect(timer, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
        timer->start(5);
    };
    EXPECT_EQ(fetch().outcome, Outcome::timedOut) << "byte by byte";
}

TEST_F(HttpTest, ARedirectLeadsFiveTimesAndNowhereElse)
{
    server.answer = [this](const QString& path, QTcpSocket& socket) {
        const int left = path.mid(1).toInt();
        const QByteArray target = path == u"/file"    ? QByteArray("file:///etc/passwd")
                                  : path == u"/other" ? QByteArray("http://127.0.0.1:1/")
                                  : path == u"/near"
                                      ? QByteArray("http://localhost:%1/").replace("%1", QByteArray::number(server.url().port()))
                                      : '/' + QByteArray::number(left - 1);
        if (left == 0 && path == u"/0")
            test::FakeHttpServer::sendBody(socket, "there");
        else
            test::FakeHttpServer::sendBody(socket, {}, "302 Found", "Location: " + target + "\r\n");
    };
    const HttpReply five = fetch(u"/5"_s, Redirects::followed);
    EXPECT_EQ(five.body, "there");
    EXPECT_EQ(five.url.path(), u"/0"_s);
    EXPECT_EQ(fetch(u"/6"_s, Redirects::followed).outcome, Outcome::badResponse);
    EXPECT_EQ(fetch(u"/5"_s).status, 302) << "unless they are refused";
    EXPECT_EQ(fetch(u"/file"_s, Redirects::followed).outcome, Outcome::badResponse);
    const qsizetype before = server.requests.size();
    EXPECT_EQ(fetch(u"/other"_s, Redirects::followed).outcome, Outcome::badResponse) << "another port of this machine";
    EXPECT_EQ(fetch(u"/near"_s, Redirects::followed).outcome, Outcome::badResponse) << "a name that leads here";
    EXPECT_EQ(server.requests.size(), before + 2);
}

TEST_F(HttpTest, AsksNobodyNearUnlessToldTo)
{
    server.answer = [](const QString&, QTcpSocket& socket) { test::FakeHttpServer::sendBody(socket, "secret"); };
    const Http careful{{"Tester/1", Http::Proxy::none, {}}};
    for (const QString& host :
         {u"127.0.0.1"_s, u"localhost"_s, u"0.0.0.0"_s, u"[::1]"_s, u"[::ffff:127.0.0.1]"_s, u"2130706433"_s}) {
        request.url = QUrl(u"http://%1:%2/"_s.arg(host).arg(server.url().port()));
        EXPECT_NE(test::await(careful.fetch(flows, request)).outcome, Outcome::answered) << host.toStdString();
    }
    for (const QString& url : {u"file:///etc/passwd"_s, u"ftp://example.org/"_s, u"http:///x"_s, u""_s}) {
        request.url = QUrl(url);
        EXPECT_EQ(test::await(http.fetch(flows, request)).outcome, Outcome::badResponse) << url.toStdString();
    }
    EXPECT_TRUE(server.requests.isEmpty());
}

TEST_F(HttpTest, KnowsWhatIsPublic)
{
    for (const QString& address : {u"127.0.0.1"_s, u"10.1.2.3"_s, u"172.31.0.1"_s, u"192.168.1.1"_s, u"169.254.169.254"_s,
                                   u"100.64.0.1"_s, u"0.0.0.0"_s, u"224.0.0.1"_s, u"255.255.255.255"_s, u"::1"_s, u"::"_s,
                                   u"fe80::1"_s, u"fd00::1"_s, u"ff02::1"_s, u"::ffff:10.0.0.1"_s, u"64:ff9b::a00:1"_s, u"x"_s})
        EXPECT_FALSE(Http::isPublic(address)) << address.toStdString();
    for (const QString& address : {u"93.184.216.34"_s, u"172.32.0.1"_s, u"100.128.0.1"_s, u"2606:2800::1"_s, u"::ffff:8.8.8.8"_s})
        EXPECT_TRUE(Http::isPublic(address)) << address.toStdString();
}

TEST_F(HttpTest, NobodyThereIsOffline)
{
    request.url = server.url();
    server.stop();
    EXPECT_EQ(test::await(http.fetch(flows, request)).outcome, Outcome::offline);
}

TEST_F(HttpTest, EndsWithItsGroup)
{
    server.answer = [this](const QString&, QTcpSocket&) { QTimer::singleShot(0, [this] { flows.end(); }); };
    EXPECT_THROW(fetch(), Cancelled);
}
