#include "ui/kit/DesignTokens.h"

#include "support/Printing.h"
#include "ui/kit/Icon.h"

#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

QByteArray builtInJson()
{
    QFile file(u":/design/tokens.json"_s);
    if (!file.open(QFile::ReadOnly))
        qFatal("no tokens");
    return file.readAll();
}

// What parsing says of the built-in text with one place changed; empty if nothing.
std::string complaintAfter(const QByteArray& before, const QByteArray& after)
{
    QByteArray json = builtInJson();
    const qsizetype at = json.indexOf(before);
    EXPECT_GE(at, 0);
    json.replace(at, before.size(), after);
    try {
        DesignTokens::parse(json);
    } catch (const DesignTokensError& error) {
        return error.what();
    }
    return {};
}

} // namespace

TEST(DesignTokens, HoldTheSixThemesInTheOrderOfTheSettings)
{
    QStringList ids;
    for (const AppTheme& theme : DesignTokens::builtIn().themes)
        ids << theme.id + u' ' + theme.name;
    EXPECT_EQ(ids.join(u", "_s), u"aurora Aurora, sunset Sunset, ocean Ocean, forest Forest, rose Rose, graphite Graphite"_s);
}

TEST(DesignTokens, GiveAuroraItsThreeColours)
{
    const AppTheme aurora = DesignTokens::builtIn().themes.first();
    EXPECT_EQ(aurora.tint, QColor::fromRgbF(0.4f, 0.48f, 1.0f));
    EXPECT_EQ(aurora.start, QColor::fromRgbF(0.24f, 0.78f, 1.0f));
    EXPECT_EQ(aurora.end, QColor::fromRgbF(0.68f, 0.42f, 1.0f));
}

TEST(DesignTokens, KeepTheSizesOfTheWindow)
{
    const DesignTokens tokens = DesignTokens::builtIn();
    EXPECT_EQ(tokens.measures.row, 44);
    EXPECT_EQ(tokens.measures.toolbar, 48);
    EXPECT_EQ(tokens.measures.windowWidth, 1180);
    EXPECT_EQ(tokens.measures.windowHeight, 740);
    EXPECT_EQ(tokens.measures.windowMinWidth, 900);
    EXPECT_EQ(tokens.measures.windowMinHeight, 600);
    EXPECT_GE(tokens.measures.hitTarget, 32);
    EXPECT_EQ(tokens.type.body, (TypeStyle{13, 18, 400, 0}));
    EXPECT_EQ(tokens.type.title, (TypeStyle{20, 26, 600, -0.2}));
    EXPECT_EQ(tokens.type.families.first(), u"Inter"_s);
    EXPECT_TRUE(tokens.type.families.contains(u"Noto Sans Arabic"_s));
}

TEST(DesignTokens, ReadShadowsLayerByLayer)
{
    const DesignTokens tokens = DesignTokens::builtIn();
    ASSERT_EQ(tokens.lightShadows.panel.size(), 2);
    EXPECT_EQ(tokens.lightShadows.panel[1].y, 8);
    EXPECT_EQ(tokens.lightShadows.panel[1].blur, 24);
    EXPECT_EQ(tokens.lightShadows.panel[1].margin(), 32);
    EXPECT_TRUE(tokens.darkShadows.panel.isEmpty());
}

TEST(DesignTokens, NameThePlaceOfAMistake)
{
    EXPECT_EQ(complaintAfter("\"row\": 44", "\"rows\": 44"), "tokens/size/row is missing");
    EXPECT_EQ(complaintAfter("\"row\": 44", "\"row\": \"44\""), "tokens/size/row is no number");
    EXPECT_EQ(complaintAfter("\"textPrimary\": \"#151827\"", "\"textPrimary\": \"ink\""),
              "tokens/themes/aurora/light/textPrimary is no colour");
    EXPECT_EQ(complaintAfter("\"textPrimary\": \"#151827\"", "\"textPrimary\": \"#151827\", \"ink\": \"#000000\""),
              "tokens/themes/aurora/light holds an unknown colour");
    EXPECT_THROW(DesignTokens::parse("{"), DesignTokensError);
}

TEST(DesignTokens, TakeTwoSpellingsOfAColour)
{
    EXPECT_EQ(colorFromText(u"#F2F3F9"_s), QColor(0xF2, 0xF3, 0xF9));
    EXPECT_EQ(colorFromText(u"rgba(47,57,105,0.5)"_s).alpha(), 128);
    for (const QString& wrong : {u"red"_s, u"#FFF"_s, u"rgba(1,2,3)"_s, u"rgba(1,2,3,1.5)"_s, u"rgba(300,2,3,0.5)"_s, QString()})
        EXPECT_FALSE(colorFromText(wrong).isValid()) << wrong.toStdString();
}

TEST(Icons, AreThereForEveryNameTheSurfacesUse)
{
    for (const char* name : {"library", "discover", "studio", "create", "plus", "folder", "trash", "download", "warning", "check",
                             "credit", "search", "close"})
        EXPECT_TRUE(Icon::exists(QLatin1StringView(name))) << name;
    EXPECT_FALSE(Icon::exists(u"no-such-icon"_s));
}
