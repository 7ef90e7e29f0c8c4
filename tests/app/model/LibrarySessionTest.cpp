#include "app/model/LibrarySession.h"

#include "fakes/FakeClock.h"
#include "fakes/FakeLanguageModel.h"
#include "support/Await.h"
#include "support/LibraryFolder.h"
#include "support/Printing.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

constexpr auto kPlain = Qt::NoModifier;
constexpr auto kShift = Qt::ShiftModifier;
constexpr auto kControl = Qt::ControlModifier;

// A list that knows of a session only what it is told, as one on the screen does.
class Follower : public QObject {
public:
    explicit Follower(const LibrarySession& session) : m_session(session), m_ids(idsOf(session))
    {
        connect(&session, &LibrarySession::aboutToRemove, this, [this](int first, int count) {
            EXPECT_EQ(m_ids, idsOf(m_session)) << "told too late";
            ASSERT_TRUE(first >= 0 && count > 0 && first + count <= m_ids.size());
            m_ids.remove(first, count);
            ++changes;
        });
        connect(&session, &LibrarySession::removed, this, [this] { EXPECT_EQ(m_ids, idsOf(m_session)); });
        connect(&session, &LibrarySession::aboutToInsert, this, [this](int first, int count) {
            EXPECT_EQ(m_ids, idsOf(m_session)) << "told too late";
            m_ids.insert(first, count, QUuid());
            m_first = first;
            ++changes;
        });
        connect(&session, &LibrarySession::inserted, this, [this] {
            const QList<QUuid> now = idsOf(m_session);
            ASSERT_EQ(m_ids.size(), now.size());
            for (qsizetype i = m_first; i < m_ids.size() && m_ids[i].isNull(); ++i)
                m_ids[i] = now[i];
            EXPECT_EQ(m_ids, now);
        });
    }

    int changes = 0;

private:
    static QList<QUuid> idsOf(const LibrarySession& session)
    {
        QList<QUuid> ids;
        for (const SoundItem& sound : session.sounds())
            ids << sound.id;
        return ids;
    }

    const LibrarySession& m_session;
    QList<QUuid> m_ids;
    qsizetype m_first = 0;
};

class LibrarySessionTest : public testing::Test {
protected:
    // The sounds have these names: letters of their own, and words to find.
    void open(const QStringList& names)
    {
        for (const QString& name : names)
            folder.add(name);
        folder.write();
        library = std::make_unique<LibraryStore>(clock, workers, folder.path());
        selection = std::make_unique<Selection>(*library);
        session = std::make_unique<LibrarySession>(*library, *selection, languageModel, clock);
        follower = std::make_unique<Follower>(*session);
        selection->openNewest();
    }
    void openLetters() { open({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}); }

    // The names in order; those of marked sounds are in capitals.
    QString shown() const
    {
        QString text;
        for (const SoundItem& sound : session->sounds())
            text += selection->multi().contains(sound.id) ? sound.name.toUpper() : sound.name;
        return text;
    }
    static QString names(const QList<SoundItem>& sounds)
    {
        QString text;
        for (const SoundItem& sound : sounds)
            text += sound.name;
        return text;
    }
    QString openName() const { return selection->item() ? selection->item()->name : u"none"_s; }
    const SoundItem& sound(int index) const { return library->items()[index]; }
    void rename(int index, const QString& name) { library->rename(sound(index), name); }

    test::LibraryFolder folder;
    test::FakeClock clock;
    Workers workers;
    test::FakeLanguageModel languageModel;
    std::unique_ptr<LibraryStore> library;
    std::unique_ptr<Selection> selection;
    std::unique_ptr<LibrarySession> session;
    std::unique_ptr<Follower> follower;
};

} // namespace

TEST_F(LibrarySessionTest, ShowsAllSoundsWithoutAQuery)
{
    openLetters();
    EXPECT_EQ(shown(), u"Abcde"_s);
    EXPECT_EQ(session->current(), 0);
    EXPECT_EQ(session->indexOf(sound(3).id), 3);
    EXPECT_EQ(session->indexOf(QUuid::createUuid()), -1);
    EXPECT_EQ(follower->changes, 0);
}

