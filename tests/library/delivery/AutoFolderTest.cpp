#include "library/delivery/AutoFolder.h"

#include "audio/export/AudioExporter.h"
#include "base/Uuid.h"
#include "fakes/FakeClock.h"
#include "platform/files/Files.h"
#include "platform/media/AudioFile.h"
#include "support/Await.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QDir>
#include <QTemporaryDir>
#include <QThread>

#include <gmock/gmock.h>

#include <atomic>

#include <sys/resource.h>
#include <unistd.h>

using namespace tonequill;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
using Step = AutoFolder::Step;
using Sound = AutoFolder::Sound;

namespace {

Sound sound(const QString& name)
{
    return {QUuid::createUuid(), name, {}, 1};
}

QStringList fileNames(const QList<Step>& steps)
{
    QStringList names;
    for (const Step& step : steps)
        names << step.fileName;
    return names;
}

class AutoFolderTest : public testing::Test {
protected:
    AutoFolderTest()
    {
        QDir().mkpath(folder);
        restart();
    }

    void restart()
    {
        autoFolder.reset();
        defaults = std::make_unique<Defaults>(base.filePath(u"config/settings.ini"_s));
        autoFolder = std::make_unique<AutoFolder>(*defaults, clock, workers,
                                                  [this](const Sound& one, const QString& path, const Progress&) {
                                                      if (failing.contains(one.name))
                                                          throw FileError(FileError::Action::write, path, ENOSPC);
                                                      test::writeBytes(path, one.name.toUtf8());
                                                  });
    }
    void turnOn()
    {
        autoFolder->chooseFolder(folder);
        autoFolder->setEnabled(true);
    }
    int sync(const QList<Sound>& sounds) { return test::await(autoFolder->sync(sounds)); }
    QStringList files() const { return filesIn(folder); }
    static QStringList filesIn(const QString& path)
    {
        return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    QByteArray content(const QString& name) const { return Files::readAll(folder + u'/' + name, 1000); }

    QTemporaryDir base;
    QString folder = base.filePath(u"Movies/Sounds"_s);
    test::FakeClock clock;
    Workers workers;
    std::unique_ptr<Defaults> defaults;
    std::unique_ptr<AutoFolder> autoFolder;
    QStringList failing;
};

} // namespace

TEST(AutoFolderPlan, AnEmptyLibraryNeedsNothing)
{
    EXPECT_TRUE(AutoFolder::plan({}, {}, {u"x.wav"_s}).isEmpty());
}

TEST(AutoFolderPlan, NewSoundsGetFreeNamesInLibraryOrder)
{
    const QList<Sound> dogs{sound(u"Dog"_s), sound(u"Dog"_s), sound(u"dog"_s)};
    EXPECT_EQ(AutoFolder::plan(dogs, {}, {}),
              (QList<Step>{{dogs[0].id, u"Dog.wav"_s, {}}, {dogs[1].id, u"Dog 2.wav"_s, {}}, {dogs[2].id, u"dog 3.wav"_s, {}}}));
    EXPECT_EQ(fileNames(AutoFolder::plan({dogs[0]}, {}, {u"DOG.WAV"_s})), QStringList{u"Dog 2.wav"_s});
    EXPECT_EQ(fileNames(AutoFolder::plan({sound(u"E\u0301lan"_s)}, {}, {u"élan.wav"_s})), QStringList{u"E\u0301lan 2.wav"_s});
    EXPECT_EQ(fileNames(AutoFolder::plan({sound(u"a/b"_s), sound(u"a:b"_s), sound(u" "_s), sound(u"باب 👍"_s)}, {}, {})),
              (QStringList{u"a-b.wav"_s, u"a-b 2.wav"_s, u"Sound.wav"_s, u"باب 👍.wav"_s}));
}

TEST(AutoFolderPlan, ARenamedSoundIsARenamedFile)
{
    const Sound cat = sound(u"Cat"_s);
    const AutoFolderManifest manifest{{uuidText(cat.id), {u"Dog.wav"_s, u"Dog"_s}}};
    EXPECT_EQ(AutoFolder::plan({cat}, manifest, {u"Dog.wav"_s}), (QList<Step>{{cat.id, u"Cat.wav"_s, u"Dog.wav"_s}}));
    // In another case it may keep its place.
    const Sound dog{cat.id, u"dog"_s, {}, 1};
    EXPECT_EQ(AutoFolder::plan({dog}, manifest, {u"Dog.wav"_s}), (QList<Step>{{dog.id, u"dog.wav"_s, u"Dog.wav"_s}}));
    // A name that differs only in what no file name may hold is a step all the same.
    const Sound slash{cat.id, u"a/b"_s, {}, 1};
    const AutoFolderManifest colon{{uuidText(cat.id), {u"a-b.wav"_s, u"a:b"_s}}};
    EXPECT_EQ(AutoFolder::plan({slash}, colon, {u"a-b.wav"_s}), (QList<Step>{{slash.id, u"a-b.wav"_s, u"a-b.wav"_s}}));
}

TEST(AutoFolderPlan, WhatTheUserRemovedStaysAway)
{
    const Sound dog = sound(u"Dog"_s);
    const AutoFolderManifest same{{uuidText(dog.id), {u"Dog.wav"_s, u"Dog"_s}}};
    EXPECT_TRUE(AutoFolder::plan({dog}, same, {}).isEmpty());
    const AutoFolderManifest renamed{{uuidText(dog.id), {u"Cat.wav"_s, u"Cat"_s}}};
    EXPECT_TRUE(AutoFolder::plan({dog}, renamed, {}).isEmpty());
    EXPECT_TRUE(AutoFolder::plan({dog}, renamed, {u"CAT.wav"_s}).isEmpty()); // exactly that file
}

TEST(AutoFolderPlan, CollidingRenamesAreNumbered)
{
    const Sound one = sound(u"Cat"_s);
    const Sound two = sound(u"Cat"_s);
    const AutoFolderManifest manifest{{uuidText(one.id), {u"A.wav"_s, u"A"_s}}, {uuidText(two.id), {u"B.wav"_s, u"B"_s}}};
    EXPECT_EQ(fileNames(AutoFolder::plan({one, two}, manifest, {u"A.wav"_s, u"B.wav"_s})),
              (QStringList{u"Cat.wav"_s, u"Cat 2.wav"_s}));
}

TEST(AutoFolderPlan, LongNamesFitAFileName)
{
    const QString family = u"👩‍👩‍👧"_s; // 18 bytes
    const QList<Sound> families{sound(family.repeated(80)), sound(family.repeated(80))};
    const QStringList names = fileNames(AutoFolder::plan(families, {}, {}));
    EXPECT_NE(names[0], names[1]);
    for (const QString& name : names) {
        EXPECT_LE(name.toUtf8().size(), 255);
        EXPECT_GE(name.toUtf8().size(), 220);
        EXPECT_TRUE(name.startsWith(family) && name.endsWith(u".wav"_s));
    }
    EXPECT_TRUE(names[1].endsWith(u"👧 2.wav"_s));
}

TEST(AutoFolderPlan, NamesOfEveryLengthAreCounted)
{
    for (int bytes = 230; bytes < 260; ++bytes) {
        const QString name = u"🎧"_s.repeated(bytes / 4) + QString(bytes % 4, u'a');
        const QStringList names = fileNames(AutoFolder::plan(QList<Sound>(120, sound(name)), {}, {}));
        EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), 120) << bytes;
        EXPECT_TRUE(names[119].endsWith(u" 120.wav"_s)) << bytes;
        for (const QString& one : names)
            EXPECT_LE(one.toUtf8().size(), 255);
    }
}

