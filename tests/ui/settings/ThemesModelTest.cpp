#include "ui/settings/ThemesModel.h"

#include "platform/process/Defaults.h"
#include "support/Printing.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class ThemesModelTest : public testing::Test {
protected:
    QVariant at(int row, ThemesModel::Role role) const { return model.data(model.index(row), role); }

    QTemporaryDir folder;
    Defaults defaults{folder.filePath(u"tonequill.ini"_s)};
    ThemeStore store{defaults};
    ThemesModel model{store};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

} // namespace

TEST_F(ThemesModelTest, ListsTheThemesInTheirOrder)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names << at(row, ThemesModel::NameRole).toString();
    EXPECT_EQ(names, (QStringList{u"Aurora"_s, u"Sunset"_s, u"Ocean"_s, u"Forest"_s, u"Rose"_s, u"Graphite"_s}));
    EXPECT_EQ(at(0, ThemesModel::StartRole).value<QColor>(), QColor::fromRgbF(0.24f, 0.78f, 1.0f));
    EXPECT_EQ(at(0, ThemesModel::EndRole).value<QColor>(), QColor::fromRgbF(0.68f, 0.42f, 1.0f));
}

TEST_F(ThemesModelTest, OneIsCurrent)
{
    const QSignalSpy changes(&model, &ThemesModel::currentChanged);
    model.choose(4);
    EXPECT_EQ(store.themeID(), u"rose"_s);
    EXPECT_EQ(model.current(), 4);
    EXPECT_EQ(changes.count(), 1);
    for (int row = 0; row < model.rowCount(); ++row)
        EXPECT_EQ(at(row, ThemesModel::CurrentRole).toBool(), row == 4);
    model.choose(6);
    model.choose(-1);
    EXPECT_EQ(store.themeID(), u"rose"_s);
}

TEST_F(ThemesModelTest, TheAccentIsThatOfTheAppearance)
{
    EXPECT_EQ(at(2, ThemesModel::AccentRole).value<QColor>(), store.all()[2].light.accent);
    store.setAppearance(Appearance::dark);
    EXPECT_EQ(at(2, ThemesModel::AccentRole).value<QColor>(), store.all()[2].dark.accent);
}

TEST_F(ThemesModelTest, AnUnknownThemeLooksLikeTheFirst)
{
    store.setThemeID(u"neon"_s);
    EXPECT_EQ(model.current(), 0);
}
