#include "app/library/ImportFlows.h"
#include "app/handover/HandedOver.h"
#include "base/Background.h"
#include "base/Uuid.h"
#include "platform/process/HandOver.h"
#include "platform/process/LibraryLock.h"
#include "support/Await.h"
#include "support/FileSizeLimit.h"
#include "support/Gate.h"
#include "support/Printing.h"
#include "support/Program.h"
#include "support/Wav.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class ImportFlowsTest : public testing::Test, public test::Machine {
protected:
    QString sound(const QString& name) { return test::writeTone(folder.filePath(name)); }
    QString text(const QString& name)
    {
        test::writeBytes(folder.filePath(name), "just words\n");
        return folder.filePath(name);
    }
    void import(const QStringList& paths) { test::await(importURLs(model, paths)); }
    QString openName() const { return model.selectedItem() ? model.selectedItem()->name : u"none"_s; }

    QTemporaryDir folder;
    AppModel model{services(), library(folder.filePath(u"Library"_s))};
};

} // namespace

TEST_F(ImportFlowsTest, OneFileIsOpenedAndTheUserIsTold)
{
    model.setSection(AppSection::studio);
    QSignalSpy working(&model.work(), &FlowsAtWork::changed);
    import({sound(u"Door Slam.wav"_s)});
    EXPECT_EQ(model.section(), AppSection::library);
    EXPECT_EQ(openName(), u"Door Slam"_s);
    EXPECT_EQ(model.notices().text(), u"Found the best part. Check it, then add it."_s);
    EXPECT_FALSE(model.notices().isError());
    EXPECT_EQ(working.count(), 2); // on, and off again
    EXPECT_FALSE(model.isWorking());
}

TEST_F(ImportFlowsTest, OneFileThatFailsChangesNothingElse)
{
    import({sound(u"Door Slam.wav"_s)});
    model.setSection(AppSection::find);
    import({text(u"notes.txt"_s)});
    EXPECT_EQ(model.notices().text(), u"notes is not a format Tonequill can read. Try WAV, MP3, M4A, AIFF, MP4, MOV or M4V."_s);
    EXPECT_TRUE(model.notices().isError());
    EXPECT_EQ(openName(), u"Door Slam"_s);
    EXPECT_EQ(model.section(), AppSection::find);
    EXPECT_FALSE(model.isWorking());
}

TEST_F(ImportFlowsTest, OfThreeFilesTheSecondFails)
{
    QStringList notices;
    QObject::connect(&model.notices(), &Notices::changed, [&] { notices << model.notices().text(); });
    import({sound(u"one two.wav"_s), text(u"bad.wav"_s), sound(u"three four.wav"_s)});
    EXPECT_EQ(notices, (QStringList{u"Added 2 sounds."_s,
                                    u"bad is not a format Tonequill can read. Try WAV, MP3, M4A, AIFF, MP4, MOV or M4V."_s}));
    EXPECT_TRUE(model.notices().isError());
    EXPECT_EQ(openName(), u"three four"_s);
    EXPECT_EQ(model.library().items().size(), 2);
}

TEST_F(ImportFlowsTest, TheCountKeepsItsPluralAndTheFirstFailureIsShown)
{
    QStringList notices;
    QObject::connect(&model.notices(), &Notices::changed, [&] { notices << model.notices().text(); });
    import({sound(u"one two.wav"_s), text(u"first.wav"_s), text(u"second.wav"_s)});
    EXPECT_EQ(notices.value(0), u"Added 1 sounds."_s);
    EXPECT_TRUE(notices.value(1).startsWith(u"first is not"_s));
    EXPECT_EQ(notices.size(), 2);
}

