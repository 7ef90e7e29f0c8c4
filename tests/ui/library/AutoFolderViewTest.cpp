#include "ui/library/AutoFolderView.h"

#include "fakes/FakeClock.h"
#include "support/Await.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLocale>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class AutoFolderViewTest : public testing::Test {
protected:
    AutoFolderViewTest() { QDir().mkpath(folder); }

    int sync(const QStringList& names)
    {
        QList<AutoFolder::Sound> sounds;
        for (const QString& name : names)
            sounds.append({QUuid::createUuid(), name, {}, 1});
        return test::await(autoFolder.sync(sounds));
    }

    // What is told under the folder: a failure, the copying, how it stands.
    QString told() const { return view.problem() + u'|' + view.copyingText() + u'|' + view.standText(); }

    static QFileDialog* panel()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* dialog = qobject_cast<QFileDialog*>(widget))
                return dialog;
        }
        return nullptr;
    }

    QTemporaryDir base;
    QString folder = base.filePath(u"Movies/Tonequill Sounds"_s);
    test::FakeClock clock;
    Workers workers;
    Defaults defaults{base.filePath(u"tonequill.ini"_s)};
    std::function<void(const QString& name)> onCopy = [](const QString&) {};
    AutoFolder autoFolder{defaults, clock, workers, [this](const AutoFolder::Sound& sound, const QString& path, const Progress&) {
                              onCopy(sound.name);
                              test::writeBytes(path, "sound");
                          }};
    AutoFolderView view{autoFolder};
};

} // namespace

TEST_F(AutoFolderViewTest, WithoutAFolderThereIsOnlyOneToChoose)
{
    EXPECT_FALSE(view.hasFolder());
    EXPECT_FALSE(view.isOn());
    EXPECT_EQ(view.folderText(), u"No folder chosen"_s);
    EXPECT_EQ(view.chooserText(), u"Choose Folder…"_s);
    EXPECT_EQ(told(), u"||"_s);
    EXPECT_EQ(view.checkedText(), QString());
}

TEST_F(AutoFolderViewTest, AChosenFolderIsShownByItsName)
{
    const QSignalSpy changes(&view, &AutoFolderView::changed);
    autoFolder.chooseFolder(folder);
    EXPECT_GT(changes.count(), 0);
    EXPECT_TRUE(view.hasFolder());
    EXPECT_EQ(view.folderText(), u"Tonequill Sounds"_s);
    EXPECT_EQ(view.chooserText(), u"Change…"_s);
    EXPECT_EQ(told(), u"||0 sounds in the folder"_s);
    view.setOn(true);
    EXPECT_TRUE(autoFolder.enabled());
    EXPECT_TRUE(view.isOn());
}

TEST_F(AutoFolderViewTest, TellsHowFarTheCopyingIs)
{
    autoFolder.chooseFolder(folder);
    view.setOn(true);
    QStringList seen;
    QList<double> progress;
    QObject::connect(&view, &AutoFolderView::changed, [&] {
        if (view.copyingText().isEmpty() || (!seen.isEmpty() && seen.last() == told()))
            return;
        seen << told();
        progress << view.progress();
    });
    EXPECT_EQ(sync({u"Dog"_s, u"Cat"_s, u"Rain"_s}), 3);
    EXPECT_EQ(seen.join(u' '), u"|Copying 1 of 3…| |Copying 2 of 3…| |Copying 3 of 3…|"_s);
    EXPECT_EQ(progress.first(), 0);
    EXPECT_NEAR(progress.last(), 2 / 3.0, 1e-9);
    EXPECT_EQ(told(), u"||3 sounds in the folder"_s);
    EXPECT_EQ(view.progress(), 0);
}

TEST_F(AutoFolderViewTest, AnotherFolderIsToldAtOnceAndNothingOfTheRunBefore)
{
    const QString other = base.filePath(u"Movies/Other"_s);
    QDir().mkpath(other);
    autoFolder.chooseFolder(folder);
    view.setOn(true);
    QStringList seen;
    const auto look = [&] {
        if (view.folderText() == u"Other"_s)
            seen << told();
        else if (!view.copyingText().isEmpty())
            autoFolder.chooseFolder(other);
    };
    QObject::connect(&view, &AutoFolderView::changed, &view, look, Qt::DirectConnection);
    EXPECT_EQ(sync({u"Dog"_s, u"Cat"_s, u"Rain"_s}), 0);
    seen.removeDuplicates();
    EXPECT_EQ(seen.join(u' '), u"||0 sounds in the folder"_s);
    EXPECT_TRUE(view.isOn());
}

TEST_F(AutoFolderViewTest, ARunWithNothingToCopyShowsNone)
{
    autoFolder.chooseFolder(folder);
    view.setOn(true);
    bool wasCopying = false;
    QObject::connect(&view, &AutoFolderView::changed, [&] { wasCopying = wasCopying || !view.copyingText().isEmpty(); });
    EXPECT_EQ(sync({}), 0);
    EXPECT_FALSE(wasCopying);
    EXPECT_NE(view.checkedText(), QString());
}

TEST_F(AutoFolderViewTest, AFailureStandsInTheCountsPlaceUntilARunIsWhole)
{
    autoFolder.chooseFolder(folder);
    view.setOn(true);
    QDir(folder).removeRecursively();
    sync({u"Dog"_s});
    EXPECT_EQ(told(), u"Tonequill can't open that folder any more. Choose it again.||"_s);
    QDir().mkpath(folder);
    autoFolder.chooseFolder(folder);
    EXPECT_EQ(sync({u"Dog"_s}), 1);
    EXPECT_EQ(told(), u"||1 sounds in the folder"_s);
}

TEST_F(AutoFolderViewTest, TellsWhenItWasChecked)
{
    const QDateTime now = QDateTime::currentDateTime();
    const qint64 since2001 = QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC).secsTo(now);
    clock.advance(std::chrono::seconds(since2001 - qint64(clock.secondsSince2001())));
    autoFolder.record({}, {});
    EXPECT_EQ(view.checkedText(), u"Checked "_s + QLocale().toString(now.time(), QLocale::ShortFormat));
    clock.advance(std::chrono::hours(-72));
    autoFolder.record({}, {});
    EXPECT_EQ(view.checkedText(), u"Checked "_s + QLocale().toString(now.addDays(-3).date(), QLocale::ShortFormat));
}

TEST_F(AutoFolderViewTest, AsksForAFolderInItsOwnWords)
{
    QQuickWindow window;
    window.show();
    view.chooseFolder(&window);
    QFileDialog* dialog = panel();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->windowTitle(), u"Choose where Tonequill keeps a copy of your sounds, for example a folder in Movies."_s);
    EXPECT_EQ(dialog->labelText(QFileDialog::Accept), u"Use This Folder"_s);
    EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(dialog->testOption(QFileDialog::ShowDirsOnly));
    dialog->setDirectory(folder);
    dialog->selectFile(folder);
    QMetaObject::invokeMethod(dialog, "accept");
    EXPECT_TRUE(QTest::qWaitFor([this] { return view.hasFolder(); }, 5000));
    EXPECT_EQ(view.folderText(), u"Tonequill Sounds"_s);
}
