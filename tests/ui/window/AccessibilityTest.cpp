#include "app/library/ImportFlows.h"
#include "fakes/FakeAudioPlayer.h"
#include "support/Printing.h"
#include "ui/OpenSound.h"
#include "ui/window/MainWindow.h"

#include <QAccessible>
#include <QMetaEnum>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSet>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// A screen reader and the Tab key in the real window.
class AccessibilityTest : public testing::Test {
protected:
    AccessibilityTest() { QAccessible::setActive(true); }

    void openEmpty()
    {
        program.view.reset();
        deleteItems(*program.app, program.app->library().items());
        show();
    }

    // A sound that has been heard and has parts; its tags, name and effects can be changed.
    void openFull()
    {
        program.work.openings.back().answer(std::make_shared<test::FakeAudioPlayer>(10));
        program.finishWithThree();
        program.view.reset();
        show();
    }

    void show()
    {
        main = std::make_unique<MainWindow>(*program.app, program.defaults);
        window = main->window();
        window->requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        settle();
    }

    // Waits for what comes in on demand or with a transition: until two pictures of the
    // window are the same, and every popup is all there or gone.
    void settle()
    {
        QImage before;
        const auto rests = [this, &before] {
            const QImage now = window->grabWindow();
            const bool isStill = now == before;
            before = now;
            const QList<QObject*> over = popups();
            return isStill && std::all_of(over.begin(), over.end(), [](const QObject* popup) {
                       return popup->property("opened") == popup->property("visible");
                   });
        };
        EXPECT_TRUE(QTest::qWaitFor(rests, 10000)) << "the window doesn't come to rest";
    }

    QList<QObject*> popups() const
    {
        QList<QObject*> found;
        for (const QQuickItem* one : itemsUnder(window->contentItem())) {
            if (one->inherits("QQuickPopupItem") && one->parent() && one->parent()->inherits("QQuickPopup"))
                found << one->parent();
        }
        return found;
    }

    static QList<QQuickItem*> itemsUnder(QQuickItem* item)
    {
        QList<QQuickItem*> items{item};
        for (QQuickItem* child : item->childItems())
            items += itemsUnder(child);
        return items;
    }

    QQuickItem* item(const QString& objectName) const
    {
        for (QQuickItem* one : itemsUnder(window->contentItem())) {
            if (one->objectName() == objectName)
                return one;
        }
        return nullptr;
    }

    void click(const QString& objectName, Qt::MouseButton button = Qt::LeftButton)
    {
        const QQuickItem* target = item(objectName);
        ASSERT_TRUE(target) << objectName.toStdString();
        const QPointF middle(target->width() / 2, std::min(target->height() / 2, 20.0));
        QTest::mouseClick(window, button, {}, target->mapToScene(middle).toPoint());
        settle();
    }