TEST_F(ImportFlowsTest, FilesAreShownWhileTheyComeIn)
{
    QList<QStringList> seen;
    QObject::connect(&model.incoming(), &Incoming::changed, [&] {
        QStringList names;
        for (const IncomingFile& file : model.incoming().files())
            names << file.name;
        seen << names;
    });
    import({sound(u"one.a.wav"_s), text(u"two.wav"_s)});
    EXPECT_EQ(seen, (QList<QStringList>{{u"one.a"_s, u"two"_s}, {u"two"_s}, {}}));
}

TEST_F(ImportFlowsTest, TwoDropsAtOnceKeepWorkingUntilBothAreIn)
{
    auto first = importURLs(model, {sound(u"one a.wav"_s), sound(u"one b.wav"_s)});
    auto second = importURLs(model, {sound(u"two a.wav"_s)});
    EXPECT_EQ(model.incoming().files().size(), 3);
    EXPECT_TRUE(model.isWorking());
    test::await(std::move(first));
    test::await(std::move(second));
    EXPECT_EQ(model.library().items().size(), 3);
    EXPECT_TRUE(model.incoming().files().isEmpty());
    EXPECT_FALSE(model.isWorking());
}

TEST_F(ImportFlowsTest, PortionsComeInOneAfterTheOther)
{
    auto first = importURLs(model, {sound(u"one a.wav"_s), sound(u"one b.wav"_s)});
    auto second = importURLs(model, {sound(u"two a.wav"_s)});
    test::await(std::move(second));
    QStringList names;
    for (const SoundItem& item : model.library().items())
        names << item.name;
    EXPECT_EQ(names, (QStringList{u"two a"_s, u"one b"_s, u"one a"_s}));
    test::await(std::move(first));
}

TEST_F(ImportFlowsTest, TheOutcomeTellsWhatCameInAndWhatDidNot)
{
    const ImportOutcome outcome =
        test::await(importURLs(model, {sound(u"one two.wav"_s), text(u"bad.wav"_s), sound(u"three four.wav"_s)}));
    ASSERT_EQ(outcome.added.size(), 2);
    EXPECT_EQ(model.library().find(outcome.added[0])->name, u"one two"_s);
    EXPECT_EQ(model.library().find(outcome.added[1])->name, u"three four"_s);
    ASSERT_EQ(outcome.failed.size(), 1);
    EXPECT_EQ(outcome.failed.first().path, folder.filePath(u"bad.wav"_s));
    EXPECT_EQ(outcome.failed.first().sentence, model.notices().text());
}

TEST_F(ImportFlowsTest, ASoundThatIsDeletedWhileOthersComeInIsNotOpened)
{
    QObject::connect(&model.library(), &LibraryStore::itemInserted, &model, [&] {
        if (model.library().items().first().name == u"two b")
            QMetaObject::invokeMethod(
                &model, [&] { deleteItems(model, {model.library().items().first()}); }, Qt::QueuedConnection);
    });
    import({sound(u"one a.wav"_s), sound(u"two b.wav"_s), text(u"bad.wav"_s)});
    ASSERT_TRUE(model.selectedItem());
    EXPECT_EQ(openName(), u"one a"_s);
}

TEST_F(ImportFlowsTest, ClosingLeavesNothingHalfWay)
{
    import({sound(u"kept.wav"_s)});
    const QDir library(model.library().folder());
    const QStringList before = library.entryList(QDir::Files | QDir::Hidden);
    const test::HeldBack held(workers.shown());
    startFlow(importURLs(model, {sound(u"one a.wav"_s), sound(u"one b.wav"_s)}));
    startFlow(importURLs(model, {sound(u"two a.wav"_s)}));
    model.close();
    EXPECT_FALSE(model.isWorking());
    EXPECT_TRUE(model.incoming().files().isEmpty());
    EXPECT_EQ(library.entryList(QDir::Files | QDir::Hidden), before);
}

