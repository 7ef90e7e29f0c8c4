#include "ui/settings/SettingsView.h"
#include "app/library/ImportFlows.h"

#include "support/Environment.h"
#include "support/LibraryFolder.h"
#include "support/Printing.h"
#include "support/Program.h"

#include <QApplication>
#include <QFileDialog>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QStandardPaths>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// A user with a home of their own, and the settings of a program with three sounds.
class SettingsViewTest : public testing::Test, public test::Machine {
protected:
    SettingsViewTest()
    {
        QDir().mkpath(home(u"Desktop"_s));
        for (const auto* name : {"Door", "Bell", "Rain"})
            folder.add(QString::fromLatin1(name));
        folder.write();
        app = program(folder.path());
        view = std::make_unique<SettingsView>(*app, themes);
    }

    QString home(const QString& name) const { return folder.filePath(u"home/"_s + name); }
    Defaults written() const { return Defaults(defaults.path()); } // as the next start finds it

    test::LibraryFolder folder;
    test::Environment itsHome{"HOME", QFile::encodeName(home({}))};
    test::Environment noConfig{"XDG_CONFIG_HOME", QFile::encodeName(home(u".config"_s))};
    ThemeStore themes{defaults};
    std::unique_ptr<AppModel> app;
    std::unique_ptr<SettingsView> view;
};

} // namespace

TEST_F(SettingsViewTest, AFirstStartHasTheDefaults)
{
    EXPECT_EQ(view->themes()->current(), 0);
    EXPECT_EQ(view->appearances(), (QStringList{u"System"_s, u"Light"_s, u"Dark"_s}));
    EXPECT_EQ(view->appearance(), 0);
    EXPECT_TRUE(view->shortOnlyByDefault());
    EXPECT_FALSE(view->hideCreditSounds());
    EXPECT_TRUE(view->alsoFinalCut());
    EXPECT_EQ(view->saveFolderName(), u"Desktop"_s);
}

TEST_F(SettingsViewTest, TheAppearanceTakesEffectAtOnceAndIsKept)
{
    const QSignalSpy changes(view.get(), &SettingsView::appearanceChanged);
    view->setAppearance(2);
    EXPECT_EQ(view->appearance(), 2);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_TRUE(themes.theme().isDark());
    EXPECT_EQ(written().text(u"appearance"_s), u"dark"_s);
    view->setAppearance(3);
    view->setAppearance(-1);
    EXPECT_EQ(view->appearance(), 2);
}

TEST_F(SettingsViewTest, EachSwitchIsKept)
{
    const QSignalSpy changes(view.get(), &SettingsView::changed);
    view->setShortOnlyByDefault(false);
    view->setHideCreditSounds(true);
    view->setAlsoFinalCut(false);
    EXPECT_EQ(changes.count(), 3);
    EXPECT_FALSE(view->shortOnlyByDefault());
    EXPECT_TRUE(view->hideCreditSounds());
    EXPECT_FALSE(view->alsoFinalCut());
    EXPECT_EQ(written().boolean(u"shortOnlyByDefault"_s), false);
    EXPECT_EQ(written().boolean(u"hideCreditSounds"_s), true);
    EXPECT_EQ(written().boolean(u"alsoFinalCut"_s), false);
}

TEST_F(SettingsViewTest, FollowsWhatIsSetElsewhere)
{
    const QSignalSpy changes(view.get(), &SettingsView::changed);
    app->settings().setHideCreditSounds(true);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_TRUE(view->hideCreditSounds());
}

