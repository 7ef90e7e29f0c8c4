#include "app/delivery/ExportFlows.h"
#include "app/library/ImportFlows.h"
#include "platform/files/Files.h"
#include "platform/media/AudioFile.h"
#include "support/Await.h"
#include "support/Environment.h"
#include "support/FileSizeLimit.h"
#include "support/Gate.h"
#include "support/Printing.h"
#include "support/Program.h"
#include "support/Wav.h"

#include <QCoreApplication>
#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class ExportFlowsTest : public testing::Test, public test::Machine {
protected:
    ExportFlowsTest()
    {
        QDir().mkpath(saved());
        model.settings().setSaveFolderPath(saved());
        apps.isThere = false;
    }

    QString saved() const { return folder.filePath(u"Sounds"_s); }
    QStringList savedFiles() const { return QDir(saved()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    static QStringList temporaryFiles() { return QDir(QDir::tempPath()).entryList({u"*.wav"_s}, QDir::Files); }
    QStringList names() const
    {
        QStringList names;
        for (const SoundItem& item : model.library().items())
            names << item.name;
        return names;
    }

    // A raw import of three seconds, open in the editor.
    SoundItem open(const QString& name = u"Door"_s)
    {
        test::await(importURLs(model, {test::writeTone(folder.filePath(name + u".wav"_s), 3)}));
        return *model.selectedItem();
    }
    // Its analysis: two bursts of half a second, at one and at two seconds.
    void proposeTwo()
    {
        AudioAnalysis analysis;
        analysis.duration = 3;
        analysis.sampleRate = 48000;
        analysis.hopSeconds = 0.01;
        analysis.rms.assign(300, 0.001F);
        analysis.peak.assign(300, 0.002F);
        for (const int start : {70, 220}) {
            std::fill_n(analysis.rms.begin() + start, 50, 0.4F);
            std::fill_n(analysis.peak.begin() + start, 50, 0.8F);
        }
        work.analyses.back().answer(analysis);
        settle();
        auto list = model.editor().candidates();
        for (CutCandidate& candidate : list) {
            if (!candidate.isWhole)
                candidate.label = u"Knock"_s;
        }
        work.labellings.back().answer(list);
        settle();
        for (const CutCandidate& candidate : model.editor().candidates()) {
            if (!candidate.isWhole && !model.editor().marked().contains(candidate.id))
                model.editor().choose(candidate, EditorModel::Extend::yes);
        }
        ASSERT_EQ(model.editor().parts().size(), 2U);
    }
    static void settle()
    {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }
    double secondsOf(const SoundItem& item) const { return AudioFile(model.library().path(item)).durationSeconds(); }

    QTemporaryDir folder;
    AppModel model{services(), library(folder.filePath(u"Library"_s))};
};

} // namespace

TEST_F(ExportFlowsTest, OnePartReplacesTheRawImport)
{
    const SoundItem raw = open(u"IMG_0042"_s);
    ASSERT_EQ(raw.nameIsAuto, true);
    model.library().update(raw, [](SoundItem& record) {
        record.tags = {u"hall"_s};
        record.sourceID = u"free:1"_s;
        record.license = u"CC BY 4.0"_s;
        record.credit = u"Ada"_s;
        record.pageURL = u"https://example.org/1"_s;
    });
    const QStringList before = temporaryFiles();
    model.editor().setRange(1, 2);
    QSignalSpy working(&model.work(), &FlowsAtWork::changed);
    test::await(addToLibrary(model));
    ASSERT_EQ(model.library().items().size(), 1);
    const SoundItem& cut = model.library().items().first();
    EXPECT_NE(cut.id, raw.id);
    EXPECT_EQ(cut.origin, SoundOrigin::cut);
    EXPECT_EQ(cut.name, u"IMG_0042"_s);
    EXPECT_EQ(cut.nameIsAuto, true); // still to be named by what is heard
    EXPECT_EQ(cut.tags, QStringList{u"hall"_s});
    EXPECT_EQ(cut.sourceID, u"free:1"_s);
    EXPECT_EQ(cut.license, u"CC BY 4.0"_s);
    EXPECT_EQ(cut.credit, u"Ada"_s);
    EXPECT_EQ(cut.pageURL, u"https://example.org/1"_s);
    EXPECT_DOUBLE_EQ(secondsOf(cut), 1);
    EXPECT_FALSE(QFile::exists(model.library().path(raw)));
    EXPECT_EQ(model.selection().id(), cut.id);
    EXPECT_EQ(model.multi(), QSet<QUuid>{cut.id});
    EXPECT_EQ(model.notices().text(), u"Added “IMG_0042” to your library."_s);
    EXPECT_EQ(working.count(), 2);
    EXPECT_FALSE(model.isWorking());
    EXPECT_EQ(temporaryFiles(), before);
}