TEST(AutoFolderPlan, ANameThatARenameGivesUpIsTakenAgain)
{
    const Sound cat = sound(u"Cat"_s);
    const AutoFolderManifest manifest{{uuidText(cat.id), {u"Dog 2.wav"_s, u"Dog"_s}}};
    EXPECT_EQ(fileNames(AutoFolder::plan({sound(u"Dog"_s), cat, sound(u"Dog"_s)}, manifest, {u"Dog.wav"_s, u"Dog 2.wav"_s})),
              (QStringList{u"Dog 3.wav"_s, u"Cat.wav"_s, u"Dog 2.wav"_s}));
}

TEST(AutoFolderManifest, ReadsBackWhatItWrote)
{
    const AutoFolderManifest manifest{{u"A"_s, {u"Tür \"1\".wav"_s, u"باب\n"_s}}, {u"B"_s, {u""_s, u""_s}}};
    EXPECT_EQ(decodeManifest(encodeManifest(manifest)), manifest);
    EXPECT_EQ(encodeManifest({{u"A"_s, {u"f"_s, u"n"_s}}}), R"({"A":{"file":"f","name":"n"}})");
    EXPECT_EQ(encodeManifest({}), "{}");
}

TEST(AutoFolderManifest, GarbageIsNone)
{
    for (const QByteArray& json :
         {QByteArray(), QByteArray("x"), QByteArray("[]"), QByteArray("{\"A\":1}"), QByteArray("\xff\0{", 3),
          QByteArray("{\"A\":{\"file\":\"f\"}}"), QByteArray("{\"A\":{\"file\":1,\"name\":\"n\"}}"),
          QByteArray("{\"A\":{\"file\":\"f\",\"name\":\"n\"}"), QByteArray(10000, '{')})
        EXPECT_EQ(decodeManifest(json), std::nullopt) << json.left(30).toStdString();
}

