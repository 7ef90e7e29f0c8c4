#include "ui/wave/WaveItems.h"

#include "ui/PaintedItem.h"
#include "ui/wave/WaveformView.h"

#include <gtest/gtest.h>

using namespace tonequill;

namespace {

// A second at full scale, half as loud on average.
Envelope steadySecond()
{
    return {std::make_shared<const Envelope::Data>(
        Envelope::Data{std::vector<float>(100, 1.0f), std::vector<float>(100, 0.5f), 0.01, {}})};
}

class WaveItemsTest : public testing::Test {
protected:
    test::PaintedItem painted;
};

} // namespace

TEST_F(WaveItemsTest, AThumbnailGrowsFromTheMiddleAndKeepsALineInSilence)
{
    test::Complete<WaveThumbnail> wave;
    wave.setColor(Qt::black);
    wave.setLevels({{1.0f, 0.0f}});
    const QImage image = painted.shown(wave, 10, 20);
    for (const int y : {0, 10, 19})
        EXPECT_EQ(image.pixelColor(2, y), QColor(Qt::black)) << y;
    EXPECT_EQ(image.pixelColor(7, 2), QColor(Qt::white));
    EXPECT_NE(image.pixelColor(7, 10), QColor(Qt::white));
}

TEST_F(WaveItemsTest, AWaveLaysTheRmsOverThePeakInTwoTones)
{
    test::Complete<WaveformView> wave;
    wave.setPeakColor(Qt::red);
    wave.setRmsColor(Qt::blue);
    wave.setEnvelope(steadySecond());
    wave.setEndSeconds(1);
    const QImage image = painted.shown(wave, 100, 40);
    EXPECT_EQ(image.pixelColor(50, 2), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(50, 20), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(50, 37), QColor(Qt::red));
    EXPECT_EQ(test::PaintedItem::count(image, Qt::blue), 100 * 20);
}

TEST_F(WaveItemsTest, AWaveHasItsOwnTonesInsideTheRange)
{
    test::Complete<WaveformView> wave;
    wave.setEnvelope(steadySecond());
    wave.setEndSeconds(1);
    wave.setPeakColor(Qt::red);
    wave.setRmsColor(Qt::red);
    wave.setRangePeakColor(Qt::green);
    wave.setRangeRmsColor(Qt::blue);
    wave.setRangeStart(0.25);
    wave.setRangeEnd(0.5);
    const QImage image = painted.shown(wave, 100, 40);
    EXPECT_EQ(image.pixelColor(24, 2), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(25, 2), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(25, 20), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(49, 2), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(50, 20), QColor(Qt::red));
}

TEST_F(WaveItemsTest, WhatHasPlayedRunsFromOneColourToTheOtherAcrossTheRange)
{
    test::Complete<WaveformView> wave;
    wave.setEnvelope(steadySecond());
    wave.setEndSeconds(1);
    wave.setRangePeakColor(Qt::blue);
    wave.setEndColor(Qt::red);
    wave.setRangeStart(0.2);
    wave.setRangeEnd(0.8);
    const QImage image = painted.shown(wave, 100, 40);
    EXPECT_EQ(image.pixelColor(19, 20), QColor(Qt::white));
    EXPECT_TRUE(test::isNear(image.pixelColor(20, 20), QColor(Qt::blue)));
    EXPECT_TRUE(test::isNear(image.pixelColor(50, 20), QColor(128, 0, 128)));
    EXPECT_GT(image.pixelColor(79, 20).red(), 245);
    EXPECT_EQ(image.pixelColor(80, 20), QColor(Qt::white));
}

TEST_F(WaveItemsTest, AHiddenWaveIsNotDrawn)
{
    test::Complete<WaveformView> wave;
    wave.setEnvelope(steadySecond());
    wave.setEndSeconds(1);
    wave.setPeakColor(Qt::red);
    wave.setRmsColor(Qt::red);
    wave.setVisible(false);
    painted.shown(wave, 100, 40);
    EXPECT_TRUE(wave.image().isNull());
    wave.setVisible(true);
    EXPECT_EQ(painted.window.grabWindow().pixelColor(50, 20), QColor(Qt::red));
}

TEST_F(WaveItemsTest, AWaveTakesTheFinerPeaksOnceTheyAreThere)
{
    test::Complete<WaveformView> wave;
    FinePeaks fine{std::vector<float>(1000, 0.1f), 0.001};
    wave.setEnvelope({std::make_shared<const Envelope::Data>(
        Envelope::Data{std::vector<float>(100, 1.0f), std::vector<float>(100, 0.9f), 0.01, fine})});
    wave.setEndSeconds(1);
    wave.setPeakColor(Qt::red);
    wave.setRmsColor(Qt::red);
    const QImage image = painted.shown(wave, 100, 40);
    EXPECT_EQ(image.pixelColor(50, 20), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(50, 15), QColor(Qt::white)) << "and the RMS never reaches over them";
}
