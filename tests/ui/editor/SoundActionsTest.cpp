#include "ui/editor/SoundActions.h"

#include "support/Printing.h"
#include "support/Wav.h"
#include "ui/OpenSound.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class SoundActionsTest : public testing::Test {
protected:
    QString words() const { return actions.saveText() + u'|' + actions.addText(); }
    QString tips() const { return actions.saveTip() + u'|' + actions.addTip(); }
    // Marks another part beside the best one.
    void markAnother() { open.editor().choose(open.editor().candidates()[1], EditorModel::Extend::yes); }

    test::OpenSound open;
    SoundActions actions{*open.app};
};

} // namespace

TEST_F(SoundActionsTest, OneSoundAndOnePartNeedNoMoreWords)
{
    EXPECT_FALSE(actions.canAdd());
    EXPECT_FALSE(actions.canSave());
    open.finishWithThree();
    EXPECT_TRUE(actions.canAdd());
    EXPECT_TRUE(actions.canSave());
    EXPECT_EQ(words(), u"Save to Desktop|Add to Library"_s);
    EXPECT_EQ(tips(), u"|"_s);
}

TEST_F(SoundActionsTest, SeveralPartsAreCounted)
{
    open.finishWithThree();
    const QSignalSpy changes(&actions, &SoundActions::meantChanged);
    markAnother();
    EXPECT_GT(changes.count(), 0);
    EXPECT_EQ(words(), u"Save 2 Parts|Add 2 Parts"_s);
    EXPECT_EQ(tips(), u"Save the 2 marked parts of “Door Slam”|Add the 2 marked parts of “Door Slam”"_s);
}

TEST_F(SoundActionsTest, OfSeveralMarkedSoundsTheOpenOneIsMeant)
{
    open.finishWithThree();
    const QSignalSpy changes(&actions, &SoundActions::meantChanged);
    open.app->setMulti({open.item().id, QUuid::createUuid(), QUuid::createUuid()});
    EXPECT_GT(changes.count(), 0);
    EXPECT_EQ(words(), u"Save Open Sound|Add Open Sound"_s);
    EXPECT_EQ(actions.saveTip(), u"Save the marked part of “Door Slam”, the open one of 3 marked sounds"_s);
    markAnother();
    EXPECT_EQ(words(), u"Save 2 Parts|Add 2 Parts"_s);
    EXPECT_EQ(actions.addTip(), u"Add the 2 marked parts of “Door Slam”, the open one of 3 marked sounds"_s);
}

TEST_F(SoundActionsTest, WhatCannotBeDoneYetIsNotBegun)
{
    actions.addToLibrary();
    actions.saveToDesktop();
    actions.copyParts();
    EXPECT_FALSE(actions.isWorking());
    EXPECT_EQ(open.app->notices().text(), QString());
}

TEST_F(SoundActionsTest, TheKeysCopyWhatTheMouseWouldDrag)
{
    test::writeTone(open.editor().path(), 10);
    open.finishWithThree();
    actions.copyParts();
    const QMimeData* copied = QGuiApplication::clipboard()->mimeData();
    ASSERT_EQ(copied->urls().size(), 1);
    const QString path = copied->urls().first().toLocalFile();
    EXPECT_TRUE(path.endsWith(u".wav"_s)) << path.toStdString();
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_TRUE(open.app->notices().text().startsWith(u"Copied “"_s)) << open.app->notices().text().toStdString();
    EXPECT_FALSE(open.app->notices().isError());
}
