// The promises of the Auto Folder under thousands of random steps: nothing is
// deleted, written over or delivered twice, and no half file is ever seen.

#include "library/delivery/AutoFolder.h"

#include "base/Uuid.h"
#include "fakes/FakeClock.h"
#include "platform/files/Files.h"
#include "support/Await.h"
#include "support/Printing.h"
#include "support/Wav.h"

#include <QDir>
#include <QMap>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <random>

using namespace tonequill;
using namespace Qt::StringLiterals;
using Sound = AutoFolder::Sound;

namespace {

struct Killed {}; // no std::exception: nothing handles it, as nothing handles a kill

// In memory, where there is such a place: a disk that is synced a thousand times takes a minute.
QString placeWithoutSyncs()
{
    const QString memory = u"/dev/shm"_s;
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + u"/tonequill-XXXXXX"_s;
}

class Model {
public:
    explicit Model(unsigned seed) : m_random(seed)
    {
        QDir().mkpath(m_folder);
        restart();
        m_autoFolder->chooseFolder(m_folder);
        m_autoFolder->setEnabled(true);
    }

    void step()
    {
        switch (below(20)) {
        case 0:
        case 1:
        case 2:
            m_sounds.insert(below(m_sounds.size() + 1), Sound{QUuid::createUuid(), someName(), {}, 1});
            break;
        case 3:
        case 4:
        case 5:
            if (!m_sounds.isEmpty())
                m_sounds[below(m_sounds.size())].name = someName();
            break;
        case 6:
            if (!m_sounds.isEmpty())
                m_sounds.removeAt(below(m_sounds.size()));
            break;
        case 7:
            userRemovesAFile();
            break;
        case 8:
            userAddsAFile();
            break;
        case 9:
            userRenamesAFile();
            break;
        case 10:
            folderGoesOrComesBack();
            break;
        case 11:
            m_isFull = !m_isFull;
            break;
        case 12:
            restart();
            break;
        case 13:
            m_killAt = int(below(3)) + 1; // in the middle of the next run
            sync();
            break;
        default:
            sync();
        }
    }

    int halfFilesSeen() const { return m_halfFilesSeen; }
    int runs = 0;
    int kills = 0;
    int copied = 0;

private:
    qsizetype below(qsizetype end) { return qsizetype(m_random() % std::size_t(end)); }

    QString someName()
    {
        static const QStringList names{u"Dog"_s,
                                       u"dog"_s,
                                       u"DOG"_s,
                                       u"Dog 2"_s,
                                       u"a/b"_s,
                                       u"a:b"_s,
                                       u"Élan"_s,
                                       u"E\u0301lan"_s,
                                       u"باب"_s,
                                       u"👩‍👩‍👧"_s,
                                       u".dot"_s,
                                       u"x\ny"_s,
                                       u" "_s,
                                       u".."_s,
                                       QString(100, u'x'),
                                       QString(300, u'ب'),
                                       u"🎧"_s.repeated(62) + u"abc"_s};
        return names[below(names.size())];
    }

    void restart()
    {
        m_autoFolder.reset();
        m_defaults = std::make_unique<Defaults>(m_base.filePath(u"config/settings.ini"_s));
        m_autoFolder = std::make_unique<AutoFolder>(
            *m_defaults, m_clock, m_workers,
            [this](const Sound& sound, const QString& path, const Progress&) { write(sound, path); });
    }

    // On a thread of the pool, in two halves.
    void write(const Sound& sound, const QString& path)
    {
        test::writeBytes(path, "half of " + uuidText(sound.id).toLatin1());
        for (const QByteArray& content : contents())
            m_halfFilesSeen += content.startsWith("half") ? 1 : 0;
        if (m_killAt > 0 && --m_killAt == 0)
            throw Killed();
        if (m_isFull)
            throw FileError(FileError::Action::write, path, ENOSPC);
        test::writeBytes(path, uuidText(sound.id).toLatin1());
    }

