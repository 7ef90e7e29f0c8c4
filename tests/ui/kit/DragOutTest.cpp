#include "ui/kit/DragOut.h"

#include "platform/process/Defaults.h"
#include "support/Printing.h"
#include "ui/kit/ThemeStore.h"

#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(DragOut, CarriesNothingButTheFiles)
{
    const auto files = DragOut::filesOf({u"/tmp/Door Slam.wav"_s, u"/tmp/قهقهة.wav"_s});
    EXPECT_EQ(files->formats(), QStringList{u"text/uri-list"_s});
    EXPECT_EQ(files->urls(), (QList{QUrl::fromLocalFile(u"/tmp/Door Slam.wav"_s), QUrl::fromLocalFile(u"/tmp/قهقهة.wav"_s)}));
    EXPECT_EQ(files->data(u"text/uri-list"_s).split('\n').first().trimmed(), "file:///tmp/Door%20Slam.wav");
}

TEST(DragOut, ThePictureTellsTheFirstNameAndHowManyMore)
{
    const QTemporaryDir folder;
    Defaults defaults(folder.filePath(u"tonequill.ini"_s));
    const ThemeStore themes(defaults);
    const QPixmap one = DragOut::picture(u"Door"_s, 1, 2);
    const QPixmap three = DragOut::picture(u"Door"_s, 3, 2);
    EXPECT_EQ(one.height(), 64);
    EXPECT_EQ(one.devicePixelRatio(), 2);
    EXPECT_GT(three.width(), one.width());
    EXPECT_LT(DragOut::picture(QString(500, u'x'), 1, 1).width(), 300);
}
