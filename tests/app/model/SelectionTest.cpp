#include "app/model/Selection.h"

#include "fakes/FakeClock.h"
#include "support/LibraryFolder.h"
#include "support/Printing.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// A library of five sounds, a to e, of which the newest is open.
class SelectionTest : public testing::Test {
protected:
    SelectionTest()
    {
        for (const QChar name : u"abcde"_s)
            folder.add(name);
        folder.write();
        library = std::make_unique<LibraryStore>(clock, workers, folder.path());
        selection = std::make_unique<Selection>(*library);
        selection->openNewest();
    }

    const QList<SoundItem>& sounds() const { return library->items(); }
    QString marked() const
    {
        QString text;
        for (const SoundItem& item : selection->items())
            text += item.name;
        return text;
    }
    QString openName() const { return selection->item() ? selection->item()->name : u"none"_s; }
    void click(int index, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        selection->click(sounds()[index], sounds(), modifiers);
    }
    // Lets go of sounds and deletes them, as a flow does.
    void remove(const QList<SoundItem>& items)
    {
        QSet<QUuid> ids;
        for (const SoundItem& item : items)
            ids.insert(item.id);
        selection->letGo(ids);
        library->deleteItems(items);
        selection->openNewest();
    }

    test::LibraryFolder folder;
    test::FakeClock clock;
    Workers workers;
    std::unique_ptr<LibraryStore> library;
    std::unique_ptr<Selection> selection;
};

} // namespace

TEST_F(SelectionTest, StartsWithTheNewestSound)
{
    EXPECT_EQ(openName(), u"a"_s);
    EXPECT_EQ(marked(), u"a"_s);
}

TEST_F(SelectionTest, AnEmptyLibraryHasNoneOpen)
{
    remove(sounds());
    EXPECT_FALSE(selection->id());
    EXPECT_EQ(selection->item(), nullptr);
    selection->selectAll({});
    EXPECT_FALSE(selection->id());
    selection->openNewest();
    EXPECT_FALSE(selection->id());
}

TEST_F(SelectionTest, OpeningTheOpenSoundTellsNobody)
{
    const QSignalSpy opened(selection.get(), &Selection::idChanged);
    const QSignalSpy marks(selection.get(), &Selection::multiChanged);
    selection->setID(selection->id());
    click(0);
    selection->openNewest();
    EXPECT_EQ(opened.count(), 0);
    EXPECT_EQ(marks.count(), 0);
    click(1);
    EXPECT_EQ(opened.count(), 1);
    EXPECT_EQ(marks.count(), 1);
}

TEST_F(SelectionTest, APlainClickMarksOneSound)
{
    selection->selectAll(sounds());
    EXPECT_EQ(marked(), u"abcde"_s);
    EXPECT_EQ(openName(), u"a"_s); // an existing selection isn't moved
    click(3);
    EXPECT_EQ(marked(), u"d"_s);
    EXPECT_EQ(openName(), u"d"_s);
}

TEST_F(SelectionTest, CommandClickAddsAndTakesAway)
{
    click(0);
    click(0, Qt::ControlModifier); // the last one left stays
    EXPECT_EQ(marked(), u"a"_s);
    click(2, Qt::ControlModifier);
    EXPECT_EQ(marked(), u"ac"_s);
    EXPECT_EQ(openName(), u"c"_s);
    click(2, Qt::ControlModifier); // the open one of two: the other opens
    EXPECT_EQ(marked(), u"a"_s);
    EXPECT_EQ(openName(), u"a"_s);
    click(3, Qt::ControlModifier);
    click(0, Qt::ControlModifier); // one that isn't open: nothing else opens
    EXPECT_EQ(marked(), u"d"_s);
    EXPECT_EQ(openName(), u"d"_s);
}

TEST_F(SelectionTest, TakingTheOpenSoundAwayOpensTheFirstThatIsShown)
{
    click(1);
    click(4, Qt::ControlModifier);
    click(2, Qt::ControlModifier);
    const QList<SoundItem> shown = sounds().sliced(2); // c, d, e: b is filtered out
    selection->click(shown[0], shown, Qt::ControlModifier);
    EXPECT_EQ(marked(), u"be"_s);
    EXPECT_EQ(openName(), u"e"_s);
    const QList<SoundItem> others = sounds().sliced(2, 2);
    selection->click(sounds()[4], others, Qt::ControlModifier);
    EXPECT_FALSE(selection->id()); // none of what is shown is marked
}

TEST_F(SelectionTest, ShiftClickMarksARangeFromAnAnchorThatStays)
{
    click(2);
    click(4, Qt::ShiftModifier);
    EXPECT_EQ(marked(), u"cde"_s);
    EXPECT_EQ(openName(), u"c"_s);
    click(0, Qt::ShiftModifier);
    EXPECT_EQ(marked(), u"abc"_s);
    EXPECT_EQ(openName(), u"c"_s);
}

TEST_F(SelectionTest, ShiftClickWithoutAnAnchorIsAPlainClick)
{
    selection->setID(std::nullopt);
    click(3, Qt::ShiftModifier);
    EXPECT_EQ(marked(), u"d"_s);
    EXPECT_EQ(openName(), u"d"_s);
    const QList<SoundItem> shown = sounds().first(2); // d isn't shown
    selection->click(shown[1], shown, Qt::ShiftModifier);
    EXPECT_EQ(marked(), u"b"_s);
    selection->click(sounds()[4], shown, Qt::ShiftModifier); // nor is e
    EXPECT_EQ(marked(), u"e"_s);
}

TEST_F(SelectionTest, CommandGoesBeforeShift)
{
    click(0);
    click(4, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(marked(), u"ae"_s);
    EXPECT_EQ(openName(), u"e"_s);
}

TEST_F(SelectionTest, ASoundThatIsMarkedAlreadyLeavesTheMarksAlone)
{
    selection->selectAll(sounds());
    selection->setID(sounds()[2].id);
    EXPECT_EQ(marked(), u"abcde"_s);
    selection->setID(std::nullopt);
    EXPECT_EQ(marked(), QString());
    selection->selectAll(sounds().sliced(1));
    EXPECT_EQ(openName(), u"b"_s);
}

TEST_F(SelectionTest, DeletingTheOpenSoundOpensTheNewestThatIsLeft)
{
    selection->selectAll(sounds());
    remove(sounds().first(2));
    EXPECT_EQ(openName(), u"c"_s);
    EXPECT_EQ(marked(), u"c"_s);
}

TEST_F(SelectionTest, DeletingOthersLeavesTheOpenSoundAndTheOtherMarks)
{
    const QSignalSpy opened(selection.get(), &Selection::idChanged);
    selection->selectAll(sounds());
    remove(sounds().sliced(1, 2));
    EXPECT_EQ(openName(), u"a"_s);
    EXPECT_EQ(marked(), u"ade"_s);
    EXPECT_EQ(opened.count(), 0);
}