TEST_F(ExportFlowsTest, ASoundThatWasCutStaysWhenItIsCutAgain)
{
    open();
    model.editor().setRange(0, 2);
    test::await(addToLibrary(model));
    const SoundItem cut = *model.selectedItem();
    model.editor().setRange(0, 1);
    test::await(addToLibrary(model));
    EXPECT_EQ(names(), (QStringList{u"Door"_s, u"Door"_s}));
    EXPECT_TRUE(model.library().find(cut.id));
    EXPECT_NE(model.selection().id(), cut.id);
}

TEST_F(ExportFlowsTest, TheSourceStaysWhereThatIsAskedFor)
{
    const SoundItem raw = open();
    model.editor().setRange(0, 2);
    test::await(addToLibrary(model, TheSource::stays));
    EXPECT_EQ(model.library().items().size(), 2);
    EXPECT_TRUE(model.library().find(raw.id));
}

TEST_F(ExportFlowsTest, SeveralPartsAreNamedByTheirLabels)
{
    const SoundItem raw = open();
    proposeTwo();
    test::await(addToLibrary(model));
    EXPECT_EQ(names(), (QStringList{u"Door – Knock 2"_s, u"Door – Knock"_s})); // newest first
    EXPECT_FALSE(model.library().find(raw.id));
    for (const SoundItem& item : model.library().items())
        EXPECT_EQ(item.nameIsAuto, false);
    EXPECT_EQ(model.selectedItem()->name, u"Door – Knock"_s);
    EXPECT_EQ(model.multi().size(), 2);
    EXPECT_EQ(model.notices().text(), u"Added 2 sounds to your library."_s);
}

TEST_F(ExportFlowsTest, EffectsGoWithThePart)
{
    open();
    model.editor().setRange(0, 2);
    EffectSettings effects;
    effects.speed = 2;
    model.editor().setEffects(effects);
    test::await(addToLibrary(model));
    EXPECT_NEAR(secondsOf(*model.selectedItem()), 1, 0.02); // trimming keeps ten milliseconds
}

TEST_F(ExportFlowsTest, NothingIsDoneWithoutASoundOrAUsablePart)
{
    QSignalSpy working(&model.work(), &FlowsAtWork::changed);
    test::await(addToLibrary(model));
    test::await(saveToDesktop(model));
    test::await(saveToDesktop(model, QList<SoundItem>()));
    test::await(importURLs(model, {test::writeTone(folder.filePath(u"click.wav"_s), 0.02)}));
    working.clear();
    const QString said = model.notices().text();
    test::await(addToLibrary(model));
    test::await(saveToDesktop(model));
    EXPECT_EQ(working.count(), 0);
    EXPECT_EQ(model.notices().text(), said);
    EXPECT_EQ(names(), QStringList{u"click"_s});
    EXPECT_TRUE(savedFiles().isEmpty());
}

TEST_F(ExportFlowsTest, AFailureKeepsTheSourceAndSaysSo)
{
    const SoundItem raw = open();
    const QStringList before = temporaryFiles();
    QFile::remove(model.library().path(raw)); // behind our back
    test::await(addToLibrary(model));
    EXPECT_TRUE(model.notices().isError());
    EXPECT_FALSE(model.notices().text().isEmpty());
    EXPECT_EQ(names(), QStringList{u"Door"_s});
    EXPECT_FALSE(model.isWorking());
    EXPECT_EQ(temporaryFiles(), before);
    test::await(saveToDesktop(model));
    EXPECT_TRUE(model.notices().isError());
    EXPECT_FALSE(model.isWorking());
    EXPECT_TRUE(savedFiles().isEmpty());
}