TEST_F(ImportFlowsTest, DeletingTheOpenSoundOpensTheNewestThatIsLeft)
{
    import({sound(u"aaa.wav"_s), sound(u"bbb.wav"_s), sound(u"ccc.wav"_s)});
    const QList<SoundItem> items = model.library().items();
    model.selection().selectAll(items);
    deleteItems(model, {items[0], items[1]});
    EXPECT_EQ(openName(), u"aaa"_s);
    EXPECT_EQ(model.multi(), QSet<QUuid>{items[2].id});
    EXPECT_EQ(model.editor().item()->name, u"aaa"_s);
}

TEST_F(ImportFlowsTest, DeletingAnotherSoundLeavesTheOpenOneAlone)
{
    import({sound(u"aaa.wav"_s), sound(u"bbb.wav"_s)});
    QSignalSpy loads(&model.editor(), &EditorModel::itemChanged);
    model.selection().selectAll(model.library().items());
    deleteItems(model, {model.library().items()[1]});
    EXPECT_EQ(openName(), u"bbb"_s);
    EXPECT_EQ(model.multi().size(), 1);
    EXPECT_EQ(loads.count(), 0);
}

TEST_F(ImportFlowsTest, DeletingEverythingEmptiesTheEditor)
{
    import({sound(u"aaa.wav"_s), sound(u"bbb.wav"_s)});
    deleteItems(model, model.library().items());
    EXPECT_FALSE(model.selection().id());
    EXPECT_TRUE(model.multi().isEmpty());
    EXPECT_FALSE(model.editor().item());
    EXPECT_TRUE(model.library().items().isEmpty());
}

TEST_F(ImportFlowsTest, ASecondStartWaitsForAnOwnerThatIsStillStarting)
{
    FlowGroup flows;
    LibraryLock owner(model.library().folder());
    ASSERT_TRUE(owner.acquire());
    const QString folderPath = model.library().folder();
    HandOver server; // it listens, and serves nobody yet
    owner.publish(server.listen(folderPath).value_or(QString()));
    const auto second = [folderPath] {
        return HandedOver::sendToOwner(LibraryLock(folderPath), HandedOver::addMessage({u"/a.wav"_s}));
    };
    auto sent = background(flows, workers.shown(), second);
    QThread::msleep(120);
    int received = 0;
    server.serve([&](const QJsonObject&) {
        ++received;
        return QJsonObject{{u"ok"_s, true}};
    });
    EXPECT_TRUE(test::await(std::move(sent)));
    EXPECT_EQ(received, 1);
    const auto nobody = [folderPath] { return HandedOver::sendToOwner(LibraryLock(folderPath + u"x"_s), {}); };
    EXPECT_FALSE(test::awaitElsewhere(nobody));
}

TEST_F(ImportFlowsTest, APathThatIsTooLongForAFileIsNotTaken)
{
    HandedOver::carryOut(model, HandedOver::addMessage({u'/' + QString(15 << 20, u'a')}));
    EXPECT_TRUE(model.incoming().files().isEmpty());
    EXPECT_FALSE(model.isWorking());
}

TEST_F(ImportFlowsTest, WorkHandedOverIsCarriedOut)
{
    const auto waitFor = [](const auto& condition) {
        for (QDeadlineTimer deadline(10000); !condition() && !deadline.hasExpired();)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    };
    EXPECT_TRUE(
        HandedOver::carryOut(model, HandedOver::addMessage({sound(u"from afar.wav"_s), u"relative.wav"_s}))[u"ok"_s].toBool());
    waitFor([&] { return !model.isWorking() && model.library().items().size() == 1; });
    ASSERT_EQ(model.library().items().size(), 1);
    EXPECT_EQ(openName(), u"from afar"_s);
    EXPECT_TRUE(HandedOver::carryOut(model, HandedOver::addMessage({}))[u"ok"_s].toBool());
    const QJsonArray ids{u"rubbish"_s, 7, model.library().items().first().id.toString(QUuid::WithoutBraces)};
    EXPECT_TRUE(HandedOver::carryOut(model, {{u"delete"_s, ids}})[u"ok"_s].toBool());
    EXPECT_TRUE(model.library().items().isEmpty());
    EXPECT_FALSE(HandedOver::carryOut(model, {{u"format"_s, u"disk"_s}})[u"ok"_s].toBool());
}

