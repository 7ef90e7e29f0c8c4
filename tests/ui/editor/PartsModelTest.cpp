#include "ui/editor/PartsModel.h"

#include "support/Printing.h"
#include "ui/OpenSound.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

TEST(PartChip, SaysWhichProposalItIsAndWhatWasHeard)
{
    CutCandidate part;
    EXPECT_EQ(PartChip::title(part, 1), u"Option 2"_s);
    part.label = u"Knock"_s;
    EXPECT_EQ(PartChip::title(part, 1), u"Option 2 · Knock"_s);
    part.isWhole = true;
    EXPECT_EQ(PartChip::title(part, 3), u"Whole sound · Knock"_s);
    part.isBest = true; // goes before the whole
    EXPECT_EQ(PartChip::title(part, 0), u"Best match · Knock"_s);
    part.label.reset();
    EXPECT_EQ(PartChip::title(part, 0), u"Best match"_s);
}

namespace {

class PartsModelTest : public testing::Test {
protected:
    QVariant at(int row, PartsModel::Role role) const { return model.data(model.index(row), role); }
    QString marks() const
    {
        QString marks;
        for (int row = 0; row < model.count(); ++row)
            marks += at(row, PartsModel::MarkedRole).toBool() ? u'x' : u'-';
        return marks;
    }

    test::OpenSound open;
    PartsModel model{open.editor()};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

} // namespace

TEST_F(PartsModelTest, IsEmptyUntilPartsAreFound)
{
    EXPECT_EQ(model.count(), 0);
}

TEST_F(PartsModelTest, ShowsThePartsInTheirOrderAndTheChosenOne)
{
    open.finishWithThree();
    EXPECT_EQ(model.count(), 3);
    EXPECT_EQ(at(0, PartsModel::TitleRole), u"Best match · Slam"_s);
    EXPECT_EQ(at(1, PartsModel::TitleRole), u"Option 2"_s);
    EXPECT_EQ(at(2, PartsModel::TitleRole), u"Whole sound"_s);
    EXPECT_EQ(at(1, PartsModel::LengthRole), u"1.50s"_s);
    EXPECT_EQ(at(1, PartsModel::StartRole), 6.0);
    EXPECT_EQ(at(1, PartsModel::EndRole), 7.5);
    EXPECT_TRUE(at(0, PartsModel::BestRole).toBool());
    EXPECT_TRUE(at(2, PartsModel::WholeRole).toBool());
    EXPECT_EQ(marks(), u"x--"_s);
}

TEST_F(PartsModelTest, AClickChoosesOneAndControlAddsAndTakesAway)
{
    open.finishWithThree();
    model.choose(1, Qt::NoModifier);
    EXPECT_EQ(marks(), u"-x-"_s);
    EXPECT_EQ(open.editor().start(), 6);
    model.choose(0, Qt::ControlModifier);
    EXPECT_EQ(marks(), u"xx-"_s);
    model.choose(1, Qt::ControlModifier);
    EXPECT_EQ(marks(), u"x--"_s);
    model.choose(0, Qt::ControlModifier); // the last can't be taken away
    EXPECT_EQ(marks(), u"x--"_s);
    model.choose(7, Qt::NoModifier);
    EXPECT_EQ(marks(), u"x--"_s);
}

TEST_F(PartsModelTest, AMarkThatChangesKeepsTheRows)
{
    open.finishWithThree();
    int resets = 0;
    QObject::connect(&model, &PartsModel::modelReset, &model, [&resets] { ++resets; });
    open.editor().dragStart(3.2);
    EXPECT_EQ(marks(), u"---"_s);
    EXPECT_EQ(resets, 0);
}

TEST_F(PartsModelTest, AnotherSoundHasOtherParts)
{
    open.finishWithThree();
    open.editor().load({}, {});
    EXPECT_EQ(model.count(), 0);
}