TEST_F(LibrarySessionTest, KeysMoveTheSelectionAndStopAtTheEnds)
{
    openLetters();
    session->moveTo(session->current() + 1, kPlain);
    EXPECT_EQ(shown(), u"aBcde"_s);
    session->moveTo(session->current() - 7, kPlain);
    EXPECT_EQ(shown(), u"Abcde"_s);
    session->moveTo(1000, kControl); // which is the mouse's
    EXPECT_EQ(shown(), u"abcdE"_s);
    EXPECT_EQ(openName(), u"e"_s);
}

TEST_F(LibrarySessionTest, ShiftAndArrowsExtendFromTheOpenSoundAndTakeBack)
{
    openLetters();
    session->click(1, kPlain);
    session->moveTo(session->current() + 1, kShift);
    session->moveTo(session->current() + 1, kShift);
    EXPECT_EQ(shown(), u"aBCDe"_s);
    session->moveTo(session->current() - 1, kShift);
    EXPECT_EQ(shown(), u"aBCde"_s);
    EXPECT_EQ(openName(), u"b"_s);
    EXPECT_EQ(session->current(), 2);
}

TEST_F(LibrarySessionTest, AClickBesideTheListDoesNothing)
{
    openLetters();
    session->click(-1, kPlain);
    session->click(5, kControl);
    EXPECT_EQ(shown(), u"Abcde"_s);
    EXPECT_EQ(session->current(), 0);
    EXPECT_TRUE(session->meantBy(-1).isEmpty());
    EXPECT_TRUE(session->meantBy(5).isEmpty());
}

TEST_F(LibrarySessionTest, AnActionMeansAllThatAreSelectedOnlyIfItsSoundIsAmongThem)
{
    openLetters();
    session->click(0, kPlain);
    session->click(2, kShift);
    EXPECT_EQ(names(session->meantBy(1)), u"abc"_s);
    EXPECT_EQ(names(session->meantBy(4)), u"e"_s);
    EXPECT_EQ(names(session->selected()), u"abc"_s);
}

TEST_F(LibrarySessionTest, ShowsWhatTheSearchFindsBestFirst)
{
    open({u"a boom"_s, u"b rain"_s, u"c hit"_s, u"d rain boom"_s});
    session->setQuery(u"rain boom"_s);
    EXPECT_EQ(shown(), u"d rain boomA BOOMb rainc hit"_s); // a hit is a kind of boom
    session->setQuery(u"RAIN"_s);
    EXPECT_EQ(shown(), u"b raind rain boom"_s);
    EXPECT_EQ(session->current(), -1);
    session->setQuery({});
    EXPECT_EQ(shown(), u"A BOOMb rainc hitd rain boom"_s);
    EXPECT_EQ(session->current(), 0);
}

TEST_F(LibrarySessionTest, TheSameQueryTellsNobody)
{
    openLetters();
    session->setQuery(u"b"_s);
    const QSignalSpy queries(session.get(), &LibrarySession::queryChanged);
    const QSignalSpy changes(session.get(), &LibrarySession::soundsChanged);
    session->setQuery(u"b"_s);
    EXPECT_EQ(queries.count() + changes.count(), 0);
}

TEST_F(LibrarySessionTest, ClicksActOnTheListAsShown)
{
    open({u"a dog"_s, u"b cat"_s, u"c dog"_s, u"d cat"_s, u"e dog"_s});
    session->setQuery(u"dog"_s);
    session->click(0, kPlain);
    session->click(2, kShift);
    EXPECT_EQ(shown(), u"A DOGC DOGE DOG"_s);
    session->setQuery({});
    EXPECT_EQ(shown(), u"A DOGb catC DOGd catE DOG"_s);
    session->setQuery(u"cat"_s);
    session->click(1, kShift); // the open sound isn't there to start from
    EXPECT_EQ(shown(), u"b catD CAT"_s);
    session->selectAll();
    EXPECT_EQ(shown(), u"B CATD CAT"_s);
    session->setQuery({});
    EXPECT_EQ(shown(), u"a dogB CATc dogD CATe dog"_s);
}