TEST_F(AutoFolderTest, IsOffUntilItIsTurnedOnAndHasAFolder)
{
    EXPECT_FALSE(autoFolder->enabled() || autoFolder->hasFolder() || autoFolder->isSyncing());
    EXPECT_EQ(sync({sound(u"Dog"_s)}), 0);
    autoFolder->setEnabled(true);
    EXPECT_EQ(sync({sound(u"Dog"_s)}), 0);
    EXPECT_FALSE(autoFolder->lastSync());
    EXPECT_EQ(autoFolder->copiedText(1), u"Copied 1 sound to your folder."_s); // which has no name
    autoFolder->chooseFolder(base.filePath(u"missing"_s));
    EXPECT_FALSE(autoFolder->hasFolder());
    autoFolder->chooseFolder(folder);
    EXPECT_TRUE(autoFolder->hasFolder() && autoFolder->enabled());
    EXPECT_EQ(autoFolder->folderName(), u"Sounds"_s);
    EXPECT_EQ(sync({}), 0);
    EXPECT_EQ(autoFolder->lastSync(), clock.secondsSince2001()); // an empty run is a run
}

TEST_F(AutoFolderTest, CopiesOnceRenamesAndRespectsWhatWasRemoved)
{
    turnOn();
    QList<Sound> sounds{sound(u"Dog"_s), sound(u"Cat"_s), sound(u"Cow"_s)};
    EXPECT_EQ(sync(sounds), 3);
    EXPECT_EQ(files(), (QStringList{u"Cat.wav"_s, u"Cow.wav"_s, u"Dog.wav"_s}));
    EXPECT_EQ(autoFolder->copiedCount(), 3);
    EXPECT_EQ(sync(sounds), 0);

    sounds[0].name = u"Wolf"_s;
    QFile::remove(folder + u"/Cat.wav"_s);
    QFile::remove(folder + u"/Cow.wav"_s);
    sounds[1].name = u"Tiger"_s;
    EXPECT_EQ(sync(sounds), 0); // a rename is no copy
    EXPECT_EQ(files(), QStringList{u"Wolf.wav"_s});
    EXPECT_EQ(content(u"Wolf.wav"_s), "Dog");
    EXPECT_EQ(autoFolder->manifest().value(uuidText(sounds[1].id)), (AutoFolderEntry{u"Cat.wav"_s, u"Cat"_s}));
    EXPECT_EQ(autoFolder->copiedCount(), 3);
    EXPECT_EQ(autoFolder->problem(), QString());
}

