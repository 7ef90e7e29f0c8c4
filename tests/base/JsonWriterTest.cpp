#include "base/JsonWriter.h"
#include "support/Printing.h"

#include <gtest/gtest.h>

#include <limits>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(JsonWriter, KeepsKeysInTheirOrder)
{
    JsonWriter json;
    json.beginObject().key("z").number(qint64(1)).key("a").beginArray().beginObject().endObject().beginArray().endArray();
    json.endArray().key("m").boolean(true).key("l").list(QStringList{u"x"_s, u"y"_s}).key("j").json("[1]").endObject();
    EXPECT_EQ(json.bytes().toStdString(), R"({"z":1,"a":[{},[]],"m":true,"l":["x","y"],"j":[1]})");
}

TEST(JsonWriter, EscapesWhatATextMayNotHold)
{
    EXPECT_EQ(JsonWriter().text(u"a\"b\\c\nd\te\u0001/ä👍"_s).bytes().toStdString(), R"("a\"b\\c\nd\u0009e\u0001/ä👍")");
}

TEST(JsonWriter, WritesTheShortestExactNumber)
{
    const std::pair<double, const char*> cases[] = {{0.1, "0.1"},
                                                    {1, "1"},
                                                    {-2.5, "-2.5"},
                                                    {0.1 + 0.2, "0.30000000000000004"},
                                                    {80000008888888888800.0, "8.000000888888889e+19"},
                                                    {1e-7, "1e-07"}};
    for (const auto& [number, text] : cases)
        EXPECT_STREQ(JsonWriter().number(number).bytes().constData(), text);
    EXPECT_EQ(JsonWriter().number(0.1F).bytes(), "0.1");
    EXPECT_EQ(JsonWriter().number(std::numeric_limits<double>::infinity()).bytes(), "0");
    EXPECT_EQ(JsonWriter().number(std::numeric_limits<float>::quiet_NaN()).bytes(), "0");
    EXPECT_EQ(JsonWriter().number(qint64(-9007199254740993)).bytes(), "-9007199254740993");
}
