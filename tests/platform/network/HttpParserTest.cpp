#include "platform/network/HttpParser.h"

#include <gtest/gtest.h>

using namespace tonequill;
using State = HttpParser::State;

namespace {

constexpr qint64 kLargest = 100;

HttpParser parsed(const QByteArray& bytes, bool isEnd = false)
{
    HttpParser parser(kLargest);
    parser.take(bytes);
    if (isEnd)
        parser.end();
    return parser;
}

} // namespace

TEST(HttpParser, ReadsTheSameInPiecesOfAnySize)
{
    const QByteArray whole =
        "HTTP/1.1 100 Continue\r\nA: b\r\n\r\nHTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nX-One:  two \r\n\r\n"
        "5;ext=1\r\nhello\r\n6\r\n world\r\n0\r\nTrailer: x\r\n\r\n";
    for (qsizetype size = 1; size <= whole.size(); ++size) {
        HttpParser parser(kLargest);
        for (qsizetype at = 0; at < whole.size(); at += size)
            parser.take(whole.mid(at, size));
        EXPECT_EQ(parser.state(), State::done) << size;
        EXPECT_EQ(parser.status(), 200);
        EXPECT_EQ(parser.body(), "hello world");
        EXPECT_EQ(parser.header("x-one"), "two");
        EXPECT_EQ(parser.header("a"), std::nullopt);
    }
}

TEST(HttpParser, KnowsWhereABodyEnds)
{
    EXPECT_EQ(parsed("HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabcdef").body(), "abc");
    EXPECT_EQ(parsed("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n").state(), State::done);
    EXPECT_EQ(parsed("HTTP/1.1 204 No Content\r\n\r\n").state(), State::done);
    EXPECT_EQ(parsed("HTTP/1.0 200\n\nabc").state(), State::body);
    EXPECT_EQ(parsed("HTTP/1.0 200\n\nabc", true).state(), State::done);
    EXPECT_EQ(parsed("HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nab", true).state(), State::broken);
    EXPECT_EQ(parsed("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc", true).state(), State::broken);
    EXPECT_EQ(parsed("HTTP/1.1 200 OK\r\n", true).state(), State::broken);
}

TEST(HttpParser, RefusesWhatIsTooMuchOrNoHttp)
{
    const QByteArray ok = "HTTP/1.1 200 OK\r\n";
    const QByteArray chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
    for (const QByteArray& bytes :
         {QByteArray("HTP/1.1 200 OK\r\n\r\n"), QByteArray("HTTP/1.1 2x0 OK\r\n\r\n"), QByteArray("HTTP/1.1 099 No\r\n\r\n"),
          QByteArray("<html>\r\n\r\n"), ok + "no colon\r\n\r\n", ok + ": x\r\n\r\n", ok + "Content-Length: 101\r\n\r\n",
          ok + "Content-Length: -1\r\n\r\n", ok + "Content-Length: 99999999999999999999\r\n\r\n",
          ok + "Content-Encoding: gzip\r\n\r\n", ok + "Transfer-Encoding: gzip, chunked\r\n\r\n",
          ok + "\r\n" + QByteArray(101, 'x'), chunked + "65\r\n", chunked + "ffffffffffffffff\r\n", chunked + "x\r\n",
          chunked + "-1\r\n", chunked + "1\r\nab\r\n", chunked + "60\r\n" + QByteArray(96, 'x') + "\r\n5\r\n"})
        EXPECT_EQ(parsed(bytes).state(), State::broken) << bytes.toStdString();
    EXPECT_EQ(parsed(ok + "\r\n" + QByteArray(100, 'x'), true).body().size(), 100);
}

TEST(HttpParser, CapsTheHead)
{
    HttpParser lines(kLargest);
    lines.take("HTTP/1.1 200 OK\r\n");
    qsizetype taken = 0;
    while (lines.state() == State::head && taken < 10 * HttpParser::kMostHead) {
        lines.take("X: y\r\n");
        taken += 6;
    }
    EXPECT_EQ(lines.state(), State::broken);
    EXPECT_LE(taken, HttpParser::kMostHead);
    EXPECT_EQ(parsed("HTTP/1.1 200 " + QByteArray(HttpParser::kMostHead, 'x')).state(), State::broken) << "one line";
    HttpParser interim(kLargest);
    for (int i = 0; i < 10000; ++i)
        interim.take("HTTP/1.1 100 Continue\r\n\r\n");
    EXPECT_EQ(interim.state(), State::broken);
}
