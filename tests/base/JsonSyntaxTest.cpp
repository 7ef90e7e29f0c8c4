#include "base/JsonSyntax.h"

#include <gtest/gtest.h>

using namespace tonequill;

TEST(JsonSyntax, TakesWhatJsonIs)
{
    for (const char* json :
         {"{}", "[]", "0", "-0", "-12.5e+3", "1E5", "0.5", "true", "null", "\"\"",
          " { \"a\" : [ 1 , -2.0 , \"\\u00e9\\n\\\"/\" ] }\r\n\t", "{\"a\":{\"b\":[[],{}]},\"a\":false}", "\"\xC3\xA9\""})
        EXPECT_TRUE(isJson(json)) << json;
}

TEST(JsonSyntax, TakesNothingElse)
{
    for (const char* json : {"",      " ",          ".5",          "1.",          "-",          "+1",       "01",  "-.5",
                             "1e",    "1e+",        "0x1",         "1 2",         "NaN",        "Infinity", "nul", "True",
                             "'a'",   "\"a",        "\"\\q\"",     "\"\\u12g4\"", "\"\\u123\"", "\"\n\"",   "{",   "}",
                             "{a:1}", "{\"a\"}",    "{\"a\":}",    "{\"a\":1,}",  "{,}",        "[1,]",     "[,]", "[1",
                             "[1}",   "{\"a\":.5}", "{\"a\":1} x", "\"\xC3\"",    "\"\xFF\""})
        EXPECT_FALSE(isJson(json)) << json;
    EXPECT_FALSE(isJson(QByteArray("1\0", 2)));
}

TEST(JsonSyntax, IsNotBuriedAlive)
{
    EXPECT_TRUE(isJson(QByteArray(400, '[') + QByteArray(400, ']')));
    EXPECT_FALSE(isJson(QByteArray(1'000'000, '[') + QByteArray(1'000'000, ']')));
}