TEST_F(AutoFolderTest, TwoSoundsThatSwapTheirNamesKeepTheirFiles)
{
    turnOn();
    QList<Sound> sounds{sound(u"A"_s), sound(u"B"_s)};
    sync(sounds);
    std::swap(sounds[0].name, sounds[1].name);
    sync(sounds);
    EXPECT_THAT(QList<QByteArray>({content(files()[0]), content(files()[1])}), UnorderedElementsAre("A", "B"));
    EXPECT_EQ(files(), (QStringList{u"A.wav"_s, u"B 2.wav"_s})); // "B" was taken when the first asked for it
    EXPECT_EQ(autoFolder->problem(), QString());
}

TEST_F(AutoFolderTest, OneFailureLeavesTheOthersAndIsTriedAgain)
{
    turnOn();
    QList<Sound> sounds;
    for (int i = 0; i < 10; ++i)
        sounds << sound(u"Sound %1"_s.arg(i));
    failing = {u"Sound 4"_s};
    EXPECT_EQ(sync(sounds), 9);
    EXPECT_EQ(autoFolder->copiedText(9), u"Copied 9 sounds to Sounds."_s);
    EXPECT_EQ(autoFolder->copiedCount(), 9);
    EXPECT_EQ(autoFolder->problem(), u"“Sound 4.wav” couldn't be written because the disk is full."_s);
    EXPECT_EQ(files().size(), 9);
    failing << u"Sound 7"_s;
    sounds.insert(3, sound(u"New"_s));
    sounds << sound(u"Sound 7"_s); // the last failure counts
    EXPECT_EQ(sync(sounds), 1);
    EXPECT_EQ(autoFolder->problem(), u"“Sound 7 2.wav” couldn't be written because the disk is full."_s);
    failing.removeAll(u"Sound 7"_s);
    EXPECT_EQ(sync(sounds), 1);
    failing.clear();
    EXPECT_EQ(sync(sounds), 1);
    EXPECT_EQ(autoFolder->copiedText(1), u"Copied 1 sound to Sounds."_s);
    EXPECT_EQ(autoFolder->problem(), QString());
}

TEST_F(AutoFolderTest, ARenameToTheSameFileNameIsAProblem)
{
    turnOn();
    QList<Sound> sounds{sound(u"a:b"_s)};
    sync(sounds);
    sounds[0].name = u"a/b"_s;
    sync(sounds);
    EXPECT_EQ(autoFolder->problem(), u"“a-b.wav” couldn't be renamed because there is another file of that name."_s);
    EXPECT_EQ(files(), QStringList{u"a-b.wav"_s});
    EXPECT_EQ(autoFolder->manifest().first().name, u"a:b"_s);
}

TEST_F(AutoFolderTest, AFolderThatIsGoneIsAProblemAndComesBack)
{
    turnOn();
    const QList<Sound> sounds{sound(u"Dog"_s)};
    sync(sounds);
    ASSERT_TRUE(QDir().rename(folder, base.filePath(u"away"_s)));
    QDir().mkpath(folder);
    const QString problem = u"Tonequill can't open that folder any more. Choose it again."_s;
    EXPECT_EQ(sync(sounds + QList<Sound>{sound(u"Cat"_s)}), 0);
    EXPECT_EQ(autoFolder->problem(), problem);
    EXPECT_EQ(autoFolder->copiedCount(), 1);
    EXPECT_EQ(files(), QStringList());
    ASSERT_TRUE(QDir().rmdir(folder));
    EXPECT_EQ(sync(sounds), 0);
    EXPECT_EQ(autoFolder->problem(), problem);
    ASSERT_TRUE(QDir().rename(base.filePath(u"away"_s), folder));
    EXPECT_EQ(sync(sounds), 0);
    EXPECT_EQ(autoFolder->problem(), QString());
    EXPECT_EQ(files(), QStringList{u"Dog.wav"_s});
}

