// The items that draw themselves, in a window of the software scene graph.

#include "platform/process/Defaults.h"
#include "ui/Icon.h"
#include "ui/NumberText.h"
#include "ui/ShadowImage.h"
#include "ui/ThemeStore.h"
#include "ui/WaveItems.h"
#include "ui/WaveformView.h"
#include "ui/WindowBackground.h"

#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// A second at full scale, half as loud on average.
Envelope steadySecond()
{
    return {std::make_shared<const Envelope::Data>(
        Envelope::Data{std::vector<float>(100, 1.0f), std::vector<float>(100, 0.5f), 0.01, {}})};
}

class PaintedItemsTest : public testing::Test {
protected:
    PaintedItemsTest()
    {
        window.resize(200, 100);
        window.setColor(Qt::white);
        window.show();
    }

    // What the window shows of an item.
    QImage shown(QQuickItem& item, double width, double height)
    {
        item.setParentItem(window.contentItem());
        item.setSize({width, height});
        static_cast<ImageItem&>(item).polish();
        return window.grabWindow().copy(0, 0, int(width), int(height));
    }

    static int count(const QImage& image, const QColor& color)
    {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == color;
        }
        return count;
    }

    QTemporaryDir folder;
    Defaults defaults{folder.filePath(u"tonequill.ini"_s)};
    ThemeStore themes{defaults};
    QQuickWindow window;
};

// One step apart at most: what rounding leaves of a gradient's end.
bool isNear(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) <= 1 && std::abs(a.green() - b.green()) <= 1 && std::abs(a.blue() - b.blue()) <= 1;
}

// Items made in C++ are complete from the start only for themselves.
template <typename Item>
struct Complete : Item {
    Complete() { this->componentComplete(); }
};

} // namespace

TEST_F(PaintedItemsTest, AnIconIsDrawnInItsColourAlone)
{
    Complete<Icon> icon;
    icon.setName(u"stop-solid"_s);
    icon.setColor(Qt::red);
    const QImage image = shown(icon, 24, 24);
    EXPECT_EQ(image.pixelColor(12, 12), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white));
    icon.setColor(Qt::blue);
    EXPECT_EQ(shown(icon, 24, 24).pixelColor(12, 12), QColor(Qt::blue));
}

TEST_F(PaintedItemsTest, AnIconWithoutANameIsEmpty)
{
    Complete<Icon> icon;
    EXPECT_EQ(count(shown(icon, 24, 24), Qt::white), 24 * 24);
}

TEST_F(PaintedItemsTest, AThumbnailGrowsFromTheMiddleAndKeepsALineInSilence)
{
    Complete<WaveThumbnail> wave;
    wave.setColor(Qt::black);
    wave.setLevels({{1.0f, 0.0f}});
    const QImage image = shown(wave, 10, 20);
    for (const int y : {0, 10, 19})
        EXPECT_EQ(image.pixelColor(2, y), QColor(Qt::black)) << y;
    EXPECT_EQ(image.pixelColor(7, 2), QColor(Qt::white));
    EXPECT_NE(image.pixelColor(7, 10), QColor(Qt::white));
}

TEST_F(PaintedItemsTest, AWaveLaysTheRmsOverThePeakInTwoTones)
{
    Complete<WaveformView> wave;
    wave.setPeakColor(Qt::red);
    wave.setRmsColor(Qt::blue);
    wave.setEnvelope(steadySecond());
    wave.setEndSeconds(1);
    const QImage image = shown(wave, 100, 40);
    EXPECT_EQ(image.pixelColor(50, 2), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(50, 20), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(50, 37), QColor(Qt::red));
    EXPECT_EQ(count(image, Qt::blue), 100 * 20);
}

TEST_F(PaintedItemsTest, AWaveHasItsOwnTonesInsideTheRange)
{
    Complete<WaveformView> wave;
    wave.setEnvelope(steadySecond());
    wave.setEndSeconds(1);
    wave.setPeakColor(Qt::red);
    wave.setRmsColor(Qt::red);
    wave.setRangePeakColor(Qt::green);
    wave.setRangeRmsColor(Qt::blue);
    wave.setRangeStart(0.25);
    wave.setRangeEnd(0.5);
    const QImage image = shown(wave, 100, 40);
    EXPECT_EQ(image.pixelColor(24, 2), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(25, 2), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(25, 20), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(49, 2), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(50, 20), QColor(Qt::red));
}

