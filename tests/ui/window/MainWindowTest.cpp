#include "ui/window/MainWindow.h"

#include "support/Printing.h"
#include "ui/OpenSound.h"

#include <QQuickWindow>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class MainWindowTest : public testing::Test {
protected:
    std::unique_ptr<MainWindow> open() { return std::make_unique<MainWindow>(*program.app, program.defaults); }
    QString kept() const { return program.defaults.text(u"windowPlace"_s).value_or(QString()); }

    test::OpenSound program;
};

} // namespace

TEST_F(MainWindowTest, AFirstStartHasTheWindowsOwnSize)
{
    const auto main = open();
    EXPECT_EQ(main->window()->size(), QSize(1180, 740));
}

TEST_F(MainWindowTest, ItComesBackAsLargeAsItWas)
{
    {
        const auto main = open();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(main->window()));
        main->window()->setGeometry(20, 30, 900, 650); // a screen of a test has no more
        ASSERT_TRUE(test::OpenSound::wait([this] { return kept() == u"900x650+20+30"_s; })) << kept().toStdString();
    }
    const auto main = open();
    EXPECT_EQ(main->window()->geometry(), QRect(20, 30, 900, 650));
}

TEST_F(MainWindowTest, WhatIsKeptIsNotBelieved)
{
    program.defaults.setText(u"windowPlace"_s, u"1x1+99999+99999"_s);
    EXPECT_EQ(open()->window()->size(), QSize(900, 600));
    program.defaults.setText(u"windowPlace"_s, u"nonsense"_s);
    EXPECT_EQ(open()->window()->size(), QSize(1180, 740));
}