TEST_F(LibrarySessionTest, WhatIsSelectedButNotShownIsSafe)
{
    open({u"a dog"_s, u"b cat"_s, u"c dog"_s, u"d cat"_s});
    session->selectAll();
    session->setQuery(u"dog"_s);
    EXPECT_EQ(names(session->selected()), u"a dogc dog"_s);
    EXPECT_EQ(names(session->meantBy(1)), u"a dogc dog"_s);
}

TEST_F(LibrarySessionTest, TheSearchFollowsTheLibrary)
{
    open({u"a dog"_s, u"b cat"_s, u"c dog"_s});
    session->setQuery(u"dog"_s);
    rename(1, u"b dog"_s);
    EXPECT_EQ(shown(), u"A DOGb dogc dog"_s);
    rename(2, u"c cow"_s);
    EXPECT_EQ(shown(), u"A DOGb dog"_s);
    library->update(sound(1), [](SoundItem& item) { item.tags = {u"dog"_s}; });
    EXPECT_EQ(shown(), u"b dogA DOG"_s);
    test::await(library->importFile(test::writeTone(folder.filePath(u"dog n.wav"_s)), SoundOrigin::imported));
    EXPECT_EQ(shown(), u"b dogdog nA DOG"_s);
    test::await(library->importFile(test::writeTone(folder.filePath(u"cat n.wav"_s)), SoundOrigin::imported));
    EXPECT_EQ(shown(), u"b dogdog nA DOG"_s);
    library->deleteItems({sound(1)}); // dog n
    EXPECT_EQ(shown(), u"b dogA DOG"_s);
    library->deleteItems({sound(0)}); // cat n, which isn't shown
    EXPECT_EQ(shown(), u"b dogA DOG"_s);
}

TEST_F(LibrarySessionTest, ARecordThatChangesIsToldAtItsPlace)
{
    open({u"a dog"_s, u"b cat"_s, u"c dog"_s});
    session->setQuery(u"dog"_s);
    QSignalSpy records(session.get(), &LibrarySession::recordChanged);
    rename(2, u"z dog"_s);
    ASSERT_EQ(records.count(), 1);
    EXPECT_EQ(records[0][0].toInt(), 1);
    EXPECT_EQ(session->sounds()[1].name, u"z dog"_s);
    rename(1, u"cow"_s); // it isn't shown
    EXPECT_EQ(records.count(), 1);
}

TEST_F(LibrarySessionTest, DeletingManySoundsTakesEachOut)
{
    openLetters();
    library->deleteItems(library->items().sliced(1, 3));
    EXPECT_EQ(shown(), u"Ae"_s);
    EXPECT_EQ(follower->changes, 3);
}

TEST_F(LibrarySessionTest, TheKeysComeToTheOpenSoundOrTheFirst)
{
    open({u"a dog"_s, u"b cat"_s, u"c cat"_s, u"d dog"_s});
    session->click(3, kPlain);
    session->setQuery(u"dog"_s);
    session->enter();
    EXPECT_EQ(shown(), u"a dogD DOG"_s);
    session->setQuery(u"cat"_s);
    EXPECT_EQ(session->current(), -1);
    session->enter();
    EXPECT_EQ(shown(), u"B CATc cat"_s);
    EXPECT_EQ(openName(), u"b cat"_s);
}

TEST_F(LibrarySessionTest, NothingThatIsFoundIsNowhereToGo)
{
    open({u"a dog"_s});
    session->setQuery(u"xylophone"_s);
    session->enter();
    session->moveTo(0, kPlain);
    session->selectAll();
    EXPECT_EQ(shown(), QString());
    EXPECT_EQ(openName(), u"a dog"_s);
}