TEST_F(AutoFolderTest, AFolderThatTakesNoFilesIsAProblem)
{
    autoFolder->chooseFolder(u"/proc/self"_s); // nobody, not even root, writes there
    autoFolder->setEnabled(true);
    EXPECT_EQ(sync({sound(u"Dog"_s)}), 0);
    EXPECT_TRUE(autoFolder->problem().startsWith(u"“Dog.wav” couldn't be written because "_s))
        << autoFolder->problem().toStdString();
    EXPECT_EQ(autoFolder->copiedCount(), 0);
}

TEST_F(AutoFolderTest, AnotherFolderGetsEverySound)
{
    turnOn();
    const QList<Sound> sounds{sound(u"Dog"_s), sound(u"Cat"_s)};
    sync(sounds);
    QFile::remove(folder + u"/Dog.wav"_s);
    const QString other = base.filePath(u"Other"_s);
    QDir().mkpath(other);
    autoFolder->chooseFolder(other);
    EXPECT_EQ(autoFolder->copiedCount(), 0);
    EXPECT_EQ(sync(sounds), 2);
    EXPECT_EQ(files(), QStringList{u"Cat.wav"_s});
    EXPECT_EQ(filesIn(other), (QStringList{u"Cat.wav"_s, u"Dog.wav"_s}));
}

TEST_F(AutoFolderTest, AFolderChosenInTheMiddleOfARunStartsFromNothing)
{
    turnOn();
    const QString other = base.filePath(u"Other"_s);
    QDir().mkpath(other);
    QList<Sound> sounds;
    for (int i = 0; i < 5; ++i)
        sounds << sound(u"Sound %1"_s.arg(i));
    const auto connection = QObject::connect(autoFolder.get(), &AutoFolder::changed, [&] {
        if (autoFolder->stepsDone() == 2 && autoFolder->folderName() != u"Other"_s)
            autoFolder->chooseFolder(other);
    });
    EXPECT_EQ(sync(sounds), 0);
    QObject::disconnect(connection);
    EXPECT_EQ(autoFolder->copiedCount(), 0);
    EXPECT_EQ(files().size(), 2);
    EXPECT_EQ(sync(sounds), 5);
    EXPECT_EQ(filesIn(other).size(), 5);
}

TEST_F(AutoFolderTest, ASecondCallDuringARunDoesNothing)
{
    turnOn();
    const QList<Sound> sounds{sound(u"Dog"_s)};
    auto first = autoFolder->sync(sounds);
    EXPECT_TRUE(autoFolder->isSyncing());
    EXPECT_EQ(sync(sounds), 0);
    EXPECT_EQ(test::await(std::move(first)), 1);
    EXPECT_FALSE(autoFolder->isSyncing());
    EXPECT_EQ(files(), QStringList{u"Dog.wav"_s});
}

TEST_F(AutoFolderTest, RemembersOverARestart)
{
    turnOn();
    const QList<Sound> sounds{sound(u"Dog"_s)};
    sync(sounds);
    QFile::remove(folder + u"/Dog.wav"_s);
    for (const auto& [key, text] : {std::pair(u"autoFolderOn"_s, u"true"_s), std::pair(u"autoFolderName"_s, u"Sounds"_s)})
        EXPECT_EQ(Defaults(defaults->path()).text(key), text);
    EXPECT_TRUE(Defaults(defaults->path()).data(u"autoFolderBookmark"_s));
    EXPECT_EQ(decodeManifest(*Defaults(defaults->path()).data(u"autoFolderManifest"_s)), autoFolder->manifest());
    restart();
    EXPECT_TRUE(autoFolder->enabled() && autoFolder->hasFolder());
    EXPECT_EQ(autoFolder->folderName(), u"Sounds"_s);
    EXPECT_EQ(autoFolder->copiedCount(), 1);
    EXPECT_FALSE(autoFolder->lastSync());
    EXPECT_EQ(sync(sounds), 0);
    EXPECT_EQ(files(), QStringList());
}

