#include "library/store/LibraryStore.h"
#include "base/Background.h"
#include "base/Uuid.h"
#include "fakes/FakeClock.h"
#include "library/store/LibraryIndex.h"
#include "platform/files/Files.h"
#include "platform/media/AudioFile.h"
#include "support/Await.h"
#include "support/FileSizeLimit.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Wav.h"
#include "support/WithoutPrivileges.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

class LibraryStoreTest : public testing::Test {
protected:
    std::unique_ptr<LibraryStore> open() { return std::make_unique<LibraryStore>(clock, workers, library); }
    QString source(const QString& name) const { return sources.filePath(name); }
    QStringList files() const { return QDir(library).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot); }
    // As it is once everything so far is saved.
    QByteArray index(const LibraryStore& store) const
    {
        EXPECT_TRUE(store.isSaved());
        return Files::readAll(library + u"/index.json"_s, 1 << 30);
    }
    QList<SoundItem> stored(const LibraryStore& store)
    {
        EXPECT_TRUE(store.isSaved());
        return open()->items();
    }
    SoundItem import(LibraryStore& store, const QString& name)
    {
        return test::await(store.importFile(test::writeTone(source(name)), SoundOrigin::imported));
    }
    // A library as another run left it.
    void putIndex(const QByteArray& json)
    {
        QDir().mkpath(library);
        test::writeBytes(library + u"/index.json"_s, json);
    }
    static QByteArray record(const QUuid& id, const QByteArray& fileName)
    {
        return "{\"id\":\"" + uuidText(id).toLatin1() + "\",\"name\":\"n\",\"fileName\":\"" + fileName +
               "\",\"duration\":1,\"tags\":[],\"descriptors\":[],\"origin\":\"imported\",\"createdAt\":0}";
    }

    QTemporaryDir base;
    QTemporaryDir sources;
    QString library = base.filePath(u"Tonequill/Library"_s);
    test::FakeClock clock;
    Workers workers;
};

QString importError(QCoro::Task<SoundItem>&& task)
{
    try {
        test::await(std::move(task));
    } catch (const UserError& error) {
        return error.message();
    }
    return u"nothing was thrown"_s;
}

} // namespace

TEST_F(LibraryStoreTest, StartsEmptyAndMakesItsFolder)
{
    const auto store = open();
    EXPECT_TRUE(store->items().isEmpty());
    EXPECT_TRUE(QDir(library).exists());
    EXPECT_TRUE(files().isEmpty()); // nothing is written until something changes
}

TEST_F(LibraryStoreTest, TakesASoundIn)
{
    const auto store = open();
    SoundInfo info;
    info.tags = {u"b"_s, u"a"_s};
    info.sourceID = u"fs:9"_s;
    info.license = u"CC0"_s;
    info.credit = u"Ana"_s;
    info.pageURL = u"https://example.org"_s;
    const SoundItem item =
        test::await(store->importFile(test::writeTone(source(u"Door Slam.WAV"_s), 0.5), SoundOrigin::imported, {u"a"_s}, info));
    EXPECT_EQ(item.name, u"Door Slam"_s);
    EXPECT_EQ(item.fileName, uuidText(item.id) + u".wav"_s);
    EXPECT_EQ(item.duration, 0.5);
    EXPECT_EQ(item.tags, (QStringList{u"a"_s, u"b"_s, u"a"_s}));
    EXPECT_EQ(item.descriptors.value(0), u"short"_s);
    EXPECT_EQ(item.origin, SoundOrigin::imported);
    EXPECT_EQ(item.createdAt, clock.secondsSince2001());
    EXPECT_EQ(item.nameIsAuto, false);
    EXPECT_EQ(item.sourceID, u"fs:9"_s);
    EXPECT_EQ(item.license, u"CC0"_s);
    EXPECT_EQ(item.credit, u"Ana"_s);
    EXPECT_EQ(item.pageURL, u"https://example.org"_s);
    ASSERT_TRUE(item.thumbnail);
    EXPECT_EQ(item.thumbnail->size(), 48U);
    EXPECT_EQ(store->items(), QList<SoundItem>{item});
    EXPECT_EQ(files(), (QStringList{item.fileName, u"index.json"_s}));
    EXPECT_EQ(index(*store), '[' + LibraryIndex::encode(item) + ']');
    EXPECT_TRUE(store->contains(u"fs:9"_s));
    EXPECT_FALSE(store->contains(u"fs:1"_s));
    EXPECT_FALSE(store->contains(u""_s));
}

