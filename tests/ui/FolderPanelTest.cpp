#include "ui/FolderPanel.h"

#include "support/Printing.h"

#include <QApplication>
#include <QFileDialog>
#include <QPushButton>
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

class FolderPanelTest : public testing::Test {
protected:
    void SetUp() override
    {
        over.show();
        panel.open(&over, folder.path());
        ASSERT_EQ(panels().size(), 1);
        dialog = panels().first();
    }

    QTemporaryDir folder;
    QWindow over;
    QStringList chosen;
    FolderPanel panel{u"Choose Folder"_s, u"Save Here"_s, [this](const QString& path) { chosen << path; }};
    QFileDialog* dialog = nullptr;
};

} // namespace

TEST_F(FolderPanelTest, LiesOverItsWindowWithItsOwnButton)
{
    EXPECT_EQ(dialog->windowTitle(), u"Choose Folder"_s);
    EXPECT_EQ(dialog->labelText(QFileDialog::Accept), u"Save Here"_s);
    EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
    EXPECT_EQ(QFileInfo(dialog->directory().path()), QFileInfo(folder.path()));
    EXPECT_EQ(dialog->windowHandle()->transientParent(), &over);
    EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
    panel.open(&over, {});
    EXPECT_EQ(panels().size(), 1) << "a second call brings the open one to the front";
}

TEST_F(FolderPanelTest, GivesTheFolderThatIsChosen)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"Cuts"_s));
    dialog->selectFile(folder.filePath(u"Cuts"_s));
    QMetaObject::invokeMethod(dialog, "accept");
    EXPECT_EQ(chosen, QStringList{folder.filePath(u"Cuts"_s)});
}

TEST_F(FolderPanelTest, GivesNothingWhenItIsDismissed)
{
    dialog->reject();
    EXPECT_TRUE(chosen.isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([] { return panels().isEmpty(); }));
    panel.open(&over, folder.path());
    EXPECT_EQ(panels().size(), 1);
}
