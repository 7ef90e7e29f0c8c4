#include "base/Uuid.h"
#include "fakes/FakeClock.h"
#include "library/store/LibraryIndex.h"
#include "library/store/LibraryStore.h"
#include "platform/files/Files.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QDir>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <random>
#include <thread>

#include <unistd.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

using Names = QMap<QString, QString>; // id to name

class LibraryCrashTest : public testing::Test {
protected:
    Names stored()
    {
        LibraryStore store(clock, workers, library);
        store.sweepUnfinished();
        Names names;
        for (const SoundItem& item : store.items())
            names.insert(uuidText(item.id), item.name);
        return names;
    }

    // The folder holds the index, the file of each record, and nothing else.
    void expectNoStrays()
    {
        const LibraryStore store(clock, workers, library);
        QStringList expected{u"index.json"_s};
        for (const SoundItem& item : store.items())
            expected << item.fileName;
        QStringList found = QDir(library).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        if (!found.contains(u"index.json"_s))
            expected.removeFirst(); // killed before the first change
        found.sort();
        expected.sort();
        EXPECT_EQ(found, expected);
    }

    QTemporaryDir folder;
    QString library = folder.filePath(u"Library"_s);
    QString sound = test::writeTone(folder.filePath(u"some sound.wav"_s), 0.05);
    test::FakeClock clock;
    Workers workers;
};

// What the library must hold after the changes that were told as done; the last
// one that was begun and not told may or may not have happened.
struct Journal {
    Names done;
    QStringList begun; // empty if nothing is open

    void read(const QByteArray& line)
    {
        const QStringList words = QString::fromUtf8(line).trimmed().split(u' ');
        if (words[0] != u"done") {
            begun = words;
            return;
        }
        if (begun[0] == u"delete")
            done.remove(begun[1]);
        else
            done.insert(words[1], words.sliced(2).join(u' '));
        begun.clear();
        ++changes;
    }

    int changes = 0;
};

void expectAcknowledged(const Journal& journal, const Names& stored)
{
    Names expected = journal.done;
    if (!journal.begun.isEmpty() && stored != expected) {
        if (journal.begun[0] == u"delete") {
            expected.remove(journal.begun[1]);
        } else if (journal.begun[0] == u"rename") {
            expected.insert(journal.begun[1], journal.begun.sliced(2).join(u' '));
        } else {
            for (auto it = stored.begin(); it != stored.end(); ++it) {
                if (!expected.contains(it.key())) {
                    expected.insert(it.key(), u"some sound"_s);
                    break;
                }
            }
        }
    }
    EXPECT_EQ(stored, expected);
}

} // namespace

TEST_F(LibraryCrashTest, KilledAtAnyMomentItKeepsEveryAcknowledgedChange)
{
    constexpr int kChanges = 300;
    std::mt19937 random(20240501);
    Journal journal;
    int kills = 0;
    while (journal.changes < kChanges && !HasFailure()) {
        QProcess changer;
        changer.start(QStringLiteral(LIBRARY_CHANGER), {library, sound, u"random"_s, QString::number(random())});
        ASSERT_TRUE(changer.waitForStarted());
        // Somewhere within the next few changes, and at any point of one.
        const int untilChange = journal.changes + int(random() % 12);
        const int thenMicroseconds = int(random() % 4000);
        QByteArray output;
        const auto drain = [&] {
            output += changer.readAllStandardOutput();
            for (qsizetype end = output.indexOf('\n'); end >= 0; end = output.indexOf('\n')) {
                journal.read(output.first(end));
                output.remove(0, end + 1);
            }
        };
        while (journal.changes < untilChange) {
            ASSERT_TRUE(changer.waitForReadyRead(20000));
            drain();
        }
        std::this_thread::sleep_for(std::chrono::microseconds(thenMicroseconds));
        changer.kill();
        changer.waitForFinished();
        drain();
        ++kills;
        const QString index = library + u"/index.json"_s;
        if (QFile::exists(index)) {
            EXPECT_TRUE(LibraryIndex::decode(Files::readAll(index, 1 << 30)));
        }
        const Names now = stored();
        expectAcknowledged(journal, now);
        expectNoStrays();
        journal.done = now;
        journal.begun.clear();
    }
    RecordProperty("kills", kills);
    std::printf("%d changes, %d kills\n", journal.changes, kills);
}

// A disk of its own with `free` pages left, for the length of one change. What
// the change left is copied back, so that the test can look at it.
constexpr auto kOnSmallDisk = R"sh(
set -e
disk=$1 kept=$2 freePages=$3; shift 3
mount -t tmpfs -o size=256k tmpfs "$disk"
cp -a "$kept" "$disk/Library"
available=$(df --output=avail -k "$disk" | tail -n 1)
dd if=/dev/zero of="$disk/filler" bs=1024 count=$((available - 4 * freePages)) 2>/dev/null
"$@" || echo crashed
rm -rf "$disk/filler" "$kept"
cp -a "$disk/Library" "$kept"
)sh";

TEST_F(LibraryCrashTest, AFullDiskKeepsTheOldIndex)
{
    const QString disk = folder.filePath(u"disk"_s);
    QDir().mkpath(disk);
    const auto run = [](QStringList command) {
        QProcess process;
        process.start(command.takeFirst(), command);
        if (!process.waitForFinished(60000))
            qFatal("The change hangs.");
        return process.readAllStandardOutput() + process.readAllStandardError();
    };
    const QString changer = QStringLiteral(LIBRARY_CHANGER);
    const auto changeOnFullDisk = [&](const QString& what, int freePages) {
        // Root mounts in a name space of its own; anybody else becomes root in one first.
        const QString nameSpaces = ::geteuid() == 0 ? u"-m"_s : u"-rm"_s;
        return run({u"unshare"_s, nameSpaces, u"sh"_s, u"-c"_s, QString::fromLatin1(kOnSmallDisk), u"sh"_s, disk, library,
                    QString::number(freePages), changer, disk + u"/Library"_s, sound, what, u"1"_s});
    };
    int refused = 0;
    for (const QString& what : {u"import"_s, u"rename"_s, u"delete"_s}) {
        for (int freePages = 0; freePages < 8; ++freePages) {
            while (stored().size() < 8) {
                ASSERT_TRUE(run({changer, library, sound, u"import"_s}).contains("done"));
            }
            const Names before = stored();
            const QByteArray indexBefore = Files::readAll(library + u"/index.json"_s, 1 << 20);
            const QByteArray told = changeOnFullDisk(what, freePages);
            SCOPED_TRACE(what.toStdString() + " with " + std::to_string(freePages) + " pages: " + told.toStdString());
            EXPECT_TRUE(told.contains("done") || told.contains("because the disk is full"));
            EXPECT_FALSE(told.contains("crashed"));

            const QByteArray index = Files::readAll(library + u"/index.json"_s, 1 << 20);
            ASSERT_TRUE(LibraryIndex::decode(index));
            refused += index == indexBefore ? 1 : 0;
            const Names after = stored();
            if (index == indexBefore) {
                EXPECT_EQ(after, before);
            } else {
                EXPECT_EQ(after.size(), before.size() + (what == u"import" ? 1 : what == u"delete" ? -1 : 0));
            }
            expectNoStrays();
        }
    }
    EXPECT_GT(refused, 3); // the disk was full, indeed
    EXPECT_LT(refused, 24);
}