    // What is in the folder, hidden files included.
    QMap<QString, QByteArray> contents() const
    {
        QMap<QString, QByteArray> files;
        const QDir folder(m_folder);
        for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden | QDir::System))
            files.insert(name, Files::readAll(folder.filePath(name), 1000));
        return files;
    }

    QString someFile()
    {
        const QStringList names = m_isAway ? QStringList() : contents().keys();
        return names.isEmpty() ? QString() : names[below(names.size())];
    }

    void userRemovesAFile()
    {
        const QString name = someFile();
        if (!name.isEmpty())
            QFile::remove(m_folder + u'/' + name);
    }

    void userAddsAFile()
    {
        const QString path = m_folder + u'/' + someName().replace(u'/', u'-').left(40) + u".wav"_s;
        if (!m_isAway && !QFile::exists(path))
            test::writeBytes(path, "the user's " + QByteArray::number(m_userFiles++));
    }

    void userRenamesAFile()
    {
        const QString name = someFile();
        const QString to = m_folder + u"/renamed %1.wav"_s.arg(m_userFiles++);
        if (!name.isEmpty())
            QFile::rename(m_folder + u'/' + name, to);
    }

    void folderGoesOrComesBack()
    {
        const QString away = m_base.filePath(u"away"_s);
        if (!m_isAway) {
            ASSERT_TRUE(QDir().rename(m_folder, away));
            if (below(2) == 0)
                QDir().mkpath(m_folder); // as an unmounted disk leaves it
        } else {
            if (QDir(m_folder).exists()) {
                ASSERT_TRUE(QDir().rmdir(m_folder)) << "something was put into another folder";
            }
            ASSERT_TRUE(QDir().rename(away, m_folder));
        }
        m_isAway = !m_isAway;
    }

    void sync()
    {
        const auto before = m_isAway ? QMap<QString, QByteArray>() : contents();
        QSet<QString> delivered;
        for (const AutoFolderEntry& entry : m_autoFolder->manifest())
            delivered << entry.file;
        ++runs;
        try {
            copied += test::await(m_autoFolder->sync(m_sounds));
        } catch (const Killed&) {
            ++kills;
            restart();
        }
        m_killAt = 0;
        if (m_isAway) {
            EXPECT_EQ(m_autoFolder->problem(), u"Tonequill can't open that folder any more. Choose it again."_s);
            return;
        }
        judge(before, delivered);
    }

    void judge(const QMap<QString, QByteArray>& before, const QSet<QString>& delivered)
    {
        const auto after = contents();
        QMap<QByteArray, int> counts;
        for (const QByteArray& content : after)
            EXPECT_EQ(++counts[content], 1) << "twice: " << content.toStdString();
        for (auto file = before.begin(); file != before.end(); ++file) {
            EXPECT_EQ(counts[*file], 1) << "gone: " << file->toStdString();
            // The user's files keep their names, too, but for one that stands where a delivered one stood.
            if (file->startsWith("the user's") && !delivered.contains(file.key())) {
                EXPECT_EQ(after.value(file.key()), *file);
            }
        }
        for (auto file = after.begin(); file != after.end(); ++file) {
            const bool isNew = !before.values().contains(*file);
            EXPECT_FALSE(isNew && m_delivered.contains(*file)) << "again: " << file.key().toStdString();
            m_delivered.insert(*file);
        }
        if (m_isFull || m_autoFolder->lastSync() == std::nullopt)
            return;
        // A run that came to its end leaves nothing undelivered.
        for (const Sound& sound : std::as_const(m_sounds))
            EXPECT_TRUE(m_delivered.contains(uuidText(sound.id).toLatin1())) << sound.name.toStdString();
        EXPECT_FALSE(QFile::exists(m_folder + u"/.tonequill-copying"_s));
    }

    std::mt19937 m_random;
    QTemporaryDir m_base{placeWithoutSyncs()};
    QString m_folder = m_base.filePath(u"Movies/Sounds"_s);
    test::FakeClock m_clock;
    Workers m_workers;
    std::unique_ptr<Defaults> m_defaults;
    std::unique_ptr<AutoFolder> m_autoFolder;
    QList<Sound> m_sounds;
    QSet<QByteArray> m_delivered; // every content that ever was in the folder
    bool m_isAway = false;
    std::atomic<bool> m_isFull = false;
    std::atomic<int> m_killAt = 0; // the how manieth file from now on
    std::atomic<int> m_halfFilesSeen = 0;
    int m_userFiles = 0;
};

} // namespace

TEST(AutoFolderModel, KeepsItsPromisesForTenThousandRandomSteps)
{
    constexpr int kSteps = 10000;
    constexpr int kStepsOfOne = 500; // a new library and folder from time to time
    int runs = 0;
    int kills = 0;
    int copied = 0;
    for (int first = 0; first < kSteps && !testing::Test::HasFailure(); first += kStepsOfOne) {
        SCOPED_TRACE(first);
        Model model{unsigned(first)};
        for (int i = 0; i < kStepsOfOne && !testing::Test::HasFailure(); ++i)
            model.step();
        EXPECT_EQ(model.halfFilesSeen(), 0);
        runs += model.runs;
        kills += model.kills;
        copied += model.copied;
    }
    std::printf("%d runs, %d of them killed, %d files\n", runs, kills, copied);
    EXPECT_GT(kills, 50);
    EXPECT_GT(copied, 500);
}
