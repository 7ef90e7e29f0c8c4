#include "library/delivery/DragStaging.h"

#include "support/Environment.h"
#include "support/MediaFactory.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <thread>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// A user's cache of its own for each test.
class DragStagingTest : public testing::Test {
protected:
    DragStagingTest() : m_cache("XDG_CACHE_HOME", QFile::encodeName(m_folder.path())) {}

    QString path(const QString& name) const { return m_folder.filePath(name); }
    QString sound(const QString& name) const
    {
        test::writeBytes(path(name), "the sound of " + name.toUtf8());
        return path(name);
    }

private:
    QTemporaryDir m_folder;
    test::Environment m_cache;
};

} // namespace

TEST_F(DragStagingTest, LiesInTheUsersCache)
{
    EXPECT_EQ(DragStaging::root(), path(u"Tonequill/Drag"_s));
}

TEST_F(DragStagingTest, CopiesAFileUnderItsDisplayName)
{
    const auto staged = DragStaging::stage(sound(u"0B1C.wav"_s), u"Dog barking"_s);
    ASSERT_TRUE(staged);
    EXPECT_EQ(QFileInfo(*staged).fileName(), u"Dog barking.wav"_s);
    EXPECT_EQ(test::bytesOfFile(*staged), "the sound of 0B1C.wav");
    const QString folder = QFileInfo(*staged).absolutePath();
    EXPECT_EQ(QFileInfo(folder).absolutePath(), DragStaging::root());
    EXPECT_THAT(QFileInfo(folder).fileName().toStdString(),
                testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}"));
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden).size(), 1);
}

TEST_F(DragStagingTest, KeepsSoundsOfOneNameApart)
{
    const auto one = DragStaging::stage(sound(u"1.wav"_s), u"Dog"_s);
    const auto other = DragStaging::stage(sound(u"2.wav"_s), u"Dog"_s);
    ASSERT_TRUE(one && other);
    EXPECT_NE(*one, *other);
    EXPECT_EQ(QFileInfo(*one).fileName(), QFileInfo(*other).fileName());
    EXPECT_EQ(test::bytesOfFile(*one), "the sound of 1.wav");
    EXPECT_EQ(test::bytesOfFile(*other), "the sound of 2.wav");
}

TEST_F(DragStagingTest, MakesAFileNameOfAnyName)
{
    const auto fileName = [](const QString& name, const QString& extension) {
        return QFileInfo(DragStaging::reserve(name, extension).value_or(QString())).fileName();
    };
    EXPECT_EQ(fileName(u"Kick/Snare"_s, u"wav"_s), u"Kick-Snare.wav"_s);
    EXPECT_EQ(fileName(u""_s, u"wav"_s), u"Sound.wav"_s);
    EXPECT_EQ(fileName(u"../../etc"_s, u"m4a"_s), u"..-..-etc.m4a"_s);
    EXPECT_EQ(fileName(u"رعد"_s, u"wav"_s), u"رعد.wav"_s);
    const QString family = QString::fromUtf8("👩‍👩‍👧‍👦");
    EXPECT_LE(fileName(family.repeated(80), u"wav"_s).toUtf8().size(), 255);
    const auto bare = DragStaging::stage(sound(u"bare"_s), u"Dog"_s);
    ASSERT_TRUE(bare);
    EXPECT_EQ(QFileInfo(*bare).fileName(), u"Dog."_s);
}

TEST_F(DragStagingTest, ReservesAFileThatIsYetToBeWritten)
{
    const auto reserved = DragStaging::reserve(u"Dog"_s, u"wav"_s);
    ASSERT_TRUE(reserved);
    EXPECT_FALSE(QFile::exists(*reserved));
    EXPECT_TRUE(QFileInfo(QFileInfo(*reserved).absolutePath()).isDir());
    EXPECT_TRUE(DragStaging::holds(*reserved));
}

TEST_F(DragStagingTest, GivesNoneForWhatCannotBeStaged)
{
    EXPECT_EQ(DragStaging::stage(path(u"gone.wav"_s), u"Dog"_s), std::nullopt);
    EXPECT_EQ(DragStaging::stage(path({}), u"Dog"_s), std::nullopt) << "a folder";
    test::writeBytes(path(u"Tonequill"_s + u" file"_s), "x");
    const test::Environment cache("XDG_CACHE_HOME", QFile::encodeName(path(u"Tonequill file"_s)));
    EXPECT_EQ(DragStaging::reserve(u"Dog"_s, u"wav"_s), std::nullopt);
}

TEST_F(DragStagingTest, RemovesEverythingAtStartAndNothingElse)
{
    DragStaging::clean(); // nothing there yet
    ASSERT_TRUE(DragStaging::stage(sound(u"1.wav"_s), u"Dog"_s));
    ASSERT_TRUE(DragStaging::reserve(u"Cat"_s, u"wav"_s));
    QDir().mkpath(path(u"Tonequill/Previews"_s));
    DragStaging::clean();
    EXPECT_FALSE(QFile::exists(DragStaging::root()));
    EXPECT_TRUE(QFile::exists(path(u"Tonequill/Previews"_s)));
    ASSERT_TRUE(DragStaging::stage(sound(u"1.wav"_s), u"Dog"_s));
}

TEST_F(DragStagingTest, LeavesAloneWhatALinkLeadsTo)
{
    const QString kept = path(u"elsewhere/kept.wav"_s);
    QDir().mkpath(path(u"elsewhere"_s));
    test::writeBytes(kept, "kept");
    QDir().mkpath(DragStaging::root());
    QFile::link(path(u"elsewhere"_s), DragStaging::root() + u"/link"_s);
    DragStaging::clean();
    EXPECT_TRUE(QFile::exists(kept));
    QFile::link(path(u"elsewhere"_s), DragStaging::root());
    DragStaging::clean();
    EXPECT_TRUE(QFile::exists(kept));
    EXPECT_FALSE(QFileInfo(DragStaging::root()).isSymLink());
}

TEST_F(DragStagingTest, KnowsItsOwnFiles)
{
    const auto staged = DragStaging::stage(sound(u"1.wav"_s), u"Dog"_s);
    ASSERT_TRUE(staged);
    EXPECT_TRUE(DragStaging::holds(*staged));
    EXPECT_TRUE(DragStaging::holds(path(u"elsewhere/../Tonequill//Drag/./ID/Dog.wav"_s)));
    EXPECT_TRUE(DragStaging::holds(DragStaging::root()));
    EXPECT_FALSE(DragStaging::holds(path(u"Tonequill/Drag2/Dog.wav"_s)));
    EXPECT_FALSE(DragStaging::holds(path(u"Tonequill/Drag/../Dog.wav"_s)));
    EXPECT_FALSE(DragStaging::holds(path(u"Tonequill"_s)));
    EXPECT_FALSE(DragStaging::holds(sound(u"1.wav"_s)));
    EXPECT_FALSE(DragStaging::holds(u"some text"_s));
    EXPECT_FALSE(DragStaging::holds({}));
}

TEST_F(DragStagingTest, IsUsedByManyThreadsAtOnce)
{
    const QString source = sound(u"1.wav"_s);
    std::vector<std::optional<QString>> staged(8);
    std::vector<std::thread> threads;
    for (auto& path : staged)
        threads.emplace_back([&] { path = DragStaging::stage(source, u"Dog"_s); });
    for (auto& thread : threads)
        thread.join();
    for (const auto& path : staged)
        EXPECT_TRUE(path && test::bytesOfFile(*path) == "the sound of 1.wav");
}
