#include "discovery/catalogue/CatalogueUrl.h"

#include <QUrl>

#include <gtest/gtest.h>

using namespace tonequill;

namespace {

// As QUrl alone would have it.
bool isUrlSlowly(const std::string& text)
{
    return QUrl(QString::fromStdString(text)).isValid();
}

} // namespace

// The short way takes nothing that QUrl refuses.
TEST(CatalogueUrl, AgreesWithQUrl)
{
    const std::string parts[] = {"https://",
                                 "http://",
                                 "ftp:",
                                 "//",
                                 "example.org",
                                 "EXAMPLE.org",
                                 "a..b",
                                 "-a",
                                 "a-.b",
                                 "xn--a",
                                 "[::1]",
                                 "127.0.0.1",
                                 "1.2.3",
                                 ":80",
                                 ":99999",
                                 ":x",
                                 "user@",
                                 "/",
                                 "/a.mp3",
                                 "/a b",
                                 "/%41",
                                 "/%zz",
                                 "/a.OGG",
                                 "/.ogg",
                                 "/ü.opus",
                                 "?q=a.ogg",
                                 "#f",
                                 "\\",
                                 "",
                                 " ",
                                 "|",
                                 "<x>",
                                 std::string(64, 'a') + ".org"};
    for (const std::string& one : parts) {
        for (const std::string& two : parts) {
            for (const std::string& three : parts) {
                const std::string text = one + two + three;
                EXPECT_EQ(CatalogueUrl::isUrl(text), isUrlSlowly(text)) << text;
            }
        }
    }
}

TEST(CatalogueUrl, LooksAtTheExtensionOfThePath)
{
    for (const char* url : {"https://example.org/a.ogg", "https://example.org/a.b.OGA", "https://example.org/ü/a.opus", "a.webm",
                            "https://example.org/a.ogg/", "https://example.org/a%2eogg", "https://example.org/a.ogg?x#y"})
        EXPECT_TRUE(CatalogueUrl::hasUnloadedFormat(url)) << url;
    for (const char* url :
         {"https://example.org/a.mp3", "https://example.org/.ogg", "https://example.org/ogg", "https://example.org/a.oggs",
          "https://example.ogg/", "https://example.org/a?b=c.ogg", "https://x.ogg"})
        EXPECT_FALSE(CatalogueUrl::hasUnloadedFormat(url)) << url;
}
