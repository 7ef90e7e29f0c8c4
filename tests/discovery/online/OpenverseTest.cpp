#include "discovery/online/Openverse.h"

#include "support/Environment.h"
#include "support/Printing.h"

#include <gmock/gmock.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

QString urlOf(const std::optional<QString>& query, const QStringList& tags)
{
    return Openverse::pageUrl(QUrl(u"https://example.org"_s), query, tags, 3).toString(QUrl::FullyEncoded);
}

std::optional<SearchPage> page(const QByteArray& result, const QByteArray& more = {}, std::optional<double> maxSeconds = {})
{
    return Openverse::decode("{\"results\":[" + result + "]" + more + "}", maxSeconds);
}

QByteArray result(const QByteArray& more)
{
    return R"({"id":"7","title":"Door","url":"https://example.org/7.mp3")" + (more.isEmpty() ? more : ',' + more) + "}";
}

} // namespace

TEST(Openverse, AsksInOneOrder)
{
    const QString end = u"license=cc0,pdm&source=freesound&page_size=20&page=3"_s;
    EXPECT_EQ(urlOf(u"door & bell"_s, {}), u"https://example.org/v1/audio/?q=door%20%26%20bell&"_s + end);
    EXPECT_EQ(urlOf(u"door"_s, {u"a"_s, u"b+c"_s}), u"https://example.org/v1/audio/?tags=a%2Cb%2Bc&"_s + end) << "tags win";
    EXPECT_EQ(urlOf({}, {}), u"https://example.org/v1/audio/?"_s + end);
    const test::Environment variable("TONEQUILL_OPENVERSE_URL", "http://127.0.0.1:1");
    EXPECT_EQ(Openverse::base(), QUrl(u"http://127.0.0.1:1"_s));
}

TEST(Openverse, ReadsAResult)
{
    const auto full = page(result(
        R"("duration":2500,"license":"pdm","creator":"Ana","foreign_landing_url":"https://example.org/7","tags":[{"name":"A"},{"x":1},{"name":"b"}])"));
    ASSERT_TRUE(full && full->sounds.size() == 1);
    const OnlineSound expected{u"7"_s,
                               u"Door"_s,
                               u"https://example.org/7.mp3"_s,
                               2.5,
                               u"pdm"_s,
                               u"Ana"_s,
                               u"https://example.org/7"_s,
                               {u"A"_s, u"b"_s},
                               u"freesound"_s,
                               false,
                               0};
    EXPECT_EQ(full->sounds.first(), expected);
    const auto bare = page(result({}));
    ASSERT_TRUE(bare && bare->sounds.size() == 1);
    EXPECT_EQ(bare->sounds.first().license, u"cc0"_s);
    EXPECT_EQ(bare->sounds.first().duration, 0);
    EXPECT_EQ(bare->pageCount, 1);
    EXPECT_EQ(bare->total, 1);
}

TEST(Openverse, LeavesOutWhatItCannotUse)
{
    for (const QByteArray bad : {R"({"title":"a","url":"b"})", R"({"id":1,"title":"a","url":"b"})",
                                 R"({"id":"1","title":"a","url":""})", R"({"id":"1","title":"a","url":"http://[::1/"})"})
        EXPECT_EQ(page(bad + QByteArray(",") + result({}))->sounds.size(), 1) << bad.toStdString();
    EXPECT_EQ(page(result(R"("duration":16000)"), {}, 15.0)->sounds.size(), 0);
    EXPECT_EQ(page(result(R"("duration":15000)"), {}, 15.0)->sounds.size(), 1);
    EXPECT_EQ(page(result({}), {}, 15.0)->sounds.size(), 1) << "of no known length";
    for (const QByteArray none : {"", "[]", "{}", R"({"results":{}})", R"({"results":[1]})", "<html>"})
        EXPECT_EQ(Openverse::decode(none), std::nullopt) << none.toStdString();
}

TEST(Openverse, CountsPages)
{
    EXPECT_EQ(page({}, R"(,"page_count":240,"result_count":4800)")->pageCount, 12);
    EXPECT_EQ(page({}, R"(,"page_count":240,"result_count":4800)")->total, 4800);
    EXPECT_EQ(page({}, R"(,"page_count":"5")")->pageCount, 1);
    EXPECT_EQ(page({}, R"(,"page_count":2.5)")->pageCount, 1);
}

TEST(Openverse, CleansTitles)
{
    EXPECT_EQ(Openverse::cleaned(u"Door Slam.WAV"_s), u"Door Slam"_s);
    EXPECT_EQ(Openverse::cleaned(u"Door Slam.WAV "_s), u"Door Slam.WAV"_s);
    EXPECT_EQ(Openverse::cleaned(u" a.mp3.wav\n"_s), u"a.mp3.wav"_s);
    EXPECT_EQ(Openverse::cleaned(u"a.mp3.wav"_s), u"a"_s);
    EXPECT_EQ(Openverse::cleaned(u"a.wav.mp3"_s), u"a.wav"_s) << "each is tried once, in one order";
}
