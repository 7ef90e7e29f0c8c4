#include "ui/kit/ThemeStore.h"

#include "platform/process/Defaults.h"
#include "support/Printing.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class ThemeStoreTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"tonequill.ini"_s);
    Defaults defaults{path};
};

} // namespace

TEST_F(ThemeStoreTest, AFirstStartIsAuroraAndFollowsTheSystem)
{
    const ThemeStore store(defaults);
    EXPECT_EQ(store.themeID(), u"aurora"_s);
    EXPECT_EQ(store.appearance(), Appearance::system);
    EXPECT_EQ(store.all().size(), 6);
}

TEST_F(ThemeStoreTest, AnUnknownAppearanceFollowsTheSystem)
{
    defaults.setText(u"appearance"_s, u"sepia"_s);
    EXPECT_EQ(ThemeStore(defaults).appearance(), Appearance::system);
}

TEST_F(ThemeStoreTest, EachChangeIsWrittenAtOnce)
{
    ThemeStore store(defaults);
    store.setThemeID(u"rose"_s);
    EXPECT_EQ(Defaults(path).text(u"theme"_s), u"rose"_s);
    store.setAppearance(Appearance::dark);
    EXPECT_EQ(Defaults(path).text(u"appearance"_s), u"dark"_s);
}

TEST_F(ThemeStoreTest, TheNextStartHasWhatWasChosen)
{
    {
        ThemeStore store(defaults);
        store.setThemeID(u"ocean"_s);
        store.setAppearance(Appearance::light);
    }
    ThemeStore store(defaults);
    EXPECT_EQ(store.themeID(), u"ocean"_s);
    EXPECT_EQ(store.appearance(), Appearance::light);
    EXPECT_EQ(store.theme().accent(), store.all()[2].light.accent);
}

TEST_F(ThemeStoreTest, TheThemeShowsTheColoursOfTheAppearance)
{
    ThemeStore store(defaults);
    const QSignalSpy changes(&store.theme(), &Theme::changed);
    EXPECT_EQ(store.theme().textPrimary(), QColor(0x15, 0x18, 0x27));
    store.setAppearance(Appearance::dark);
    EXPECT_TRUE(store.theme().isDark());
    EXPECT_EQ(store.theme().textPrimary(), QColor(0xF1, 0xF3, 0xF9));
    EXPECT_TRUE(store.theme().panelShadow().isEmpty());
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(ThemeStoreTest, OnlySystemFollowsTheSystem)
{
    ThemeStore store(defaults);
    store.setSystemIsDark(true);
    EXPECT_TRUE(store.theme().isDark());
    store.setAppearance(Appearance::light);
    EXPECT_FALSE(store.theme().isDark());
    store.setSystemIsDark(false);
    store.setAppearance(Appearance::dark);
    EXPECT_TRUE(store.theme().isDark());
}

TEST_F(ThemeStoreTest, AnUnknownThemeIsKeptAndLooksLikeTheFirst)
{
    defaults.setText(u"theme"_s, u"neon"_s);
    ThemeStore store(defaults);
    EXPECT_EQ(store.themeID(), u"neon"_s);
    EXPECT_EQ(store.theme().accent(), store.all().first().light.accent);
}

TEST(Appearance, HasATextAndALabel)
{
    EXPECT_EQ(appearanceText(Appearance::system), u"system"_s);
    EXPECT_EQ(appearanceLabel(Appearance::system), u"System"_s);
    EXPECT_EQ(appearanceLabel(Appearance::light), u"Light"_s);
    EXPECT_EQ(appearanceLabel(Appearance::dark), u"Dark"_s);
    EXPECT_EQ(appearanceFromText(u"dark"), Appearance::dark);
    EXPECT_FALSE(appearanceFromText(u"Dark"));
}