TEST_F(ImportFlowsTest, TheOutcomeTellsTheTrueCause)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"folder.wav"_s));
    const ImportOutcome outcome = test::await(
        importURLs(model, {folder.filePath(u"folder.wav"_s), folder.filePath(u"missing.wav"_s), text(u"notes.txt"_s)}));
    ASSERT_EQ(outcome.failed.size(), 3);
    const QString told = u" is not a format Tonequill can read. Try WAV, MP3, M4A, AIFF, MP4, MOV or M4V."_s;
    EXPECT_EQ(outcome.failed[0].sentence, u"folder"_s + told);
    EXPECT_EQ(outcome.failed[0].cause, u"“folder.wav” couldn't be read because it is a folder."_s);
    EXPECT_EQ(outcome.failed[1].sentence, u"missing"_s + told);
    EXPECT_EQ(outcome.failed[1].cause, u"“missing.wav” couldn't be read because it isn't there any more."_s);
    EXPECT_EQ(outcome.failed[2].cause, u"notes"_s + told);
    EXPECT_EQ(model.notices().text(), u"folder"_s + told);
}

TEST_F(ImportFlowsTest, WhatCannotBeDeletedComesBackAndTheUserIsTold)
{
    import({sound(u"aaa.wav"_s), sound(u"bbb.wav"_s)});
    const QList<SoundItem> before = model.library().items();
    {
        const test::FileSizeLimit full(1);
        auto deleting = deleteItems(model, before);
        EXPECT_TRUE(model.library().items().isEmpty());
        EXPECT_FALSE(model.editor().item());
        EXPECT_FALSE(test::await(std::move(deleting)));
    }
    EXPECT_EQ(model.library().items(), before);
    EXPECT_EQ(openName(), u"bbb"_s);
    EXPECT_EQ(model.notices().text(), u"Nothing was deleted: the disk may be full or read-only."_s);
    EXPECT_TRUE(model.notices().isError());
    for (const SoundItem& item : before)
        EXPECT_TRUE(QFile::exists(model.library().path(item)));

    const QJsonObject message{{u"delete"_s, QJsonArray{uuidText(before[0].id)}}};
    {
        const test::FileSizeLimit full(1);
        const QJsonObject answer = HandedOver::carryOut(model, message);
        EXPECT_FALSE(answer[u"ok"_s].toBool());
        EXPECT_EQ(answer[u"error"_s].toString(), model.notices().text());
        settle(model);
    }
    EXPECT_EQ(model.library().items(), before);
    EXPECT_TRUE(HandedOver::carryOut(model, message)[u"ok"_s].toBool());
    EXPECT_EQ(model.library().items().size(), 1);
}

TEST_F(ImportFlowsTest, ClosingAtAnyMomentLeavesNoMark)
{
    const QDir library(model.library().folder());
    for (int turns = 0; turns < 12; ++turns) {
        const auto program = std::make_unique<AppModel>(services(), this->library(library.path()));
        startFlow(importURLs(*program, {sound(u"one a.wav"_s), sound(u"one b.wav"_s)}));
        for (int i = 0; i < turns; ++i) {
            QThread::msleep(2);
            QCoreApplication::processEvents();
        }
        program->close();
        const test::HeldBack drained(workers.shown()); // their threads have let go of what was cancelled
        QStringList expected{u"index.json"_s};
        for (const SoundItem& item : program->library().items())
            expected << item.fileName;
        expected.sort();
        QStringList found = library.entryList(QDir::Files | QDir::Hidden);
        found.sort();
        if (!found.contains(u"index.json"_s))
            expected.removeAll(u"index.json"_s); // nothing has come in yet
        EXPECT_EQ(found, expected) << turns;
    }
}
