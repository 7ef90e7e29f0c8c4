#include "platform/process/HandOver.h"
#include "platform/process/LibraryLock.h"
#include "support/Await.h"
#include "support/Printing.h"

#include <QFile>
#include <QJsonArray>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <thread>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// Sends from another thread, as another program would, while this one serves.
std::optional<QJsonObject> sendTo(const QString& address, const QJsonObject& message, int timeoutMs = 5000)
{
    const auto work = [=] { return HandOver::send(address, message, timeoutMs); };
    return test::awaitElsewhere(work);
}

} // namespace

TEST(LibraryLock, HasOneOwner)
{
    const QTemporaryDir folder;
    const QString library = folder.filePath(u"Library"_s);
    {
        LibraryLock first(library);
        LibraryLock second(library);
        EXPECT_TRUE(first.acquire());
        EXPECT_TRUE(first.acquire());
        EXPECT_FALSE(second.acquire());
        EXPECT_FALSE(second.ownerAddress());
        first.publish(u"/run/tonequill-0123456789abcdef"_s);
        EXPECT_EQ(second.ownerAddress(), u"/run/tonequill-0123456789abcdef"_s);
    }
    LibraryLock third(library);
    EXPECT_TRUE(third.acquire());
    EXPECT_FALSE(third.ownerAddress());
    EXPECT_FALSE(QFile::exists(library)); // the lock makes no library
}

TEST(HandOver, CarriesAMessageAndItsAnswer)
{
    QJsonObject received;
    HandOver server;
    server.serve([&received](const QJsonObject& message) {
        received = message;
        return QJsonObject{{u"ok"_s, true}};
    });
    const auto address = server.listen(u"/somewhere/Library"_s);
    ASSERT_TRUE(address);
    QJsonArray files;
    for (int i = 0; i < 20000; ++i)
        files.append(u"/a/صوت %1.wav"_s.arg(i));
    const auto answer = sendTo(*address, {{u"add"_s, files}});
    ASSERT_TRUE(answer);
    EXPECT_TRUE(answer->value(u"ok"_s).toBool());
    EXPECT_EQ(received.value(u"add"_s).toArray(), files);
}

TEST(LibraryLock, AnOwnerThatNeitherListensNorGoesIsWaitedFor)
{
    const QTemporaryDir folder;
    const QString library = folder.filePath(u"Library"_s);
    auto first = std::make_unique<LibraryLock>(library);
    ASSERT_TRUE(first->acquire());
    EXPECT_FALSE(LibraryLock(library).acquireSoon(100));
    bool isOwner = false;
    std::thread second([&] { isOwner = LibraryLock(library).acquireSoon(60000); });
    QThread::msleep(120);
    first.reset(); // a command that is done
    second.join();
    EXPECT_TRUE(isOwner);

    LibraryLock listening(library);
    ASSERT_TRUE(listening.acquire());
    listening.publish(u"/run/tonequill-0123456789abcdef"_s);
    EXPECT_FALSE(LibraryLock(library).acquireSoon(60000)) << "it can be asked";
}

TEST(HandOver, WhatComesBeforeAnybodyServesWaits)
{
    HandOver server;
    const auto address = server.listen(u"/starting/Library"_s);
    ASSERT_TRUE(address);
    Workers workers;
    FlowGroup flows;
    const auto early = [address] { return HandOver::send(*address, {{u"add"_s, QJsonArray{}}}, 60000); };
    auto answer = background(flows, workers.shown(), early);
    QThread::msleep(120);
    int received = 0;
    server.serve([&received](const QJsonObject&) {
        ++received;
        return QJsonObject{{u"ok"_s, true}};
    });
    EXPECT_TRUE(test::await(std::move(answer)));
    EXPECT_EQ(received, 1);
}

// It has told its user to try again: carried out late, it would be done twice.
TEST(HandOver, WhoGaveUpIsNotServed)
{
    HandOver server;
    const auto address = server.listen(u"/late/Library"_s);
    ASSERT_TRUE(address);
    EXPECT_FALSE(HandOver::send(*address, {{u"add"_s, QJsonArray{u"/a.wav"_s}}}, 50));
    int received = 0;
    server.serve([&received](const QJsonObject& message) {
        received += message.contains(u"add"_s) ? 1 : 100;
        return QJsonObject{{u"ok"_s, true}};
    });
    EXPECT_TRUE(sendTo(*address, {{u"name"_s, QJsonArray{}}})); // comes after it, and is served
    EXPECT_EQ(received, 100);
}

TEST(HandOver, ASecondOwnerTakesTheAddressOfAKilledOne)
{
    const auto answer = [](const QJsonObject&) { return QJsonObject{{u"ok"_s, true}}; };
    HandOver first;
    const auto address = first.listen(u"/twice/Library"_s);
    HandOver second;
    EXPECT_EQ(second.listen(u"/twice/Library"_s), address);
    second.serve(answer);
    EXPECT_TRUE(sendTo(*address, {}));
}

TEST(HandOver, NobodyThereIsToldSoon)
{
    EXPECT_FALSE(sendTo(u"/nowhere/tonequill-none"_s, {}, 300));
    HandOver silent;
    silent.serve([](const QJsonObject&) -> QJsonObject { return {}; });
    const auto address = silent.listen(u"/garbage/Library"_s);
    const auto work = [address] {
        QLocalSocket socket;
        socket.connectToServer(*address);
        socket.waitForConnected(1000);
        socket.write("this is no message\n");
        socket.waitForBytesWritten(1000);
        socket.waitForReadyRead(2000);
        return socket.readAll() == "{}\n";
    };
    EXPECT_TRUE(test::awaitElsewhere(work));
}
