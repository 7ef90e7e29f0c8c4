// The items that draw themselves, in a window of the software scene graph.

#include "platform/process/Defaults.h"
#include "support/Gate.h"
#include "ui/PaintedItem.h"
#include "ui/kit/ArcItem.h"
#include "ui/kit/Icon.h"
#include "ui/kit/NumberText.h"
#include "ui/kit/ShadowImage.h"
#include "ui/kit/ThemeStore.h"
#include "ui/kit/WindowBackground.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class PaintedItemsTest : public testing::Test {
protected:
    QTemporaryDir folder;
    Defaults defaults{folder.filePath(u"tonequill.ini"_s)};
    ThemeStore themes{defaults};
    test::PaintedItem painted;
};

} // namespace

TEST_F(PaintedItemsTest, AnIconIsDrawnInItsColourAlone)
{
    test::Complete<Icon> icon;
    icon.setName(u"stop-solid"_s);
    icon.setColor(Qt::red);
    const QImage image = painted.shown(icon, 24, 24);
    EXPECT_EQ(image.pixelColor(12, 12), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white));
    icon.setColor(Qt::blue);
    EXPECT_EQ(painted.shown(icon, 24, 24).pixelColor(12, 12), QColor(Qt::blue));
}

TEST_F(PaintedItemsTest, AnIconWithoutANameIsEmpty)
{
    test::Complete<Icon> icon;
    EXPECT_EQ(test::PaintedItem::count(painted.shown(icon, 24, 24), Qt::white), 24 * 24);
}

TEST_F(PaintedItemsTest, EveryDigitTakesTheCellOfAZero)
{
    themes.applyFont();
    const QFont font = QGuiApplication::font();
    const DigitCells ones = DigitCells::of(u"0:11.1"_s, font);
    const DigitCells eights = DigitCells::of(u"0:88.8"_s, font);
    EXPECT_EQ(ones.positions, eights.positions);
    EXPECT_EQ(ones.width, eights.width);

    test::Complete<NumberText> number;
    number.setType(themes.metrics().body());
    number.setColor(Qt::black);
    number.setText(u"11"_s);
    const double width = number.implicitWidth();
    number.setText(u"40"_s);
    EXPECT_EQ(number.implicitWidth(), width);
    EXPECT_EQ(number.implicitHeight(), 18);
    EXPECT_LT(test::PaintedItem::count(painted.shown(number, number.implicitWidth(), 18), Qt::white), int(width) * 18);
}

// Qt's painter waits for a place in Qt's own pool: nothing of ours may fill it.
TEST_F(PaintedItemsTest, AreDrawnWhileEveryWorkerIsBusy)
{
    Workers workers;
    const test::HeldBack shown(workers.shown());
    const test::HeldBack behind(workers.behind());
    test::Complete<ArcItem> arc;
    arc.setProperty("trackColor", QColor(Qt::red));
    EXPECT_LT(test::PaintedItem::count(painted.shown(arc, 400, 400), Qt::white), 400 * 400); // and so it comes back
}

TEST_F(PaintedItemsTest, AShadowLeavesItsRectangleFree)
{
    test::Complete<ShadowImage> shadow;
    shadow.setLayers({{4, 12, QColor(0, 0, 0, 128)}});
    shadow.setRadius(8);
    EXPECT_EQ(shadow.margin(), 16);
    for (const double side : {60.0, 96.0}) { // smaller and larger than what is stretched
        const QImage image = painted.shown(shadow, side, side);
        const int middle = int(side) / 2;
        EXPECT_EQ(image.pixelColor(middle, middle), QColor(Qt::white));
        EXPECT_EQ(image.pixelColor(0, 0).lightness(), 255);
        const int above = image.pixelColor(middle, 15).lightness();
        const int below = image.pixelColor(middle, int(side) - 16).lightness();
        EXPECT_LT(below, above) << "it falls downwards";
        EXPECT_LT(above, 255);
        EXPECT_EQ(image.pixelColor(20, int(side) - 12), image.pixelColor(int(side) - 21, int(side) - 12))
            << "both sides are alike";
    }
}

TEST_F(PaintedItemsTest, TheGroundRunsFromCornerToCorner)
{
    test::Complete<WindowBackground> ground;
    const QImage light = painted.shown(ground, 200, 100);
    EXPECT_TRUE(test::isNear(light.pixelColor(0, 0), QColor(0xCA, 0xE9, 0xFA)));
    EXPECT_TRUE(test::isNear(light.pixelColor(199, 99), QColor(0xE4, 0xD8, 0xFA)));
    themes.setAppearance(Appearance::dark);
    EXPECT_LT(painted.shown(ground, 200, 100).pixelColor(100, 50).lightness(), 60);
}