TEST_F(PaintedItemsTest, WhatHasPlayedRunsFromOneColourToTheOtherAcrossTheRange)
{
    Complete<WaveformView> wave;
    wave.setEnvelope(steadySecond());
    wave.setEndSeconds(1);
    wave.setRangePeakColor(Qt::blue);
    wave.setEndColor(Qt::red);
    wave.setRangeStart(0.2);
    wave.setRangeEnd(0.8);
    const QImage image = shown(wave, 100, 40);
    EXPECT_EQ(image.pixelColor(19, 20), QColor(Qt::white));
    EXPECT_TRUE(isNear(image.pixelColor(20, 20), QColor(Qt::blue)));
    EXPECT_TRUE(isNear(image.pixelColor(50, 20), QColor(128, 0, 128)));
    EXPECT_GT(image.pixelColor(79, 20).red(), 245);
    EXPECT_EQ(image.pixelColor(80, 20), QColor(Qt::white));
}

TEST_F(PaintedItemsTest, AHiddenWaveIsNotDrawn)
{
    Complete<WaveformView> wave;
    wave.setEnvelope(steadySecond());
    wave.setEndSeconds(1);
    wave.setPeakColor(Qt::red);
    wave.setRmsColor(Qt::red);
    wave.setVisible(false);
    shown(wave, 100, 40);
    EXPECT_TRUE(wave.image().isNull());
    wave.setVisible(true);
    EXPECT_EQ(window.grabWindow().pixelColor(50, 20), QColor(Qt::red));
}

TEST_F(PaintedItemsTest, AWaveTakesTheFinerPeaksOnceTheyAreThere)
{
    Complete<WaveformView> wave;
    FinePeaks fine{std::vector<float>(1000, 0.1f), 0.001};
    wave.setEnvelope({std::make_shared<const Envelope::Data>(
        Envelope::Data{std::vector<float>(100, 1.0f), std::vector<float>(100, 0.9f), 0.01, fine})});
    wave.setEndSeconds(1);
    wave.setPeakColor(Qt::red);
    wave.setRmsColor(Qt::red);
    const QImage image = shown(wave, 100, 40);
    EXPECT_EQ(image.pixelColor(50, 20), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(50, 15), QColor(Qt::white)) << "and the RMS never reaches over them";
}

TEST_F(PaintedItemsTest, EveryDigitTakesTheCellOfAZero)
{
    themes.applyFont();
    const QFont font = QGuiApplication::font();
    const DigitCells ones = DigitCells::of(u"0:11.1"_s, font);
    const DigitCells eights = DigitCells::of(u"0:88.8"_s, font);
    EXPECT_EQ(ones.positions, eights.positions);
    EXPECT_EQ(ones.width, eights.width);

    Complete<NumberText> number;
    number.setType(themes.metrics().body());
    number.setColor(Qt::black);
    number.setText(u"11"_s);
    const double width = number.implicitWidth();
    number.setText(u"40"_s);
    EXPECT_EQ(number.implicitWidth(), width);
    EXPECT_EQ(number.implicitHeight(), 18);
    EXPECT_LT(count(shown(number, number.implicitWidth(), 18), Qt::white), int(width) * 18);
}

TEST_F(PaintedItemsTest, AShadowLeavesItsRectangleFree)
{
    Complete<ShadowImage> shadow;
    shadow.setLayers({{4, 12, QColor(0, 0, 0, 128)}});
    shadow.setRadius(8);
    EXPECT_EQ(shadow.margin(), 16);
    for (const double side : {60.0, 96.0}) { // smaller and larger than what is stretched
        const QImage image = shown(shadow, side, side);
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
    Complete<WindowBackground> ground;
    const QImage light = shown(ground, 200, 100);
    EXPECT_TRUE(isNear(light.pixelColor(0, 0), QColor(0xCA, 0xE9, 0xFA)));
    EXPECT_TRUE(isNear(light.pixelColor(199, 99), QColor(0xE4, 0xD8, 0xFA)));
    themes.setAppearance(Appearance::dark);
    EXPECT_LT(shown(ground, 200, 100).pixelColor(100, 50).lightness(), 60);
}