TEST_F(SettingsViewTest, SavesToTheDownloadsAndBackToTheDesktop)
{
    EXPECT_FALSE(QFile::exists(home(u"Downloads"_s)));
    view->saveToDownloads();
    EXPECT_EQ(view->saveTo(), SettingsView::Downloads);
    EXPECT_EQ(view->saveFolderName(), u"Downloads"_s);
    EXPECT_EQ(app->settings().saveFolder(), home(u"Downloads"_s));
    EXPECT_EQ(written().text(u"saveFolderPath"_s), home(u"Downloads"_s));

    view->saveToDesktop();
    EXPECT_EQ(view->saveTo(), SettingsView::Desktop);
    EXPECT_EQ(app->settings().saveFolder(), home(u"Desktop"_s));
    EXPECT_EQ(written().text(u"saveFolderPath"_s), std::nullopt);
}

TEST_F(SettingsViewTest, ShowsAChosenFolderByItsName)
{
    QDir().mkpath(home(u"Cuts & مؤثرات"_s));
    app->settings().setSaveFolderPath(home(u"Cuts & مؤثرات"_s));
    EXPECT_EQ(view->saveTo(), SettingsView::OtherFolder);
    EXPECT_EQ(view->saveFolderName(), u"Cuts & مؤثرات"_s);
    app->settings().setSaveFolderPath(home(u"Desktop/"_s)); // chosen by hand
    EXPECT_EQ(view->saveTo(), SettingsView::Desktop);
    app->settings().setSaveFolderPath(u"/"_s);
    EXPECT_EQ(view->saveFolderName(), u"/"_s);
}

TEST_F(SettingsViewTest, AFolderThatIsGoneMeansTheDesktopUntilItIsBack)
{
    QDir().mkpath(home(u"Cuts"_s));
    app->settings().setSaveFolderPath(home(u"Cuts"_s));
    QDir().rmdir(home(u"Cuts"_s));
    const QSignalSpy changes(view.get(), &SettingsView::changed);
    view->refresh();
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(view->saveFolderName(), u"Desktop"_s);
    EXPECT_EQ(app->settings().saveFolderPath(), home(u"Cuts"_s)) << "the choice stays";
    QDir().mkpath(home(u"Cuts"_s));
    EXPECT_EQ(view->saveFolderName(), u"Cuts"_s);
}

TEST_F(SettingsViewTest, LooksForFinalCutWhenTheSettingsAreShown)
{
    EXPECT_TRUE(view->hasFinalCut());
    apps.isThere = false;
    view->refresh();
    EXPECT_FALSE(view->hasFinalCut());
    EXPECT_TRUE(view->alsoFinalCut()) << "the setting is the user's";
}

TEST_F(SettingsViewTest, TheCountsFollowTheLibraryAndTheCatalogue)
{
    EXPECT_EQ(view->soundCounts(), u"3 saved, 0 searchable"_s);
    const QSignalSpy changes(view.get(), &SettingsView::soundCountsChanged);
    deleteItems(*app, {app->library().items().first()});
    EXPECT_EQ(view->soundCounts(), u"2 saved, 0 searchable"_s);
    app->setSearchableCount(302'114);
    app->setSearchableCount(302'114);
    EXPECT_EQ(view->soundCounts(), u"2 saved, 302,114 searchable"_s);
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(SettingsViewTest, AFolderIsChosenInThePanel)
{
    QQuickWindow window;
    view->chooseSaveFolder(&window);
    QFileDialog* panel = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets())
        panel = panel ? panel : qobject_cast<QFileDialog*>(widget);
    ASSERT_TRUE(panel);
    EXPECT_EQ(panel->windowTitle(), u"Choose Folder"_s);
    EXPECT_EQ(panel->labelText(QFileDialog::Accept), u"Save Here"_s);
    EXPECT_EQ(panel->directory().absolutePath(), home(u"Desktop"_s));
    QDir().mkpath(home(u"Cuts"_s));
    Q_EMIT panel->filesSelected({home(u"Cuts"_s)});
    EXPECT_EQ(app->settings().saveFolder(), home(u"Cuts"_s));
}

TEST_F(SettingsViewTest, ShowsTheLibrarysFolder)
{
    view->showLibrary();
    EXPECT_EQ(apps.shownFolders, QStringList{folder.path()});
}
