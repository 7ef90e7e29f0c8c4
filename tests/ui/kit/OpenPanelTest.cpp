#include "ui/kit/OpenPanel.h"

#include "support/Printing.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

QList<QFileDialog*> panels()
{
    QList<QFileDialog*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* panel = qobject_cast<QFileDialog*>(widget))
            found << panel;
    }
    return found;
}

class OpenPanelTest : public testing::Test {
protected:
    void SetUp() override
    {
        over.show();
        ASSERT_TRUE(QDir(home.path()).mkdir(u"Cuts"_s));
        for (const QString& name : {u"one.wav"_s, u"two.mp4"_s, u"notes.txt"_s}) {
            QFile file(home.filePath(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }

    QFileDialog* open(OpenPanel& panel)
    {
        panel.open(&over, home.path());
        const QList<QFileDialog*> all = panels();
        return all.size() == 1 ? all.first() : nullptr;
    }

    static void expectToBe(const QFileDialog* dialog, const QString& title, const QString& button, QFileDialog::FileMode mode)
    {
        ASSERT_TRUE(dialog);
        EXPECT_EQ(dialog->windowTitle(), title);
        EXPECT_EQ(dialog->labelText(QFileDialog::Accept), button);
        EXPECT_EQ(dialog->fileMode(), mode);
    }

    // As typed into the panel's own field, several in quotes.
    void choose(QFileDialog* dialog, const QString& names)
    {
        dialog->findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(names);
        QMetaObject::invokeMethod(dialog, "accept");
    }

    QTemporaryDir home;
    QWindow over;
    QStringList chosen;
    OpenPanel folder{OpenPanel::Wanted::folder, u"Choose Folder"_s, u"Save Here"_s,
                     [this](const QStringList& paths) { chosen << paths; }};
    OpenPanel sounds{OpenPanel::Wanted::sounds, u"Add Files"_s, u"Add"_s, [this](const QStringList& paths) { chosen << paths; }};
};

} // namespace

TEST_F(OpenPanelTest, LiesOverItsWindowWithItsOwnButton)
{
    QFileDialog* dialog = open(folder);
    ASSERT_NO_FATAL_FAILURE(expectToBe(dialog, u"Choose Folder"_s, u"Save Here"_s, QFileDialog::Directory));
    EXPECT_EQ(QFileInfo(dialog->directory().path()), QFileInfo(home.path()));
    EXPECT_EQ(dialog->windowHandle()->transientParent(), &over);
    EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
    folder.open(&over);
    EXPECT_EQ(panels().size(), 1) << "a second call brings the open one to the front";
}

TEST_F(OpenPanelTest, GivesTheFolderThatIsChosen)
{
    QFileDialog* dialog = open(folder);
    ASSERT_TRUE(dialog);
    choose(dialog, u"Cuts"_s);
    EXPECT_EQ(chosen, QStringList{home.filePath(u"Cuts"_s)});
}

TEST_F(OpenPanelTest, GivesSeveralSoundsAndVideos)
{
    QFileDialog* dialog = open(sounds);
    ASSERT_NO_FATAL_FAILURE(expectToBe(dialog, u"Add Files"_s, u"Add"_s, QFileDialog::ExistingFiles));
    choose(dialog, uR"("one.wav" "two.mp4")"_s);
    EXPECT_EQ(QSet(chosen.begin(), chosen.end()), QSet({home.filePath(u"one.wav"_s), home.filePath(u"two.mp4"_s)}));
}

TEST_F(OpenPanelTest, OffersSoundsAndVideosFirst)
{
    QFileDialog* dialog = open(sounds);
    ASSERT_TRUE(dialog);
    ASSERT_EQ(dialog->nameFilters().size(), 2);
    EXPECT_TRUE(dialog->selectedNameFilter().startsWith(u"Sounds and videos"_s));
    EXPECT_EQ(dialog->nameFilters().last(), u"All files (*)"_s);
}

TEST_F(OpenPanelTest, StartsWhereTheLastChoiceWasMade)
{
    QFileDialog* first = open(sounds);
    ASSERT_TRUE(first);
    choose(first, u"one.wav"_s);
    ASSERT_TRUE(QTest::qWaitFor([] { return panels().isEmpty(); }));
    sounds.open(&over);
    ASSERT_EQ(panels().size(), 1);
    EXPECT_EQ(QFileInfo(panels().first()->directory().path()), QFileInfo(home.path()));
}

TEST_F(OpenPanelTest, GivesNothingWhenItIsDismissed)
{
    QFileDialog* dialog = open(folder);
    ASSERT_TRUE(dialog);
    dialog->reject();
    EXPECT_TRUE(chosen.isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([] { return panels().isEmpty(); }));
    EXPECT_TRUE(open(folder));
}