TEST_F(LibrarySessionTest, AQueryThatFindsNothingShowsWhatIsRelatedToIt)
{
    open({u"a Scream"_s, u"b rain"_s, u"c Creepy Door"_s});
    languageModel.answer = {{{u"meaning"_s, u"ghosts"_s}, {u"tags"_s, QJsonArray{{u"creepy"_s, u"scream"_s}}}}};
    session->setQuery(u"spukhaft"_s);
    EXPECT_FALSE(session->isRelated());
    EXPECT_EQ(shown(), QString());
    clock.advance(std::chrono::milliseconds(800));
    QCoreApplication::processEvents();
    EXPECT_TRUE(session->isRelated());
    EXPECT_EQ(session->relatedWords(), QStringList({u"creepy"_s, u"scream"_s}));
    EXPECT_EQ(shown(), u"A SCREAMc Creepy Door"_s); // in the library's order
    rename(1, u"b spukhaft"_s);                     // now there is something
    EXPECT_FALSE(session->isRelated());
    EXPECT_EQ(shown(), u"b spukhaft"_s);
    rename(1, u"b rain"_s);
    EXPECT_EQ(shown(), u"A SCREAMc Creepy Door"_s);
    rename(1, u"b spukhaft"_s);
    library->deleteItems({sound(1)}); // what was found is gone
    EXPECT_EQ(shown(), u"A SCREAMc Creepy Door"_s);
    library->deleteItems(library->items()); // and what was related
    EXPECT_TRUE(session->isRelated());
    EXPECT_TRUE(session->sounds().isEmpty());
    session->setQuery(u"spukhafte"_s); // another question
    EXPECT_FALSE(session->isRelated());
}

TEST_F(LibrarySessionTest, NobodyIsAskedWhereTheSearchFindsSomething)
{
    open({u"a dog"_s});
    session->setQuery(u"dog"_s);
    clock.advance(std::chrono::milliseconds(5000));
    EXPECT_EQ(languageModel.questions, 0);
}

TEST_F(LibrarySessionTest, LettersFindTheNextNameThatBeginsWithThem)
{
    open({u"Door"_s, u"Dog"_s, u"cat"_s, u"Dolphin"_s});
    const auto type = [this](const QString& letters) {
        for (const QChar letter : letters)
            session->type(letter);
        return session->current();
    };
    EXPECT_EQ(type(u"d"_s), 1) << "the next one, not the one that it is at";
    EXPECT_EQ(type(u"ol"_s), 3) << "the letters go on";
    clock.advance(std::chrono::milliseconds(1100));
    EXPECT_EQ(type(u"C"_s), 2) << "after a pause they begin anew, in either case";
    EXPECT_EQ(selection->id(), session->sounds()[2].id);
    clock.advance(std::chrono::milliseconds(1100));
    EXPECT_EQ(type(u"d"_s), 3);
    EXPECT_EQ(type(u"d"_s), 0) << "one letter again and again goes round";
    EXPECT_EQ(type(u"d"_s), 1);
    clock.advance(std::chrono::milliseconds(1100));
    EXPECT_EQ(type(u"x"_s), 1) << "no name begins so";
}

TEST_F(LibrarySessionTest, TellsWhereSomebodyWentButNotWhatTakesADeletedSoundsPlace)
{
    openLetters();
    const QSignalSpy went(session.get(), &LibrarySession::wentToCurrent);
    session->click(3, kPlain);
    EXPECT_GT(went.count(), 0);
    const auto before = went.count();
    const SoundItem gone = session->sounds()[3];
    selection->letGo({gone.id});
    library->deleteItems({gone});
    selection->openNewest();
    EXPECT_EQ(session->current(), 0);
    EXPECT_EQ(went.count(), before);
    session->moveTo(1, kPlain);
    EXPECT_GT(went.count(), before);
}