TEST_F(AutoFolderTest, SoundsThatAreDeletedKeepTheirEntries)
{
    turnOn();
    sync({sound(u"Dog"_s), sound(u"Cat"_s)});
    clock.advance(std::chrono::seconds(60));
    EXPECT_EQ(sync({}), 0);
    EXPECT_EQ(autoFolder->copiedCount(), 2);
    EXPECT_EQ(autoFolder->lastSync(), clock.secondsSince2001());
    restart();
    EXPECT_EQ(autoFolder->copiedCount(), 2);
}

TEST_F(AutoFolderTest, ARestartForgetsTheProblemAndARunTellsItAgain)
{
    turnOn();
    ASSERT_TRUE(QDir(folder).removeRecursively());
    clock.advance(std::chrono::seconds(60));
    sync({sound(u"Dog"_s)});
    EXPECT_FALSE(autoFolder->problem().isEmpty());
    EXPECT_EQ(autoFolder->lastSync(), clock.secondsSince2001()); // a run that fails is a run
    restart();
    EXPECT_EQ(autoFolder->problem(), QString());
    sync({});
    EXPECT_FALSE(autoFolder->problem().isEmpty());
    QDir().mkpath(folder);
    autoFolder->chooseFolder(folder);
    EXPECT_EQ(autoFolder->problem(), QString());
}

TEST_F(AutoFolderTest, WhatCannotBeSavedIsNotDeliveredTwice)
{
    turnOn();
    const QString settings = defaults->path();
    const QList<Sound> sounds{sound(u"Dog"_s)};
    ASSERT_TRUE(QFile::rename(settings, settings + u".aside"_s));
    ASSERT_TRUE(QDir().mkpath(settings)); // nothing can be written there
    EXPECT_EQ(sync(sounds), 1);
    ASSERT_TRUE(QDir().rmdir(settings));
    ASSERT_TRUE(QFile::rename(settings + u".aside"_s, settings));
    restart();
    EXPECT_EQ(autoFolder->copiedCount(), 1);
    EXPECT_EQ(sync(sounds), 0);
    EXPECT_EQ(files(), QStringList{u"Dog.wav"_s});
}

TEST_F(AutoFolderTest, FilesAreMadeOneAtATimeAndNotHere)
{
    std::atomic<int> atOnce = 0;
    std::atomic<int> most = 0;
    std::atomic<bool> isHere = false;
    autoFolder = std::make_unique<AutoFolder>(
        *defaults, clock, workers, [&, here = QThread::currentThread()](const Sound&, const QString& path, const Progress&) {
            most = std::max(most.load(), ++atOnce);
            isHere = isHere || QThread::currentThread() == here;
            QThread::msleep(5);
            test::writeBytes(path, "x");
            --atOnce;
        });
    turnOn();
    EXPECT_EQ(sync({sound(u"A"_s), sound(u"B"_s), sound(u"C"_s), sound(u"D"_s)}), 4);
    EXPECT_EQ(most, 1);
    EXPECT_FALSE(isHere);
    autoFolder.reset();
}

TEST_F(AutoFolderTest, AManifestOfGarbageCountsAsNone)
{
    turnOn();
    const QList<Sound> sounds{sound(u"Dog"_s)};
    sync(sounds);
    defaults->setData(u"autoFolderManifest"_s, "\x80garbage");
    restart();
    EXPECT_EQ(autoFolder->copiedCount(), 0);
    EXPECT_EQ(sync(sounds), 1);
    EXPECT_EQ(files(), (QStringList{u"Dog 2.wav"_s, u"Dog.wav"_s}));
}

TEST_F(AutoFolderTest, WhatAKilledRunLeftIsSweptAndNothingElse)
{
    turnOn();
    QDir().mkpath(folder + u"/.tonequill-copying"_s);
    test::writeBytes(folder + u"/.tonequill-copying/Dog.wav"_s, "half");
    test::writeBytes(folder + u"/.mine"_s, "kept");
    EXPECT_EQ(sync({}), 0);
    EXPECT_EQ(files(), QStringList{u".mine"_s});

    // A link of that name may lead anywhere.
    const QString treasure = base.filePath(u"treasure"_s);
    QDir().mkpath(treasure);
    test::writeBytes(treasure + u"/gold"_s, "kept");
    QFile::link(treasure, folder + u"/.tonequill-copying"_s);
    EXPECT_EQ(sync({sound(u"Dog"_s)}), 1);
    EXPECT_EQ(filesIn(treasure), QStringList{u"gold"_s});
    EXPECT_EQ(files(), (QStringList{u".mine"_s, u"Dog.wav"_s}));
}

