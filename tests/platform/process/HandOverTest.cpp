#include "platform/process/HandOver.h"
#include "platform/process/LibraryLock.h"
#include "support/Await.h"
#include "support/Printing.h"

#include <QFile>
#include <QJsonArray>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

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
    HandOver server([&received](const QJsonObject& message) {
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

TEST(HandOver, ASecondOwnerTakesTheAddressOfAKilledOne)
{
    const auto answer = [](const QJsonObject&) { return QJsonObject{{u"ok"_s, true}}; };
    HandOver first(answer);
    const auto address = first.listen(u"/twice/Library"_s);
    HandOver second(answer);
    EXPECT_EQ(second.listen(u"/twice/Library"_s), address);
    EXPECT_TRUE(sendTo(*address, {}));
}

TEST(HandOver, NobodyThereIsToldSoon)
{
    EXPECT_FALSE(sendTo(u"/nowhere/tonequill-none"_s, {}, 300));
    HandOver silent([](const QJsonObject&) -> QJsonObject { return {}; });
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
