#include "discovery/catalogue/SoundIndex.h"

#include "discovery/catalogue/Loaded.h"
#include "support/Await.h"
#include "support/Catalogues.h"
#include "support/Environment.h"
#include "support/Gate.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QTemporaryDir>

#include <atomic>
#include <thread>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// A folder to be in, with files of catalogues.
class SoundIndexTest : public testing::Test {
protected:
    SoundIndexTest() { QDir::setCurrent(folder.path()); }
    ~SoundIndexTest() override
    {
        QDir::setCurrent(before);
        QFile::remove(SoundIndex::userPath());
    }

    static QString put(const QString& path, const std::string& json = test::document(test::item()))
    {
        QDir().mkpath(QFileInfo(path).path());
        const std::string bytes = test::packed(json);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes.data(), qint64(bytes.size())) == qint64(bytes.size()));
        return QFileInfo(path).canonicalFilePath();
    }
    static QString canonical(const std::optional<QString>& path)
    {
        return path ? QFileInfo(*path).canonicalFilePath() : QString();
    }
    static QByteArray named(const QString& path) { return QFile::encodeName(path); }

    QString before = QDir::currentPath();
    QTemporaryDir folder;
    Workers workers;
    SoundIndex index;
};

} // namespace

TEST_F(SoundIndexTest, IsLookedForInItsPlaces)
{
    EXPECT_EQ(SoundIndex::locate(), std::nullopt);
    QDir().mkpath(folder.filePath(u"a/b/c/d/e"_s));
    const QString upwards = put(folder.filePath(u"a/Tools/index/sound-index.bin"_s));
    QDir::setCurrent(folder.filePath(u"a/b/c/d/e"_s));
    EXPECT_EQ(canonical(SoundIndex::locate()), upwards) << "the fourth folder above";
    QDir().mkpath(folder.filePath(u"a/b/c/d/e/f"_s));
    QDir::setCurrent(folder.filePath(u"a/b/c/d/e/f"_s));
    EXPECT_EQ(SoundIndex::locate(), std::nullopt) << "the fifth";
    QDir::setCurrent(folder.filePath(u"a/b"_s));
    const QString nearer = put(folder.filePath(u"a/b/Tools/index/sound-index.bin"_s));
    EXPECT_EQ(canonical(SoundIndex::locate()), nearer);
    const QString own = put(SoundIndex::userPath());
    EXPECT_EQ(canonical(SoundIndex::locate()), own);
    const QString other = put(folder.filePath(u"other.bin"_s));
    {
        const test::Environment variable("TONEQUILL_INDEX", named(other));
        EXPECT_EQ(canonical(SoundIndex::locate()), other);
    }
    for (const QString& nothing : {folder.filePath(u"missing.bin"_s), folder.path(), QString()}) {
        const test::Environment variable("TONEQUILL_INDEX", named(nothing));
        EXPECT_EQ(canonical(SoundIndex::locate()), own) << "the search goes on";
    }
}

TEST_F(SoundIndexTest, IsLoadedOnce)
{
    const test::Environment variable("TONEQUILL_INDEX", named(put(folder.filePath(u"one.bin"_s))));
    const auto first = index.startLoadingIfNeeded(workers);
    const auto second = index.startLoadingIfNeeded(workers);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first, second);
    first->waitForEnd();
    EXPECT_TRUE(index.isReady());
    EXPECT_EQ(index.soundCount(), 1);
    EXPECT_EQ(index.startLoadingIfNeeded(workers), nullptr);
}

TEST_F(SoundIndexTest, IsNeverLookedForAgain)
{
    const auto first = index.startLoadingIfNeeded(workers);
    first->waitForEnd();
    EXPECT_FALSE(index.isReady());
    put(SoundIndex::userPath());
    EXPECT_EQ(index.startLoadingIfNeeded(workers), first);
    first->waitForEnd();
    EXPECT_FALSE(index.isReady());
}

TEST_F(SoundIndexTest, SaysNothingOfAFileThatIsNone)
{
    test::writeBytes(folder.filePath(u"bad.bin"_s), "no such thing");
    const test::Environment variable("TONEQUILL_INDEX", named(folder.filePath(u"bad.bin"_s)));
    index.startLoadingIfNeeded(workers)->waitForEnd();
    EXPECT_FALSE(index.isReady());
    EXPECT_TRUE(index.search({{u"door"_s}, {}, {}, 300, false}).isEmpty());
}

TEST_F(SoundIndexTest, IsWaitedForByManyFlows)
{
    put(SoundIndex::userPath());
    FlowGroup flows;
    const auto load = index.startLoadingIfNeeded(workers);
    auto one = load->toldWhenEnded(flows);
    auto other = load->ended(flows);
    test::await(std::move(one));
    test::await(std::move(other));
    EXPECT_TRUE(index.isReady());
    test::await(load->ended(flows)); // it is over long since
}

TEST_F(SoundIndexTest, GoesBeforeEverythingBehindOnceSomebodyWaits)
{
    put(SoundIndex::userPath());
    FlowGroup flows;
    test::HeldBack behind(workers.behind());
    const auto load = index.startLoadingIfNeeded(workers);
    auto told = load->toldWhenEnded(flows);
    QCoreApplication::processEvents();
    EXPECT_FALSE(load->hasEnded()) << "nobody is in a hurry yet";
    test::await(load->ended(flows));
    EXPECT_TRUE(index.isReady());
    behind.letGo();
    test::await(std::move(told));
}

TEST_F(SoundIndexTest, EndsWithTheProgram)
{
    put(SoundIndex::userPath());
    FlowGroup flows;
    std::shared_ptr<SoundIndex::Load> load;
    {
        Workers own;
        test::HeldBack behind(own.behind());
        load = index.startLoadingIfNeeded(own);
        load->progress()->cancel();
        EXPECT_TRUE(load->hasEnded());
        behind.letGo();
    }
    test::await(load->toldWhenEnded(flows));
    EXPECT_FALSE(index.isReady());
}

TEST_F(SoundIndexTest, StopsALoadInTheMiddle)
{
    const std::string file = test::packed(test::RandomCatalogue(1, 1000).json(3000));
    Progress progress;
    progress.cancel();
    EXPECT_THROW(index.install(file, &progress), Cancelled);
    EXPECT_FALSE(index.isReady());
}

TEST_F(SoundIndexTest, KeepsWhatItHasWhenAnotherFileIsNoCatalogue)
{
    test::install(index, test::document(test::item()));
    EXPECT_EQ(test::install(index, "[]"), CatalogueReader::Outcome::noItems);
    EXPECT_TRUE(index.isReady());
    EXPECT_EQ(index.soundCount(), 1);
    EXPECT_EQ(test::install(index, test::document({})), CatalogueReader::Outcome::done);
    EXPECT_FALSE(index.isReady()) << "an empty catalogue is one";
}

TEST_F(SoundIndexTest, IsSearchedWhileItIsLoaded)
{
    const std::string file = test::packed(test::RandomCatalogue(3, 2000).json(2000));
    const QString word = QString::fromStdString(test::RandomCatalogue(3, 2000).word(0));
    std::atomic<bool> isLoaded = false;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (bool last = false; !last;) {
                last = isLoaded;
                const qsizetype count = index.search({{word}, {}, {}, 300, false}).size();
                EXPECT_TRUE(count == 300 || !last) << "all of it or nothing of it";
                EXPECT_TRUE(count == 0 || count == 300);
            }
        });
    for (int i = 0; i < 5; ++i)
        index.install(file);
    isLoaded = true;
    for (std::thread& thread : threads)
        thread.join();
}