TEST_F(LibraryStoreTest, TheNewestSoundStandsInFrontAndSurvivesARestart)
{
    auto store = open();
    const SoundItem first = import(*store, u"one door.wav"_s);
    const SoundItem second = import(*store, u"IMG_2041.wav"_s);
    EXPECT_EQ(second.nameIsAuto, true); // a camera's name may be replaced
    EXPECT_EQ(store->items(), (QList<SoundItem>{second, first}));
    store.reset();
    EXPECT_EQ(open()->items(), (QList<SoundItem>{second, first}));
}

TEST_F(LibraryStoreTest, OnlyImportsMayHaveAReplaceableName)
{
    const auto store = open();
    const QString file = test::writeTone(source(u"clip_01.wav"_s));
    EXPECT_EQ(test::await(store->importFile(file, SoundOrigin::cut)).nameIsAuto, false);
    EXPECT_EQ(test::await(store->importFile(file, SoundOrigin::generated)).nameIsAuto, false);
    EXPECT_EQ(test::await(store->importFile(file, SoundOrigin::imported)).nameIsAuto, true);
    SoundInfo info;
    info.name = u"Chosen Name"_s;
    const SoundItem named = test::await(store->importFile(file, SoundOrigin::imported, {}, info));
    EXPECT_EQ(named.name, u"Chosen Name"_s);
    EXPECT_EQ(named.nameIsAuto, false);
}

TEST_F(LibraryStoreTest, TheNameIsTakenAsItStands)
{
    const auto store = open();
    EXPECT_EQ(import(*store, u" صوت.باب .wav"_s).name, u" صوت.باب "_s);
    const SoundItem bare = import(*store, u"no extension"_s);
    EXPECT_EQ(bare.name, u"no extension"_s);
    EXPECT_EQ(bare.fileName, uuidText(bare.id) + u'.');
}

TEST_F(LibraryStoreTest, WhatIsNoSoundLeavesNothingBehind)
{
    const auto store = open();
    import(*store, u"good sound.wav"_s);
    const QByteArray before = index(*store);
    const QStringList filesBefore = files();
    test::writeBytes(source(u"fake.wav"_s), "this is text, whatever the name says\n");
    test::writeBytes(source(u"empty.mp3"_s), "");
    ASSERT_TRUE(QDir(sources.path()).mkdir(u"folder.wav"_s));
    const QString sentence = u" is not a format Tonequill can read. Try WAV, MP3, M4A, AIFF, MP4, MOV or M4V."_s;
    for (const QString& name : {u"fake"_s, u"empty"_s, u"folder"_s, u"missing"_s}) {
        const QString file = source(name == u"empty"_s ? u"empty.mp3"_s : name + u".wav"_s);
        EXPECT_EQ(importError(store->importFile(file, SoundOrigin::imported)), name + sentence);
    }
    EXPECT_EQ(index(*store), before);
    EXPECT_EQ(files(), filesBefore);
    EXPECT_EQ(store->items().size(), 1);
}