    // "Button “Add Files” (ActionButton in Toolbar)"
    static QString told(const QQuickItem* item)
    {
        static const QMetaEnum roles = QMetaEnum::fromType<QAccessible::Role>();
        const auto type = [](const QObject* object) {
            return QString::fromLatin1(object->metaObject()->className()).section(u"_QML"_s, 0, 0);
        };
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(item));
        const QQuickItem* around = item->parentItem();
        while (around && type(around).startsWith(u"QQuick"_s))
            around = around->parentItem();
        const char* role = face ? roles.valueToKey(face->role()) : nullptr;
        return u"%1 “%2” (%3 in %4)"_s.arg(
            QString::fromLatin1(role ? role : "nothing"), face ? face->text(QAccessible::Name) : QString(),
            item->objectName().isEmpty() ? type(item) : item->objectName(), around ? type(around) : u"the window"_s);
    }

    static bool isOperated(QAccessible::Role role)
    {
        static const QSet<int> roles{QAccessible::Button,       QAccessible::CheckBox,    QAccessible::Slider,
                                     QAccessible::EditableText, QAccessible::MenuItem,    QAccessible::ListItem,
                                     QAccessible::PageTab,      QAccessible::RadioButton, QAccessible::List,
                                     QAccessible::Dialog,       QAccessible::PopupMenu};
        return roles.contains(role);
    }

    void walk(QAccessibleInterface* face, QStringList& flaws, QSet<const QObject*>& met) const
    {
        for (int i = 0; i < face->childCount(); ++i) {
            QAccessibleInterface* child = face->child(i);
            const auto* here = child ? qobject_cast<QQuickItem*>(child->object()) : nullptr;
            if (!here || child->state().invisible)
                continue;
            met.insert(here);
            const bool hasRole = child->role() != QAccessible::NoRole && child->role() != QAccessible::Client;
            const bool hasName = !child->text(QAccessible::Name).trimmed().isEmpty();
            if (!hasRole)
                flaws << u"no role: "_s + told(here);
            if ((child->state().focusable || isOperated(child->role())) && !hasName)
                flaws << u"no name: "_s + told(here);
            walk(child, flaws, met);
        }
    }

    QList<QQuickItem*> tabStops() const
    {
        QList<QQuickItem*> stops;
        for (QQuickItem* one : itemsUnder(window->contentItem())) {
            if (one->isVisible() && one->isEnabled() && one->activeFocusOnTab())
                stops << one;
        }
        return stops;
    }

    // What a screen reader could not tell of the window.
    QStringList flaws() const
    {
        QStringList flaws;
        QSet<const QObject*> met;
        walk(QAccessible::queryAccessibleInterface(window), flaws, met);
        for (const QQuickItem* stop : tabStops()) {
            if (!met.contains(stop))
                flaws << u"not told of: "_s + told(stop);
        }
        return flaws;
    }

    static bool isUnder(const QQuickItem* item, const QQuickItem* parent)
    {
        return item == parent || (item && isUnder(item->parentItem(), parent));
    }

    QImage lookOf(const QQuickItem* one) const
    {
        constexpr int kRing = 5; // pixels around an item that its ring may take
        const QRect around = one->mapRectToScene(one->boundingRect()).toAlignedRect().adjusted(-kRing, -kRing, kRing, kRing);
        return window->grabWindow().copy(around);
    }

    // Goes round with the key: every stop once, each with a ring that shows it.
    void goRound(const QList<QQuickItem*>& stops, Qt::Key key)
    {
        ASSERT_FALSE(stops.isEmpty());
        QStringList flaws;
        QList<QQuickItem*> reached;
        QImage focused;
        QTest::keyClick(window, key);
        for (qsizetype i = 0; i <= stops.size(); ++i) {
            QQuickItem* now = window->activeFocusItem();
            if (reached.contains(now))
                break;
            reached << now;
            focused = lookOf(now);
            QTest::keyClick(window, key);
            if (stops.size() > 1 && lookOf(now) == focused)
                flaws << u"no ring: "_s + told(now);
        }
        EXPECT_EQ(window->activeFocusItem(), reached.first()) << "it doesn't come round";
        for (QQuickItem* stop : stops) {
            if (!reached.contains(stop))
                flaws << u"not reached: "_s + told(stop);
        }
        for (const QQuickItem* one : reached) {
            if (!stops.contains(one))
                flaws << u"no stop: "_s + told(one);
        }
        EXPECT_EQ(flaws.join(u'\n'), QString());
    }

    void expectReachable()
    {
        EXPECT_EQ(flaws().join(u'\n'), QString());
        goRound(tabStops(), Qt::Key_Tab);
        goRound(tabStops(), Qt::Key_Backtab);
    }

    // The same for what lies over the window and keeps the keys.
    void expectReachableIn(const QString& objectNameInside)
    {
        EXPECT_EQ(flaws().join(u'\n'), QString());
        const QQuickItem* inside = item(objectNameInside);
        ASSERT_TRUE(inside);
        const QQuickItem* popup = inside;
        while (!popup->inherits("QQuickPopupItem"))
            popup = popup->parentItem();
        QList<QQuickItem*> stops = tabStops();
        stops.removeIf([popup](const QQuickItem* stop) { return !isUnder(stop, popup); });
        goRound(stops, Qt::Key_Tab);
        goRound(stops, Qt::Key_Backtab);
    }

    test::OpenSound program;
    std::unique_ptr<MainWindow> main;
    QQuickWindow* window = nullptr;
};

} // namespace

TEST_F(AccessibilityTest, AnEmptyLibrary)
{
    openEmpty();
    expectReachable();
}

TEST_F(AccessibilityTest, AFullLibraryWithAnOpenSound)
{
    openFull();
    expectReachable();
}

TEST_F(AccessibilityTest, ANarrowWindow)
{
    openFull();
    window->resize(900, 600);
    settle();
    expectReachable();
}

TEST_F(AccessibilityTest, ASearchThatFindsNothing)
{
    openFull();
    item(u"searchField"_s)->setProperty("text", u"xylophone"_s);
    settle();
    expectReachable();
}

TEST_F(AccessibilityTest, TheOtherSections)
{
    openFull();
    for (const auto key : {Qt::Key_2, Qt::Key_3, Qt::Key_4}) {
        QTest::keyClick(window, key, Qt::ControlModifier);
        settle();
        expectReachable();
    }
}

TEST_F(AccessibilityTest, TheAutoFolderPanel)
{
    program.app->autoFolder().chooseFolder(program.folder.path());
    openFull();
    click(u"autoFolderButton"_s);
    expectReachableIn(u"autoFolderSwitch"_s);
}

TEST_F(AccessibilityTest, TheAutoFolderPanelWithoutAFolder)
{
    openFull();
    click(u"autoFolderButton"_s);
    expectReachableIn(u"autoFolderChooser"_s);
}

TEST_F(AccessibilityTest, TheSettings)
{
    openFull();
    click(u"settingsButton"_s);
    expectReachableIn(u"closeButton"_s);
}

TEST_F(AccessibilityTest, ARowsMenu)
{
    openFull();
    click(u"libraryList"_s, Qt::RightButton);
    EXPECT_EQ(flaws().join(u'\n'), QString());
}

TEST_F(AccessibilityTest, AControlWithoutANameIsFound)
{
    openEmpty();
    item(u"addFilesButton"_s)->setProperty("text", QString());
    EXPECT_EQ(flaws().join(u'\n'), u"no name: Button “” (addFilesButton in Toolbar)"_s);
}