TEST_F(ExportFlowsTest, AFlowWorksWithWhatItStartedWith)
{
    const SoundItem other = open(u"Other"_s);
    open();
    proposeTwo();
    EffectSettings effects;
    effects.speed = 2;
    model.editor().setEffects(effects);
    auto flow = addToLibrary(model);
    model.setSelection(other.id); // which takes the effects with it
    test::await(std::move(flow));
    EXPECT_EQ(names(), (QStringList{u"Door – Knock 2"_s, u"Door – Knock"_s, u"Other"_s}));
    for (const SoundItem& item : model.library().items().first(2))
        EXPECT_LT(item.duration, 0.5);
}

TEST_F(ExportFlowsTest, SavingTwiceNeverReplacesAFile)
{
    open();
    model.editor().setRange(1, 2);
    test::await(saveToDesktop(model));
    EXPECT_EQ(model.notices().text(), u"Saved “Door.wav” to Sounds."_s);
    test::await(saveToDesktop(model));
    EXPECT_EQ(savedFiles(), (QStringList{u"Door 2.wav"_s, u"Door.wav"_s}));
    EXPECT_EQ(names(), QStringList{u"Door"_s});
    proposeTwo();
    test::await(saveToDesktop(model));
    EXPECT_EQ(model.notices().text(), u"Saved 2 sounds to Sounds."_s);
    EXPECT_EQ(savedFiles().size(), 4);
}

TEST_F(ExportFlowsTest, WholeSoundsAreAlwaysCountedInThePlural)
{
    const SoundItem door = open();
    const SoundItem other = open(u"a/b: ☔"_s.replace(u'/', u'-'));
    EffectSettings effects;
    effects.speed = 3;
    model.editor().setEffects(effects); // of the open sound only
    test::await(saveToDesktop(model, {door}));
    EXPECT_EQ(model.notices().text(), u"Saved 1 sounds to Sounds."_s);
    EXPECT_EQ(savedFiles(), QStringList{u"Door.wav"_s});
    EXPECT_DOUBLE_EQ(AudioFile(saved() + u"/Door.wav"_s).durationSeconds(), 3);
    test::await(saveToDesktop(model, {door, other}));
    EXPECT_EQ(model.notices().text(), u"Saved 2 sounds to Sounds."_s);
    EXPECT_EQ(savedFiles(), (QStringList{u"Door 2.wav"_s, u"Door.wav"_s, u"a-b- ☔.wav"_s}));
    EXPECT_NEAR(AudioFile(saved() + u"/a-b- ☔.wav"_s).durationSeconds(), 1, 0.02);
}