TEST_F(LibraryStoreTest, ASoundInMemoryComesInUnderItsName)
{
    const auto store = open();
    const QByteArray bytes = Files::readAll(test::writeTone(source(u"x.wav"_s)), 1 << 20);
    const SoundItem item = test::await(store->importData(bytes, u"clip"_s, u"wav"_s, SoundOrigin::generated, {u"ai"_s}));
    EXPECT_EQ(item.name, u"clip"_s);
    EXPECT_EQ(item.origin, SoundOrigin::generated);
    EXPECT_EQ(item.nameIsAuto, false);
    EXPECT_EQ(item.tags, QStringList{u"ai"_s});
    EXPECT_EQ(importError(store->importData("rubbish", u"Bad"_s, u"wav"_s, SoundOrigin::generated)),
              u"Bad is not a format Tonequill can read. Try WAV, MP3, M4A, AIFF, MP4, MOV or M4V."_s);
    const QStringList left = QDir(QDir::tempPath()).entryList({u"*-*-*-*-*.wav"_s}, QDir::Files);
    for (const QString& name : left)
        EXPECT_FALSE(uuidFromText(Files::stem(name))) << name.toStdString();
}

TEST_F(LibraryStoreTest, UpdatesAndRenames)
{
    const auto store = open();
    const SoundItem item = import(*store, u"IMG_2041.wav"_s);
    const SoundItem renamed = store->rename(item, u"Door"_s);
    EXPECT_EQ(renamed.name, u"Door"_s);
    EXPECT_EQ(renamed.nameIsAuto, true); // not given, not touched
    EXPECT_EQ(store->rename(item, u"Gate"_s, false).nameIsAuto, false);
    EXPECT_EQ(store->update(item, [](SoundItem& stored) { stored.tags = {u"x"_s}; }).name, u"Gate"_s);
    EXPECT_EQ(stored(*store), store->items());
    EXPECT_EQ(store->items().first().tags, QStringList{u"x"_s});
}

TEST_F(LibraryStoreTest, ADeletedRecordIsNotRecreatedByAnUpdate)
{
    const auto store = open();
    const SoundItem item = import(*store, u"door slam.wav"_s);
    store->deleteItems({item});
    EXPECT_EQ(index(*store), "[]");
    EXPECT_EQ(files(), QStringList{u"index.json"_s});
    EXPECT_EQ(store->rename(item, u"Ghost"_s), item);
    EXPECT_TRUE(store->items().isEmpty());
    store->deleteItems({item}); // and once more does no harm
}

TEST_F(LibraryStoreTest, DeleteRemovesEveryRecordOfAnId)
{
    const QUuid id = QUuid::createUuid();
    putIndex('[' + record(id, "a.wav") + ',' + record(QUuid::createUuid(), "b.wav") + ',' + record(id, "c.wav") + ']');
    for (const char* name : {"a.wav", "b.wav", "c.wav"})
        test::writeBytes(library + u'/' + QString::fromLatin1(name), "x");
    const auto store = open();
    ASSERT_EQ(store->items().size(), 3);
    store->deleteItems({store->items().first()});
    ASSERT_EQ(store->items().size(), 1);
    EXPECT_EQ(store->items().first().fileName, u"b.wav"_s);
}

TEST_F(LibraryStoreTest, ASoundWhoseFileIsGoneVanishesAtTheNextChange)
{
    auto store = open();
    const SoundItem lost = import(*store, u"lost sound.wav"_s);
    const SoundItem kept = import(*store, u"kept sound.wav"_s);
    store.reset();
    ASSERT_TRUE(QFile::remove(library + u'/' + lost.fileName));
    store = open();
    EXPECT_EQ(store->items(), QList<SoundItem>{kept});
    EXPECT_TRUE(index(*store).contains("lost sound"));
    store->rename(kept, u"Renamed"_s);
    EXPECT_FALSE(index(*store).contains("lost sound"));
}

TEST_F(LibraryStoreTest, AnUnreadableIndexGivesAnEmptyLibraryAndIsReplaced)
{
    putIndex("[{\"id\":7}]");
    test::writeBytes(library + u"/old.wav"_s, "x");
    const auto store = open();
    EXPECT_TRUE(store->items().isEmpty());
    EXPECT_EQ(index(*store), "[{\"id\":7}]");
    store->sweepUnfinished();
    EXPECT_TRUE(QFile::exists(library + u"/old.wav"_s));
    import(*store, u"new sound.wav"_s);
    EXPECT_EQ(stored(*store).size(), 1);
}