TEST_F(AutoFolderTest, AFileThatTurnsUpMeanwhileIsNotWrittenOver)
{
    restart();
    autoFolder =
        std::make_unique<AutoFolder>(*defaults, clock, workers, [this](const Sound&, const QString& path, const Progress&) {
            test::writeBytes(path, "ours");
            test::writeBytes(folder + u"/Dog.wav"_s, "theirs");
        });
    turnOn();
    EXPECT_EQ(sync({sound(u"Dog"_s)}), 0);
    EXPECT_EQ(content(u"Dog.wav"_s), "theirs");
    EXPECT_FALSE(autoFolder->problem().isEmpty());
    EXPECT_EQ(files(), QStringList{u"Dog.wav"_s});
}

TEST_F(AutoFolderTest, WritesTheWholeSoundAsACleanWav)
{
    autoFolder = std::make_unique<AutoFolder>(*defaults, clock, workers);
    turnOn();
    Sound dog = sound(u"Dog"_s);
    dog.source = test::writeTone(base.filePath(u"source.wav"_s), 0.5, 48000);
    dog.duration = 0.5;
    Sound broken = sound(u"Broken"_s);
    broken.source = base.filePath(u"missing.wav"_s);
    EXPECT_EQ(sync({dog, broken}), 1);
    EXPECT_FALSE(autoFolder->problem().isEmpty());
    EXPECT_EQ(files(), QStringList{u"Dog.wav"_s});

    const QString expected = base.filePath(u"expected.wav"_s);
    AudioExporter::exportRange({dog.source, 0, 0.5, ExportPreset::anyEditor, 0.004, 0.03}, expected);
    EXPECT_EQ(Files::readAll(folder + u"/Dog.wav"_s, 1 << 20), Files::readAll(expected, 1 << 20));
    EXPECT_EQ(AudioFile(expected).length(), 24000);
}

TEST_F(AutoFolderTest, AFolderThatVanishesInTheMiddleOfARunIsNotMadeAnew)
{
    const QList<Sound> sounds{sound(u"Cow"_s), sound(u"Cat"_s), sound(u"Dog"_s)};
    const QString problem = u"Tonequill can't open that folder any more. Choose it again."_s;
    const QList<std::function<void()>> ways{
        [this] { QDir(folder).removeRecursively(); },
        [this] { QDir(QFileInfo(folder).path()).removeRecursively(); },
        [this] { QDir().rename(QFileInfo(folder).path(), base.filePath(u"away"_s)); },
        [this] { // a disk that is away leaves its mount point
            QDir().rename(folder, base.filePath(u"unplugged"_s));
            QDir().mkpath(folder);
        },
    };
    for (const auto& vanish : ways) {
        QDir(base.filePath(u"Movies"_s)).removeRecursively();
        QDir().mkpath(folder);
        const auto inTheMiddle = [&vanish](const Sound& one, const QString& path, const Progress&) {
            test::writeBytes(path, one.name.toUtf8());
            if (one.name == u"Cat")
                vanish();
        };
        autoFolder = std::make_unique<AutoFolder>(*defaults, clock, workers, inTheMiddle);
        turnOn();
        EXPECT_EQ(sync(sounds), 1);
        EXPECT_EQ(autoFolder->problem(), problem);
        EXPECT_EQ(autoFolder->copiedCount(), 1); // what was really delivered
        EXPECT_TRUE(autoFolder->manifest().contains(uuidText(sounds[0].id)));
        EXPECT_TRUE(!QDir(folder).exists() || filesIn(folder).isEmpty()) << filesIn(folder).join(u' ').toStdString();
        autoFolder.reset();
    }
}

