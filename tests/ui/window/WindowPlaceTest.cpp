#include "ui/window/WindowPlace.h"

#include "support/Printing.h"

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

const QList<QRect> kScreens{{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}};
constexpr QSize kLeast(900, 600);

QRect fitted(const QRect& frame)
{
    return WindowPlace{frame, false}.fitted(kScreens, kLeast).frame;
}

} // namespace

TEST(WindowPlace, ItIsKeptAsText)
{
    const WindowPlace place{{60, -40, 1180, 740}, false};
    EXPECT_EQ(place.text(), u"1180x740+60-40"_s);
    EXPECT_EQ(WindowPlace::fromText(place.text()), place);
    const WindowPlace large{{0, 0, 1000, 700}, true};
    EXPECT_EQ(large.text(), u"1000x700+0+0 maximized"_s);
    EXPECT_EQ(WindowPlace::fromText(large.text()), large);
}

TEST(WindowPlace, AnyOtherTextIsNone)
{
    for (const QString& text : {u""_s, u"1180x740"_s, u"1180x740+60"_s, u"x740+0+0"_s, u"-5x740+0+0"_s,
                                u"1180x740+0+0 minimized"_s, u"999999999x740+0+0"_s, u" 1180x740+0+0"_s, u"1180x740+0+0\n"_s})
        EXPECT_FALSE(WindowPlace::fromText(text)) << text.toStdString();
}

TEST(WindowPlace, WhereThereIsAScreenItStays)
{
    EXPECT_EQ(fitted({60, 40, 1180, 740}), QRect(60, 40, 1180, 740));
    EXPECT_EQ(fitted({2000, 40, 1000, 740}), QRect(2000, 40, 1000, 740));
    EXPECT_EQ(fitted({-1000, 40, 1180, 740}), QRect(-1000, 40, 1180, 740)) << "enough of its title is there";
}

TEST(WindowPlace, WithoutAScreenItComesToTheMiddleOfTheFirst)
{
    const QPoint middle = kScreens.first().center();
    for (const QRect& frame : {QRect(5000, 40, 1180, 740), QRect(60, -400, 1180, 740), QRect(-1150, 40, 1180, 740)}) {
        EXPECT_EQ(fitted(frame).center(), middle);
        EXPECT_EQ(fitted(frame).size(), frame.size());
    }
}

TEST(WindowPlace, ItIsNeitherTooSmallNorLargerThanItsScreen)
{
    EXPECT_EQ(fitted({60, 40, 10, 10}).size(), kLeast);
    EXPECT_EQ(fitted({0, 0, 9000, 9000}).size(), kScreens.first().size());
}