TEST_F(LibraryStoreTest, HostileFileNamesNeverLeaveTheFolder)
{
    const QString outside = base.filePath(u"Tonequill/secret.wav"_s);
    QDir().mkpath(library + u"/sub"_s);
    test::writeBytes(outside, "mine");
    test::writeBytes(library + u"/sub/in.wav"_s, "x");
    QByteArrayList records;
    for (const QByteArray& name : {QByteArray("../secret.wav"), QByteArray("/etc/passwd"), QByteArray(""), QByteArray("."),
                                   QByteArray(".."), QByteArray("sub"), QByteArray("sub/in.wav"), QByteArray("index.json"),
                                   QByteArray(4096, 'x'), QByteArray("a\\u0000b"), QByteArray("sub/../../secret.wav")})
        records << record(QUuid::createUuid(), name);
    putIndex('[' + records.join(',') + ']');
    const auto store = open();
    EXPECT_TRUE(store->items().isEmpty());
    SoundItem hostile;
    hostile.id = QUuid::createUuid();
    for (const QString& name : {u"../secret.wav"_s, u"index.json"_s, outside}) {
        hostile.fileName = name;
        store->deleteItems({hostile});
    }
    EXPECT_TRUE(QFile::exists(outside));
    EXPECT_EQ(index(*store), "[]");
}

TEST_F(LibraryStoreTest, ALibraryThatCannotBeWrittenStaysUsable)
{
    const auto store = open();
    const SoundItem item = import(*store, u"door slam.wav"_s);
    // A folder in the index' place refuses every save, whoever runs the test.
    const QByteArray before = index(*store);
    ASSERT_TRUE(QFile::remove(library + u"/index.json"_s));
    ASSERT_TRUE(QDir(library).mkpath(u"index.json/x"_s));
    EXPECT_EQ(store->rename(item, u"Gate"_s).name, u"Gate"_s);
    EXPECT_FALSE(store->isSaved());
    EXPECT_EQ(store->items().first().name, u"Gate"_s);
    ASSERT_TRUE(QDir(library + u"/index.json"_s).removeRecursively());
    store->update(item, [](SoundItem& stored) { stored.tags = {u"late"_s}; });
    EXPECT_TRUE(store->isSaved());
    EXPECT_EQ(stored(*store).first().name, u"Gate"_s);
    EXPECT_EQ(files(), (QStringList{item.fileName, u"index.json"_s}));
}

TEST_F(LibraryStoreTest, SweepsAwayWhatAKilledImportLeft)
{
    auto store = open();
    const SoundItem item = import(*store, u"door slam.wav"_s);
    store.reset();
    // Killed before the index named it, and killed just after.
    test::writeBytes(library + u"/.importing-HALF.wav"_s, "");
    test::writeBytes(library + u"/HALF.wav"_s, "half");
    test::writeBytes(library + u"/.importing-"_s + item.fileName, "");
    test::writeBytes(library + u"/.importing-..wav"_s, "");
    test::writeBytes(library + u"/.tonequill-abc.tmp"_s, "half an index");
    test::writeBytes(library + u"/zz friend's file.wav"_s, "not ours");
    open()->sweepUnfinished();
    EXPECT_EQ(files(), (QStringList{item.fileName, u"index.json"_s, u"zz friend's file.wav"_s}));
}

TEST_F(LibraryStoreTest, TwoImportsAtOnceBothArrive)
{
    const auto store = open();
    auto one = store->importFile(test::writeTone(source(u"first one.wav"_s), 2), SoundOrigin::imported);
    auto two = store->importFile(test::writeTone(source(u"second one.wav"_s), 0.1), SoundOrigin::imported);
    const SoundItem a = test::await(std::move(one));
    const SoundItem b = test::await(std::move(two));
    EXPECT_NE(a.id, b.id);
    EXPECT_EQ(store->items().size(), 2);
    EXPECT_EQ(stored(*store), store->items());
}