TEST_F(AutoFolderTest, AFolderThatIsRenamedInTheMiddleOfARunIsFollowed)
{
    const QString renamed = base.filePath(u"Movies/Clips"_s);
    autoFolder =
        std::make_unique<AutoFolder>(*defaults, clock, workers, [&](const Sound& one, const QString& path, const Progress&) {
            test::writeBytes(path, one.name.toUtf8());
            if (one.name == u"Cat")
                QDir().rename(folder, renamed);
        });
    turnOn();
    const QList<Sound> sounds{sound(u"Cow"_s), sound(u"Cat"_s), sound(u"Dog"_s)};
    EXPECT_EQ(sync(sounds), 2); // the one that was being made is for the next run
    EXPECT_EQ(filesIn(renamed), (QStringList{u"Cow.wav"_s, u"Dog.wav"_s}));
    EXPECT_FALSE(QDir(folder).exists());
    EXPECT_EQ(sync(sounds), 1);
    EXPECT_EQ(filesIn(renamed), (QStringList{u"Cat.wav"_s, u"Cow.wav"_s, u"Dog.wav"_s}));
}

TEST_F(AutoFolderTest, AFolderThatCannotBeListedCountsAsEmptyAndTheRunGoesOn)
{
    turnOn();
    test::writeBytes(folder + u"/Dog.wav"_s, "theirs");
    sync({}); // the workers are there from now on
    rlimit before = {};
    getrlimit(RLIMIT_NOFILE, &before);
    const int firstFree = ::dup(STDIN_FILENO);
    ::close(firstFree);
    const auto connection = QObject::connect(autoFolder.get(), &AutoFolder::changed, [&] {
        const bool isPlanning = autoFolder->isSyncing() && autoFolder->stepCount() == 0;
        const rlimit limit{isPlanning ? rlim_t(firstFree) : before.rlim_cur, before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &limit); // no folder can be opened until the plan stands
    });
    EXPECT_EQ(sync({sound(u"Dog"_s), sound(u"Cat"_s)}), 1);
    QObject::disconnect(connection);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(files(), (QStringList{u"Cat.wav"_s, u"Dog.wav"_s}));
    EXPECT_EQ(content(u"Dog.wav"_s), "theirs"); // it was planned for, and is not replaced
    EXPECT_EQ(autoFolder->problem(), u"“Dog.wav” couldn't be renamed because there is another file of that name."_s);
}

TEST_F(AutoFolderTest, WhatCannotBeNotedIsNotDelivered)
{
    turnOn();
    const QString journal = QFileInfo(defaults->path()).path() + u"/auto-folder-journal"_s;
    ASSERT_TRUE(QDir().mkpath(journal + u"/in the way"_s));
    EXPECT_EQ(sync({sound(u"Dog"_s), sound(u"Cat"_s)}), 0);
    EXPECT_EQ(autoFolder->problem(), u"The settings could not be saved: the disk may be full or read-only."_s);
    EXPECT_EQ(files(), QStringList());
}

TEST_F(AutoFolderTest, AFolderThatCouldNotBeRememberedGetsNothing)
{
    const QString settings = defaults->path();
    ASSERT_TRUE(QDir().mkpath(settings)); // nothing can be written there
    turnOn();
    const QString problem = u"The settings could not be saved: the disk may be full or read-only."_s;
    EXPECT_EQ(autoFolder->problem(), problem);
    const QList<Sound> sounds{sound(u"Dog"_s)};
    EXPECT_EQ(sync(sounds), 0);
    EXPECT_EQ(autoFolder->problem(), problem);
    EXPECT_EQ(files(), QStringList());
    ASSERT_TRUE(QDir().rmdir(settings));
    EXPECT_EQ(sync(sounds), 1);
    EXPECT_EQ(autoFolder->problem(), QString());
    restart();
    EXPECT_EQ(sync(sounds), 0);
    EXPECT_EQ(files(), QStringList{u"Dog.wav"_s});
}