TEST_F(ExportFlowsTest, AFolderThatTakesNoMoreIsSaidAndNoHalfFileStays)
{
    open();
    model.editor().setRange(0, 2);
    const QStringList before = temporaryFiles();
    {
        const test::FileSizeLimit limit(100'000); // of the 288,044 bytes that two seconds take
        test::await(saveToDesktop(model));
        EXPECT_TRUE(model.notices().isError());
        EXPECT_FALSE(model.isWorking());
        EXPECT_TRUE(savedFiles().isEmpty()) << savedFiles().join(u' ').toStdString();
        test::await(addToLibrary(model));
        EXPECT_TRUE(model.notices().isError());
        EXPECT_FALSE(model.isWorking());
    }
    EXPECT_EQ(names(), QStringList{u"Door"_s}); // the source stays
    EXPECT_EQ(temporaryFiles(), before);
    test::await(saveToDesktop(model));
    EXPECT_EQ(savedFiles(), QStringList{u"Door.wav"_s});
}

TEST_F(ExportFlowsTest, APartAtTheVeryEndIsSavedAsFarAsTheSoundGoes)
{
    open();
    model.editor().setRange(2.9, 99);
    EXPECT_EQ(model.editor().end(), 3);
    test::await(saveToDesktop(model));
    EXPECT_NEAR(AudioFile(saved() + u"/Door.wav"_s).durationSeconds(), 0.1, 0.001);
}

TEST_F(ExportFlowsTest, ASaveFolderThatVanishedIsTheDesktop)
{
    open();
    QDir(saved()).removeRecursively();
    EXPECT_NE(model.settings().saveFolder(), saved());
    EXPECT_EQ(model.settings().saveFolderPath(), saved()); // the setting is not cleared

    const QString home = folder.filePath(u"home"_s); // and it has no desktop yet
    const test::Environment itsHome("HOME", QFile::encodeName(home));
    const test::Environment noConfig("XDG_CONFIG_HOME", QFile::encodeName(home));
    test::await(saveToDesktop(model));
    EXPECT_EQ(model.notices().text(), u"Saved “Door.wav” to Desktop."_s);
    EXPECT_TRUE(QFile::exists(home + u"/Desktop/Door.wav"_s));
}

TEST_F(ExportFlowsTest, ALongOrForeignNameIsSavedAsFarAsItFits)
{
    const SoundItem item = open();
    for (const QString& name : {QString(300, u'é'), u"‮باب‬"_s, u"../../etc"_s, u"🚪🚪"_s}) {
        const SoundItem renamed = model.library().rename(item, name);
        test::await(saveToDesktop(model, {renamed}));
        EXPECT_FALSE(model.notices().isError()) << name.toStdString() << ": " << model.notices().text().toStdString();
    }
    EXPECT_EQ(savedFiles().size(), 4);
}

// Final Cut Pro

TEST_F(ExportFlowsTest, WithoutTheApplicationNothingIsSent)
{
    const SoundItem door = open();
    const QString said = model.notices().text();
    EXPECT_FALSE(canSendToFinalCut(model));
    test::await(sendToFinalCut(model, {door}));
    EXPECT_EQ(model.notices().text(), said);
    EXPECT_FALSE(QFile::exists(model.library().folder() + u"/FinalCut"_s));
}

TEST_F(ExportFlowsTest, AddedPartsGoToFinalCutAsWell)
{
    apps.isThere = true;
    open();
    model.editor().setRange(0, 1);
    test::await(addToLibrary(model));
    EXPECT_EQ(model.notices().text(), u"Added “Door” to your library. They're also in Final Cut Pro."_s);
    ASSERT_EQ(apps.opened.size(), 1);
    EXPECT_TRUE(apps.opened.first().startsWith(model.library().folder() + u"/Tonequill "_s));
    QFile document(apps.opened.first());
    ASSERT_TRUE(document.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(document.readAll());
    EXPECT_TRUE(text.contains(u"name=\"Door\""_s));
    EXPECT_TRUE(text.contains(u"duration=\"48000/48000s\""_s));
    EXPECT_TRUE(text.contains(model.selectedItem()->fileName)); // the file in the library

    model.settings().setAlsoFinalCut(false);
    test::await(addToLibrary(model));
    EXPECT_EQ(model.notices().text(), u"Added “Door” to your library."_s);
    EXPECT_EQ(apps.opened.size(), 1);
}

TEST_F(ExportFlowsTest, SendingMakesAFileForEachHandOff)
{
    apps.isThere = true;
    const SoundItem door = open();
    QSignalSpy working(&model.work(), &FlowsAtWork::changed);
    test::await(sendToFinalCut(model, {}));
    EXPECT_EQ(working.count(), 0);
    test::await(sendToFinalCut(model, {door}));
    EXPECT_EQ(model.notices().text(), u"Sent 1 sounds to Final Cut Pro."_s);
    EXPECT_FALSE(model.notices().isError());
    test::await(sendToFinalCut(model, {door, door}));
    EXPECT_EQ(model.notices().text(), u"Sent 2 sounds to Final Cut Pro."_s);
    const QDir sent(model.library().folder() + u"/FinalCut"_s);
    EXPECT_EQ(sent.entryList({u"*.wav"_s}, QDir::Files, QDir::Name),
              (QStringList{u"Door 2.wav"_s, u"Door 3.wav"_s, u"Door.wav"_s}));
    EXPECT_FALSE(model.isWorking());
}

TEST_F(ExportFlowsTest, AnExportThatFailsMakesNoDocument)
{
    apps.isThere = true;
    const SoundItem door = open();
    SoundItem gone = door;
    gone.fileName = u"gone.wav"_s;
    test::await(sendToFinalCut(model, {door, gone}));
    EXPECT_TRUE(model.notices().isError());
    EXPECT_TRUE(apps.opened.isEmpty());
    EXPECT_FALSE(model.isWorking());
    const QDir sent(model.library().folder() + u"/FinalCut"_s);
    EXPECT_EQ(sent.entryList(QDir::Files), QStringList{u"Door.wav"_s});
}

TEST_F(ExportFlowsTest, AFolderThatCannotBeMadeIsSaid)
{
    apps.isThere = true;
    const SoundItem door = open();
    test::writeBytes(model.library().folder() + u"/FinalCut"_s, "in the way");
    test::await(sendToFinalCut(model, {door}));
    EXPECT_TRUE(model.notices().isError());
    EXPECT_TRUE(model.notices().text().contains(u"FinalCut"_s)) << model.notices().text().toStdString();
    EXPECT_FALSE(model.isWorking());
}

// Flows beside themselves

TEST_F(ExportFlowsTest, FiftyPressesWhileTheFirstAddsMakeOneSetOfCuts)
{
    open();
    proposeTwo();
    const test::HeldBack held(workers.shown());
    auto first = addToLibrary(model);
    QList<FlowEnd> others;
    for (int i = 0; i < 49; ++i)
        others << test::await(addToLibrary(model)).end;
    EXPECT_EQ(others.count(FlowEnd::isAtWork), 49);
    EXPECT_TRUE(model.work().isAtWork(FlowsAtWork::Kind::adding));
    held.letGo();
    const AddOutcome outcome = test::await(std::move(first));
    EXPECT_EQ(outcome.end, FlowEnd::done);
    EXPECT_EQ(outcome.added.size(), 2);
    EXPECT_EQ(names(), (QStringList{u"Door – Knock 2"_s, u"Door – Knock"_s}));
    EXPECT_EQ(model.notices().text(), u"Added 2 sounds to your library."_s);
    EXPECT_FALSE(model.isWorking());
}

TEST_F(ExportFlowsTest, SavingAndSendingRefuseASecondRunAsWell)
{
    apps.isThere = true;
    const SoundItem door = open();
    const test::HeldBack held(workers.shown());
    auto saving = saveToDesktop(model);
    auto sending = sendToFinalCut(model, {door});
    EXPECT_EQ(test::await(saveToDesktop(model)).end, FlowEnd::isAtWork);
    EXPECT_EQ(test::await(saveToDesktop(model, {door})).end, FlowEnd::isAtWork);
    EXPECT_EQ(test::await(sendToFinalCut(model, {door})).end, FlowEnd::isAtWork);
    held.letGo();
    const FilesOutcome saved = test::await(std::move(saving));
    EXPECT_EQ(saved.end, FlowEnd::done);
    EXPECT_EQ(saved.paths, QStringList{this->saved() + u"/Door.wav"_s});
    EXPECT_EQ(test::await(std::move(sending)).end, FlowEnd::done);
    EXPECT_EQ(savedFiles(), QStringList{u"Door.wav"_s});
    EXPECT_EQ(test::await(saveToDesktop(model)).end, FlowEnd::done); // afterwards it may be done again
}

TEST_F(ExportFlowsTest, AnOutcomeTellsWhatWasFinishedBeforeAFailure)
{
    const SoundItem door = open();
    const SoundItem other = open(u"Other"_s);
    QFile::remove(model.library().path(other));
    const FilesOutcome outcome = test::await(saveToDesktop(model, {door, other}));
    EXPECT_EQ(outcome.end, FlowEnd::failed);
    EXPECT_EQ(outcome.paths, QStringList{saved() + u"/Door.wav"_s});
    EXPECT_EQ(outcome.sentence, model.notices().text());
}

TEST_F(ExportFlowsTest, WhatIsAddedIsOnTheDiskWhenItIsTold)
{
    open();
    model.editor().setRange(0, 1);
    QStringList stored;
    QObject::connect(&model.notices(), &Notices::changed, &model, [&] {
        const LibraryStore onDisk(clock, workers, model.library().folder());
        for (const SoundItem& item : onDisk.items())
            stored << item.name;
    });
    test::await(addToLibrary(model));
    EXPECT_EQ(stored, QStringList{u"Door"_s}); // the cut alone: the raw sound has gone
}

TEST_F(ExportFlowsTest, DeletingWhatWasAddedMeanwhileLeavesNothingSelectedThatIsGone)
{
    open();
    proposeTwo();
    QObject::connect(&model.library(), &LibraryStore::itemInserted, &model, [&] {
        if (model.library().items().size() == 3) // the source, and both parts
            deleteItems(model, {model.library().items()[1]});
    });
    apps.isThere = true;
    const AddOutcome outcome = test::await(addToLibrary(model));
    ASSERT_EQ(outcome.added.size(), 1);
    EXPECT_EQ(outcome.added.first().name, u"Door – Knock 2"_s);
    ASSERT_TRUE(model.selectedItem());
    EXPECT_EQ(model.selectedItem()->name, u"Door – Knock 2"_s);
    EXPECT_EQ(model.multi().size(), 1);
    // The editing program is told of no file that isn't there.
    ASSERT_EQ(apps.opened.size(), 1);
    const QString document = QString::fromUtf8(Files::readAll(apps.opened.first(), 1 << 20));
    EXPECT_EQ(document.count(u"<asset "_s), 1);
    EXPECT_TRUE(document.contains(model.selectedItem()->fileName));
}

TEST_F(ExportFlowsTest, DeletingAllThatWasAddedOpensWhatIsLeft)
{
    const SoundItem other = open(u"Other"_s);
    open();
    model.editor().setRange(1, 2);
    QObject::connect(&model.library(), &LibraryStore::itemRemoved, &model, [&] {
        const SoundItem newest = model.library().items().first();
        if (newest.origin == SoundOrigin::cut) // the source has just gone
            deleteItems(model, {newest});
    });
    test::await(addToLibrary(model));
    EXPECT_EQ(names(), QStringList{u"Other"_s});
    EXPECT_EQ(model.selection().id(), other.id);
    ASSERT_TRUE(model.editor().item());
    EXPECT_EQ(model.editor().item()->id, other.id);
}

TEST_F(ExportFlowsTest, ALaterPartThatFailsLeavesTheFirstAndTheSource)
{
    const SoundItem raw = open();
    proposeTwo();
    QObject::connect(&model.library(), &LibraryStore::itemInserted, &model, [&] { QFile::remove(model.library().path(raw)); });
    const AddOutcome outcome = test::await(addToLibrary(model));
    EXPECT_EQ(outcome.end, FlowEnd::failed);
    ASSERT_EQ(outcome.added.size(), 1);
    EXPECT_EQ(outcome.added.first().name, u"Door – Knock"_s);
    EXPECT_EQ(outcome.uncut, QStringList{u"Door – Knock 2"_s});
    EXPECT_EQ(names(), (QStringList{u"Door – Knock"_s, u"Door"_s}));
    EXPECT_EQ(model.notices().text(), u"“Door – Knock 2” couldn't be opened."_s);
    EXPECT_EQ(model.selection().id(), raw.id); // as before
    EXPECT_TRUE(apps.opened.isEmpty());
}

TEST_F(ExportFlowsTest, WhenFinalCutFailsTheSoundsAreAddedAndOnlyTheFailureIsSaid)
{
    apps.isThere = true;
    open();
    model.editor().setRange(0, 1);
    const qint64 second = qint64(clock.secondsSince1970());
    const QString document = model.library().folder() + u"/Tonequill %1.fcpxml"_s.arg(second);
    ASSERT_TRUE(QDir().mkpath(document + u"/in the way"_s));
    const AddOutcome outcome = test::await(addToLibrary(model));
    EXPECT_EQ(outcome.end, FlowEnd::failed);
    EXPECT_EQ(outcome.added.size(), 1);
    EXPECT_TRUE(outcome.uncut.isEmpty());
    EXPECT_TRUE(model.notices().isError());
    EXPECT_TRUE(model.notices().text().startsWith(u"“Tonequill %1.fcpxml” couldn't be written"_s.arg(second)));
    EXPECT_EQ(names(), QStringList{u"Door"_s}); // the cut; the raw sound has gone
    EXPECT_TRUE(apps.opened.isEmpty());
}

TEST_F(ExportFlowsTest, WhenTheIndexCannotBeWrittenTheRawSoundStaysAndThatIsSaid)
{
    const SoundItem raw = open();
    model.editor().setRange(0, 1);
    const QString index = model.library().folder() + u"/index.json"_s;
    ASSERT_TRUE(QFile::rename(index, index + u".aside"_s));
    ASSERT_TRUE(QDir().mkpath(index + u"/in the way"_s));
    const AddOutcome outcome = test::await(addToLibrary(model));
    EXPECT_EQ(outcome.end, FlowEnd::failed);
    EXPECT_EQ(model.notices().text(), u"The library could not be written: the disk may be full or read-only."_s);
    EXPECT_TRUE(model.library().find(raw.id));
    EXPECT_TRUE(QFile::exists(model.library().path(raw)));
    ASSERT_TRUE(QDir(index).removeRecursively()); // what is closed later is saved
}

TEST_F(ExportFlowsTest, WhatIsChangedInTheSourceMeanwhileGoesWithItsParts)
{
    const SoundItem raw = open();
    model.editor().setRange(0, 1);
    {
        const test::HeldBack held(workers.shown());
        auto adding = addToLibrary(model);
        model.library().update(raw, [](SoundItem& record) {
            record.name = u"Gate"_s;
            record.nameIsAuto = false;
            record.tags = {u"iron"_s};
            record.credit = u"Ada"_s;
        });
        held.letGo();
        test::await(std::move(adding));
    }
    ASSERT_EQ(names(), QStringList{u"Gate"_s});
    EXPECT_EQ(model.library().items().first().tags, QStringList{u"iron"_s});
    EXPECT_EQ(model.library().items().first().credit, u"Ada"_s);
    EXPECT_EQ(model.library().items().first().origin, SoundOrigin::cut);
    EXPECT_EQ(model.notices().text(), u"Added “Gate” to your library."_s);

    const SoundItem another = open(u"Window"_s);
    proposeTwo();
    const test::HeldBack held(workers.shown());
    auto adding = addToLibrary(model);
    model.library().rename(another, u"Shutter"_s);
    held.letGo();
    test::await(std::move(adding));
    EXPECT_EQ(names(), (QStringList{u"Shutter – Knock 2"_s, u"Shutter – Knock"_s, u"Gate"_s}));
}

TEST_F(ExportFlowsTest, AFileThatTurnsUpMeanwhileIsNotReplaced)
{
    apps.isThere = true;
    const SoundItem door = open();
    const QString sent = model.library().folder() + u"/FinalCut"_s;
    QDir().mkpath(sent);
    const test::HeldBack held(workers.shown());
    auto saving = saveToDesktop(model);
    auto sending = sendToFinalCut(model, {door});
    for (const QString& place : {saved(), sent})
        test::writeBytes(place + u"/Door.wav"_s, "theirs");
    held.letGo();
    EXPECT_EQ(test::await(std::move(saving)).paths, QStringList{saved() + u"/Door 2.wav"_s});
    EXPECT_EQ(test::await(std::move(sending)).paths, QStringList{sent + u"/Door 2.wav"_s});
    for (const QString& place : {saved(), sent})
        EXPECT_EQ(Files::readAll(place + u"/Door.wav"_s, 100), "theirs");
    EXPECT_EQ(savedFiles(), (QStringList{u"Door 2.wav"_s, u"Door.wav"_s}));
}

TEST_F(ExportFlowsTest, ANameWithAZeroInItReplacesNothing)
{
    const SoundItem item = open();
    test::writeBytes(saved() + u"/notes.txt"_s, "mine");
    const SoundItem hostile = model.library().rename(item, u"notes.txt"_s + QChar(u'\0') + u'x');
    EXPECT_EQ(hostile.name, u"notes.txt x"_s);
    SoundItem unclean = hostile;
    unclean.name = u"notes.txt"_s + QChar(u'\0') + u'x'; // as it may come from anywhere
    test::await(saveToDesktop(model, {unclean}));
    EXPECT_EQ(Files::readAll(saved() + u"/notes.txt"_s, 100), "mine");
    EXPECT_EQ(savedFiles(), (QStringList{u"notes.txt"_s, u"notes.txt x.wav"_s}));
}

TEST_F(ExportFlowsTest, ASaveThatFailsAfterTheFirstSaysSoAndKeepsIt)
{
    const SoundItem raw = open();
    proposeTwo();
    const test::HeldBack held(workers.shown());
    auto saving = saveToDesktop(model);
    held.letGo();
    while (savedFiles().filter(u"Door"_s).isEmpty())
        QThread::msleep(1);
    QFile::remove(model.library().path(raw)); // the second part comes from nowhere
    const FilesOutcome outcome = test::await(std::move(saving));
    EXPECT_EQ(outcome.end, FlowEnd::failed);
    EXPECT_EQ(outcome.paths, QStringList{saved() + u"/Door – Knock.wav"_s});
    EXPECT_EQ(model.notices().text(), u"“Door – Knock 2” couldn't be opened."_s);
    EXPECT_EQ(savedFiles(), QStringList{u"Door – Knock.wav"_s});
}

TEST_F(ExportFlowsTest, TheOpenSoundIsSentWithItsEffectsAndNoOther)
{
    apps.isThere = true;
    const SoundItem other = open(u"Other"_s);
    const SoundItem door = open();
    EffectSettings effects;
    effects.speed = 3;
    model.editor().setEffects(effects);
    test::await(sendToFinalCut(model, {door, other}));
    const QString sent = model.library().folder() + u"/FinalCut/"_s;
    EXPECT_NEAR(AudioFile(sent + u"Door.wav"_s).durationSeconds(), 1, 0.02);
    EXPECT_DOUBLE_EQ(AudioFile(sent + u"Other.wav"_s).durationSeconds(), 3);
}

TEST_F(ExportFlowsTest, AFullDiskIsToldOfTheSoundAndNotOfItsTemporaryFile)
{
    open();
    model.editor().setRange(0, 2);
    EffectSettings effects;
    effects.speed = 1.5;
    const test::FileSizeLimit limit(100'000);
    for (const EffectSettings& settings : {EffectSettings(), effects}) {
        model.editor().setEffects(settings);
        for (const bool isAdded : {true, false}) {
            if (isAdded)
                test::await(addToLibrary(model));
            else
                test::await(saveToDesktop(model));
            EXPECT_TRUE(model.notices().text().startsWith(u"“Door” couldn't be saved"_s)) << model.notices().text().toStdString();
        }
    }
}

TEST_F(ExportFlowsTest, ClosingInTheMiddleLeavesTheSourceAndNothingElse)
{
    const SoundItem raw = open();
    const QStringList before = temporaryFiles();
    proposeTwo();
    {
        const test::HeldBack held(workers.shown());
        startFlow(addToLibrary(model));
        startFlow(saveToDesktop(model));
        model.close();
    }
    EXPECT_FALSE(model.isWorking());
    EXPECT_EQ(names(), QStringList{u"Door"_s});
    EXPECT_TRUE(QFile::exists(model.library().path(raw)));
    EXPECT_EQ(temporaryFiles(), before);
    EXPECT_TRUE(savedFiles().isEmpty());
    EXPECT_THROW(test::await(addToLibrary(model)), Cancelled); // nothing is begun any more
    EXPECT_EQ(temporaryFiles(), before);
}