TEST_F(LibraryStoreTest, ACancelledImportLeavesNothing)
{
    const auto store = open();
    const auto progress = std::make_shared<Progress>();
    progress->cancel();
    EXPECT_THROW(test::await(store->importFile(test::writeTone(source(u"a b c.wav"_s)), SoundOrigin::imported, {}, {}, progress)),
                 Cancelled);
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(LibraryStoreTest, NoControlCharacterEntersAName)
{
    const QString zero = QChar(u'\0');
    auto store = open();
    SoundInfo info;
    info.name = u"notes.txt"_s + zero + u"x"_s;
    const QString file = test::writeTone(source(u"a\nb\x1b.wav"_s));
    EXPECT_EQ(test::await(store->importFile(file, SoundOrigin::imported, {}, info)).name, u"notes.txt x"_s);
    const SoundItem item = test::await(store->importFile(file, SoundOrigin::imported));
    EXPECT_EQ(item.name, u"a b "_s);
    EXPECT_EQ(store->rename(item, u"Door\r\n"_s + zero).name, u"Door   "_s);
    EXPECT_EQ(store->update(item, [&](SoundItem& stored) { stored.name = zero + u"\u0085Gate"_s; }).name, u"  Gate"_s);
    EXPECT_TRUE(store->isSaved());
    store.reset();
    const QUuid id = QUuid::createUuid();
    putIndex('[' + record(id, "a.wav").replace("\"n\"", "\"a\\u0000b\\u001b\"") + ']');
    test::writeBytes(library + u"/a.wav"_s, "x");
    ASSERT_EQ(open()->items().size(), 1);
    EXPECT_EQ(open()->items().first().name, u"a b "_s);
}

TEST_F(LibraryStoreTest, AnIdentityOfZerosIsOneAsWell)
{
    putIndex('[' + record(QUuid(), "a.wav") + ',' + record(QUuid::createUuid(), "b.wav") + ']');
    for (const QString& name : {u"/a.wav"_s, u"/b.wav"_s})
        test::writeBytes(library + name, "x");
    EXPECT_EQ(open()->items().size(), 2);
}

TEST_F(LibraryStoreTest, AFolderThatCannotBeListedLosesNoRecord)
{
    putIndex('[' + record(QUuid::createUuid(), "a.wav") + ',' + record(QUuid::createUuid(), "../b.wav") + ']');
    test::writeBytes(library + u"/a.wav"_s, "x");
    test::writeBytes(library + u"/HALF.wav"_s, "half");
    test::writeBytes(library + u"/.importing-HALF.wav"_s, "");
    const QByteArray folderName = QFile::encodeName(library);
    ASSERT_EQ(::chmod(folderName.constData(), 0300), 0); // its files may be opened, and nobody may list it
    {
        const test::WithoutPrivileges user;
        const auto store = open();
        ASSERT_EQ(store->items().size(), 1);
        EXPECT_EQ(store->items().first().fileName, u"a.wav"_s);
        store->sweepUnfinished();
        store->rename(store->items().first(), u"Door"_s);
        EXPECT_FALSE(store->isSaved()); // a folder that can't be opened can't be synced
    }
    ASSERT_EQ(::chmod(folderName.constData(), 0700), 0);
    EXPECT_EQ(files(), (QStringList{u".importing-HALF.wav"_s, u"a.wav"_s, u"HALF.wav"_s, u"index.json"_s}));
    ASSERT_EQ(open()->items().size(), 1);
}

TEST_F(LibraryStoreTest, WhatCannotBeDeletedInTheIndexStaysWithItsFile)
{
    const auto store = open();
    for (const QString& name : {u"one.wav"_s, u"two.wav"_s, u"three.wav"_s})
        import(*store, name);
    const QList<SoundItem> before = store->items();
    EXPECT_TRUE(store->isSaved());
    const QStringList filesBefore = files();
    {
        const test::FileSizeLimit full(10);
        auto deleting = store->deleteItems({before[0], before[2]});
        EXPECT_EQ(store->items(), QList<SoundItem>{before[1]}); // at once
        EXPECT_FALSE(test::await(std::move(deleting)));
    }
    EXPECT_EQ(store->items(), before);
    EXPECT_EQ(files(), filesBefore);
    store->rename(before[1], u"Door"_s); // what is saved next names them all
    EXPECT_EQ(stored(*store), store->items());
    EXPECT_EQ(store->items().size(), 3);
    EXPECT_EQ(files(), filesBefore);
    EXPECT_TRUE(test::await(store->deleteItems({before[0], before[2]})));
    EXPECT_EQ(files(), (QStringList{before[1].fileName, u"index.json"_s}));
}

TEST_F(LibraryStoreTest, AFileThatAnotherRecordNamesStays)
{
    const QUuid doomed = QUuid::createUuid();
    putIndex('[' + record(doomed, "a.wav") + ',' + record(QUuid::createUuid(), "a.wav") + ']');
    test::writeBytes(library + u"/a.wav"_s, "x");
    const auto store = open();
    ASSERT_EQ(store->items().size(), 2);
    EXPECT_TRUE(test::await(store->deleteItems({*store->find(doomed)})));
    EXPECT_EQ(files(), (QStringList{u"a.wav"_s, u"index.json"_s}));
}

TEST_F(LibraryStoreTest, TheSoundOfAVideoComesInAndAVideoWithoutOneIsTold)
{
    const auto store = open();
    const QString film =
        test::makeMedia(u"My Film.mp4"_s, test::picture(1) + test::wandering(48'000, 2, 1) +
                                              QStringList{u"-c:v"_s, u"mpeg4"_s, u"-c:a"_s, u"aac"_s, u"-shortest"_s});
    const SoundItem item = test::await(store->importFile(film, SoundOrigin::imported));
    EXPECT_EQ(item.name, u"My Film"_s);
    EXPECT_EQ(item.fileName, uuidText(item.id) + u".m4a"_s);
    EXPECT_NEAR(item.duration, 1, 0.05);
    const AudioFile sound(store->path(item));
    EXPECT_EQ(sound.channelCount(), 2);
    EXPECT_TRUE(store->isSaved());
    EXPECT_EQ(files(), (QStringList{item.fileName, u"index.json"_s}));

    const QString silent = test::makeMedia(u"Silent.mp4"_s, test::picture(1) + QStringList{u"-c:v"_s, u"mpeg4"_s});
    EXPECT_EQ(importError(store->importFile(silent, SoundOrigin::imported)), u"Silent has no audio track."_s);
    EXPECT_EQ(files(), (QStringList{item.fileName, u"index.json"_s}));
}

TEST_F(LibraryStoreTest, AFailureIsToldOfTheSoundAndNotOfItsFile)
{
    const auto store = open();
    const QString file = test::writeTone(source(u"Door.wav"_s), 2, 48'000);
    {
        const test::FileSizeLimit full(1'000);
        EXPECT_EQ(importError(store->importFile(file, SoundOrigin::imported)),
                  u"“Door.wav” couldn't be copied because file too large."_s);
        SoundInfo info;
        info.name = u"Gate"_s;
        EXPECT_EQ(importError(store->importFile(file, SoundOrigin::cut, {}, info)),
                  u"“Gate” couldn't be copied because file too large."_s);
        EXPECT_EQ(importError(store->importData(QByteArray(9'999, 'x'), u"Made"_s, u"wav"_s, SoundOrigin::generated)),
                  u"“Made” couldn't be written because file too large."_s);
    }
    QDir(library).removeRecursively(); // the mark is the first that can't be made
    EXPECT_EQ(importError(store->importFile(file, SoundOrigin::imported)),
              u"“Door.wav” couldn't be written because it isn't there any more."_s);
}
