#include "ui/library/LibraryListModel.h"
#include "app/library/ImportFlows.h"

#include "support/Await.h"
#include "support/LibraryFolder.h"
#include "support/Printing.h"
#include "support/Program.h"

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

SoundItem soundWith(double duration, const QStringList& tags)
{
    SoundItem item;
    item.duration = duration;
    item.tags = tags;
    return item;
}

class LibraryListModelTest : public testing::Test, public test::Machine {
protected:
    void open(int count = 5)
    {
        for (int i = 0; i < count; ++i)
            folder.add(QString(QChar(u'a' + i)));
        start();
    }

    // The sounds have these names: letters of their own, and words to find.
    void openNamed(const QStringList& names)
    {
        for (const QString& name : names)
            folder.add(name);
        start();
    }

    void start()
    {
        folder.write();
        app = program(folder.path());
        model = std::make_unique<LibraryListModel>(*app);
        tester = std::make_unique<QAbstractItemModelTester>(model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }

    // The names in order; selected rows are in capitals.
    QString rows() const
    {
        QString text;
        for (int row = 0; row < model->rowCount(); ++row) {
            const QModelIndex index = model->index(row);
            const QString name = index.data(LibraryListModel::NameRole).toString();
            text += index.data(LibraryListModel::IsSelectedRole).toBool() ? name.toUpper() : name;
        }
        return text;
    }
    QVariant at(int row, LibraryListModel::Role role) const { return model->index(row).data(role); }

    test::LibraryFolder folder;
    std::unique_ptr<AppModel> app;
    std::unique_ptr<LibraryListModel> model;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

constexpr int kPlain = Qt::NoModifier;
constexpr int kShift = Qt::ShiftModifier;
constexpr int kControl = Qt::ControlModifier;

} // namespace

TEST(LibraryRow, TellsTheDurationAndTheFirstTwoTagsThatSaySomething)
{
    EXPECT_EQ(LibraryRow::subtitle(soundWith(6.98, {u"door"_s, u"slam"_s, u"heavy"_s})), u"7.0 s · door, slam"_s);
    EXPECT_EQ(LibraryRow::subtitle(soundWith(1.44, {})), u"1.4 s"_s);
    EXPECT_EQ(LibraryRow::subtitle(soundWith(10, {u"free"_s, u"pack"_s, u"cc0"_s, u"ai"_s, u"sfx"_s, u"music"_s})), u"10.0 s"_s);
    EXPECT_EQ(LibraryRow::subtitle(soundWith(2.9, {u"free"_s, u"thunder"_s})), u"2.9 s · thunder"_s);
}

TEST(LibraryRow, TellsHowFarAFileIs)
{
    EXPECT_EQ(LibraryRow::step(0, true), u"Adding…"_s);
    EXPECT_EQ(LibraryRow::step(0, false), u"Waiting…"_s);
    EXPECT_EQ(LibraryRow::step(0.428, true), u"Adding… 42 %"_s);
}

TEST_F(LibraryListModelTest, ShowsTheSoundsOfTheLibrary)
{
    open(3);
    EXPECT_EQ(rows(), u"Abc"_s);
    EXPECT_EQ(model->soundCount(), 3);
    EXPECT_EQ(model->currentRow(), 0);
    EXPECT_EQ(at(1, LibraryListModel::LevelsRole).value<Levels>().values.size(), 48);
    EXPECT_EQ(at(1, LibraryListModel::SubtitleRole).toString(), u"1.4 s"_s);
    EXPECT_FALSE(at(1, LibraryListModel::IsIncomingRole).toBool());
}

TEST_F(LibraryListModelTest, TellsTheCreditOfASoundThatNeedsIt)
{
    SoundItem& sound = folder.add(u"Rain"_s);
    sound.license = u"CC BY"_s;
    sound.credit = u"Mona"_s;
    folder.add(u"Wind"_s).license = u"CC0"_s;
    open(0);
    EXPECT_EQ(at(0, LibraryListModel::CreditRole).toString(), u"“Rain” by Mona (CC BY)"_s);
    EXPECT_EQ(at(1, LibraryListModel::CreditRole).toString(), QString());
}

TEST_F(LibraryListModelTest, ClicksSelectAsTheModelSays)
{
    open();
    model->click(2, kPlain);
    EXPECT_EQ(rows(), u"abCde"_s);
    model->click(4, kControl);
    EXPECT_EQ(rows(), u"abCdE"_s);
    model->click(1, kPlain);
    model->click(3, kShift);
    EXPECT_EQ(rows(), u"aBCDe"_s);
    model->click(99, kPlain);
    EXPECT_EQ(rows(), u"aBCDe"_s);
}

TEST_F(LibraryListModelTest, KeysMoveTheSelectionAndStopAtTheEnds)
{
    open();
    model->moveTo(model->currentRow() + 1, kPlain);
    EXPECT_EQ(rows(), u"aBcde"_s);
    model->moveTo(model->currentRow() - 7, kPlain);
    EXPECT_EQ(rows(), u"Abcde"_s);
    model->moveTo(1000, kPlain);
    EXPECT_EQ(rows(), u"abcdE"_s);
    EXPECT_EQ(app->selectedItem()->name, u"e"_s);
}

TEST_F(LibraryListModelTest, DeletesWhatIsSelected)
{
    open();
    const QSignalSpy counts(model.get(), &LibraryListModel::countChanged);
    model->selectAll();
    EXPECT_EQ(rows(), u"ABCDE"_s);
    model->click(0, kPlain);
    model->click(2, kShift);
    model->deleteSelected();
    EXPECT_EQ(rows(), u"De"_s);
    EXPECT_EQ(model->soundCount(), 2);
    EXPECT_GT(counts.count(), 0);
}

TEST_F(LibraryListModelTest, ARowsMenuMeansAllThatAreSelectedOnlyIfTheRowIsAmongThem)
{
    open();
    model->click(0, kPlain);
    model->click(2, kShift);
    EXPECT_EQ(model->deleteLabel(1), u"Delete 3 Sounds"_s);
    EXPECT_EQ(model->deleteLabel(4), u"Delete"_s);
    model->deleteFrom(4);
    EXPECT_EQ(rows(), u"ABCd"_s);
    model->deleteFrom(1);
    EXPECT_EQ(rows(), u"D"_s);
    EXPECT_EQ(model->deleteLabel(0), u"Delete"_s);
    model->deleteFrom(0);
    EXPECT_TRUE(model->isEmpty());
    EXPECT_EQ(model->currentRow(), -1);
}

TEST_F(LibraryListModelTest, FollowsChangesOfTheLibrary)
{
    open(3);
    app->library().rename(app->library().items()[1], u"z"_s);
    EXPECT_EQ(rows(), u"Azc"_s);
    test::await(app->library().importFile(test::writeTone(folder.filePath(u"n.wav"_s)), SoundOrigin::imported));
    EXPECT_EQ(rows(), u"nAzc"_s);
    EXPECT_EQ(model->currentRow(), 1);
}

TEST_F(LibraryListModelTest, FilesThatComeInStandInFrontUntilTheyAreThere)
{
    open(2);
    const QStringList files{test::writeTone(folder.filePath(u"x.wav"_s)), test::writeTone(folder.filePath(u"y.wav"_s))};
    auto flow = importURLs(*app, files);
    EXPECT_EQ(rows(), u"xyAb"_s);
    EXPECT_TRUE(at(0, LibraryListModel::IsIncomingRole).toBool());
    EXPECT_TRUE(at(0, LibraryListModel::SubtitleRole).toString().startsWith(u"Adding…"_s));
    EXPECT_EQ(at(1, LibraryListModel::SubtitleRole).toString(), u"Waiting…"_s);
    EXPECT_EQ(model->soundCount(), 2);
    EXPECT_EQ(model->currentRow(), 2);
    model->click(0, kPlain); // not yet a sound
    EXPECT_EQ(rows(), u"xyAb"_s);
    EXPECT_EQ(model->deleteLabel(0), u"Delete"_s);
    model->moveTo(0, kPlain);
    EXPECT_EQ(model->currentRow(), 2);
    test::await(std::move(flow));
    EXPECT_EQ(rows(), u"Yxab"_s);
    EXPECT_EQ(model->currentRow(), 0);
}

TEST_F(LibraryListModelTest, AFileThatFailsGoesAgain)
{
    open(1);
    test::writeBytes(folder.filePath(u"words.txt"_s), "words");
    test::await(importURLs(*app, {folder.filePath(u"words.txt"_s)}));
    EXPECT_EQ(rows(), u"A"_s);
    EXPECT_TRUE(app->notices().isError());
}

TEST_F(LibraryListModelTest, TheSearchCountsTheLibrarysSoundsAllTheSame)
{
    openNamed({u"a dog"_s, u"b cat"_s, u"c dog"_s});
    const QSignalSpy queries(model.get(), &LibraryListModel::queryChanged);
    model->setQuery(u"cat"_s);
    EXPECT_EQ(queries.count(), 1);
    EXPECT_EQ(model->query(), u"cat"_s);
    EXPECT_EQ(rows(), u"b cat"_s);
    EXPECT_EQ(model->soundCount(), 3);
    EXPECT_EQ(model->currentRow(), -1);
    model->enter();
    EXPECT_EQ(rows(), u"B CAT"_s);
    EXPECT_EQ(model->currentRow(), 0);
}

TEST_F(LibraryListModelTest, WhatIsSelectedButNotShownIsSafe)
{
    openNamed({u"a dog"_s, u"b cat"_s, u"c dog"_s, u"d cat"_s});
    model->selectAll();
    model->setQuery(u"dog"_s);
    EXPECT_EQ(model->deleteLabel(0), u"Delete 2 Sounds"_s);
    EXPECT_EQ(model->meantBy(1).size(), 2);
    model->deleteSelected();
    EXPECT_EQ(model->rowCount(), 0);
    model->setQuery({});
    EXPECT_EQ(rows().toLower(), u"b catd cat"_s);
}

TEST_F(LibraryListModelTest, SaysThatNothingWasFound)
{
    openNamed({u"a dog"_s});
    EXPECT_EQ(model->nothingFound(), QString());
    model->setQuery(u"xylophone"_s);
    EXPECT_EQ(model->nothingFound(), u"No Results for “xylophone”"_s);
    EXPECT_FALSE(model->isEmpty());
    model->selectAll();
    model->enter();
    model->moveTo(0, kPlain);
    app->library().rename(app->library().items()[0], u"xylophone"_s);
    EXPECT_EQ(model->nothingFound(), QString());
    deleteItems(*app, app->library().items());
    EXPECT_EQ(model->nothingFound(), u"No Results for “xylophone”"_s);
    EXPECT_TRUE(model->isEmpty());
}

TEST_F(LibraryListModelTest, FilesThatComeInAreShownWhateverIsSearched)
{
    openNamed({u"a dog"_s});
    model->setQuery(u"cat"_s);
    auto flow = importURLs(*app, {test::writeTone(folder.filePath(u"cat.wav"_s)), test::writeTone(folder.filePath(u"x.wav"_s))});
    EXPECT_EQ(rows(), u"catx"_s);
    EXPECT_EQ(model->nothingFound(), QString());
    test::await(std::move(flow));
    EXPECT_EQ(rows(), u"cat"_s);
}

TEST_F(LibraryListModelTest, AQueryThatFindsNothingShowsWhatIsRelatedToIt)
{
    openNamed({u"a Scream"_s, u"b rain"_s, u"c Creepy Door"_s});
    languageModel.answer = {{{u"meaning"_s, u"ghosts"_s}, {u"tags"_s, QJsonArray{{u"creepy"_s, u"scream"_s}}}}};
    model->setQuery(u"spukhaft"_s);
    EXPECT_EQ(model->nothingFound(), u"No Results for “spukhaft”"_s);
    clock.advance(std::chrono::milliseconds(800));
    QCoreApplication::processEvents();
    EXPECT_EQ(model->relatedHeading(), u"Related to “spukhaft”: creepy, scream"_s);
    EXPECT_EQ(model->nothingFound(), QString());
    EXPECT_EQ(rows(), u"A SCREAMc Creepy Door"_s);
    app->library().rename(app->library().items()[1], u"b spukhaft"_s); // now there is something
    EXPECT_EQ(model->relatedHeading(), QString());
    deleteItems(*app, app->library().items()); // all of it
    EXPECT_EQ(model->relatedHeading(), u"Related to “spukhaft”: creepy, scream"_s);
    EXPECT_EQ(model->nothingFound(), u"No Results for “spukhaft”"_s);
    EXPECT_EQ(model->rowCount(), 0);
}

TEST_F(LibraryListModelTest, ASoundThatIsBeingNamedTellsSo)
{
    folder.add(u"IMG_0001"_s).tags = {u"door"_s};
    folder.add(u"IMG_0002"_s);
    open(1);
    EXPECT_EQ(model->smartNameLabel(0), u"Smart Name"_s);
    model->selectAll();
    EXPECT_EQ(model->smartNameLabel(0), u"Smart Names"_s);
    model->smartNameFrom(0);
    EXPECT_TRUE(at(0, LibraryListModel::IsBeingNamedRole).toBool());
    EXPECT_FALSE(at(1, LibraryListModel::IsBeingNamedRole).toBool()); // its turn will come
    EXPECT_EQ(at(0, LibraryListModel::SubtitleRole).toString(), u"Listening…"_s);
    QSignalSpy changes(model.get(), &LibraryListModel::dataChanged);
    work.hearings.back().answer({{u"dog"_s, 0.5}});
    ASSERT_TRUE(QTest::qWaitFor([this] { return at(1, LibraryListModel::IsBeingNamedRole).toBool(); }, 5000));
    EXPECT_FALSE(changes.isEmpty());
    EXPECT_EQ(at(0, LibraryListModel::NameRole).toString(), u"Dog"_s);
    EXPECT_EQ(at(0, LibraryListModel::SubtitleRole).toString(), u"1.4 s · door, dog"_s);
    EXPECT_FALSE(at(0, LibraryListModel::IsBeingNamedRole).toBool());
}

TEST_F(LibraryListModelTest, WhatNamesASoundStopsNamingIt)
{
    folder.add(u"IMG_0001"_s);
    folder.add(u"IMG_0002"_s);
    open(1);
    model->selectAll();
    model->smartNameFrom(0);
    EXPECT_EQ(model->smartNameLabel(1), u"Stop Naming"_s);
    model->smartNameFrom(1);
    work.hearings.back().answer({{u"dog"_s, 0.5}});
    ASSERT_TRUE(QTest::qWaitFor([this] { return !app->isWorking(); }, 5000));
    EXPECT_EQ(at(0, LibraryListModel::NameRole).toString(), u"IMG_0001"_s);
    EXPECT_EQ(model->smartNameLabel(0), u"Smart Names"_s);
}

TEST_F(LibraryListModelTest, OfANameOfMegabytesOnlyTheBeginningIsShown)
{
    openNamed({QString(3 << 20, u'x'), u"Door"_s});
    EXPECT_EQ(at(0, LibraryListModel::NameRole).toString().size(), 32'768);
    EXPECT_EQ(at(1, LibraryListModel::NameRole).toString(), u"Door"_s);
    app->say(app->library().items().first().name);
    EXPECT_EQ(app->notices().text().size(), 32'768);
}
