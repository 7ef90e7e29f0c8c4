#include "platform/process/HandOver.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>

#include <sys/socket.h>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr auto kSocketName = "/tonequill-"_L1; // behind the runtime folder, before the hash
constexpr qsizetype kHashDigits = 16;
constexpr qsizetype kLongestMessage = 16 << 20; // bytes; tens of thousands of paths
constexpr int kPatienceMs = 10000;              // for a client that doesn't finish its message

// One object on one line; none until the line is complete.
std::optional<QJsonObject> messageFrom(const QByteArray& bytes)
{
    const qsizetype end = bytes.indexOf('\n');
    if (end < 0)
        return std::nullopt;
    return QJsonDocument::fromJson(bytes.first(end)).object();
}

// Whether the other side has closed its end: QLocalSocket tells only once everything is read.
bool hasLeft(const QLocalSocket& socket)
{
    char next;
    return ::recv(int(socket.socketDescriptor()), &next, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
}

QByteArray lineOf(const QJsonObject& message)
{
    return QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

HandOver::HandOver() : m_server(std::make_unique<QLocalServer>())
{
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
}

HandOver::~HandOver() = default;

std::optional<QString> HandOver::listen(const QString& libraryFolder)
{
    // The runtime folder belongs to the user alone; its path is short enough for a socket.
    const QByteArray hash =
        QCryptographicHash::hash(libraryFolder.toUtf8(), QCryptographicHash::Sha256).toHex().first(kHashDigits);
    const QString address =
        QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + kSocketName + QString::fromLatin1(hash);
    QLocalServer::removeServer(address); // of a killed owner: the lock says that it is gone
    if (!m_server->listen(address))
        return std::nullopt;
    return m_server->fullServerName();
}

bool HandOver::isAddress(const QString& text)
{
    const qsizetype name = text.lastIndexOf(u'/');
    const QStringView hash = QStringView(text).sliced(std::max<qsizetype>(name, 0));
    const auto isHex = [](QChar c) { return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f'); };
    return text.startsWith(u'/') && hash.startsWith(kSocketName) && hash.size() == kSocketName.size() + kHashDigits &&
           std::all_of(hash.begin() + kSocketName.size(), hash.end(), isHex);
}

void HandOver::serve(Handler handler)
{
    m_handler = std::move(handler);
    connect(m_server.get(), &QLocalServer::newConnection, this, &HandOver::serveWaiting);
    serveWaiting();
}

void HandOver::serveWaiting()
{
    while (QLocalSocket* socket = m_server->nextPendingConnection())
        serve(socket);
}

void HandOver::serve(QLocalSocket* socket)
{
    auto received = std::make_shared<QByteArray>();
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    const auto read = [this, socket, received] {
        *received += socket->readAll();
        if (received->size() > kLongestMessage)
            return socket->abort();
        const auto message = messageFrom(*received);
        if (!message)
            return;
        received->clear();
        if (!hasLeft(*socket)) // who gave up has told so, and may try again
            socket->write(lineOf(m_handler(*message)));
        socket->disconnectFromServer();
    };
    connect(socket, &QLocalSocket::readyRead, socket, read);
    read();
    QTimer::singleShot(kPatienceMs, socket, [socket] { socket->abort(); });
}

std::optional<QJsonObject> HandOver::send(const QString& address, const QJsonObject& message, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    const auto left = [&deadline] { return int(deadline.remainingTime()); };
    QLocalSocket socket;
    socket.connectToServer(address);
    if (!socket.waitForConnected(left()))
        return std::nullopt;
    socket.write(lineOf(message));
    QByteArray received;
    while (!deadline.hasExpired()) {
        if (const auto answer = messageFrom(received))
            return answer;
        if (socket.bytesToWrite() > 0)
            socket.waitForBytesWritten(left());
        else if (!socket.waitForReadyRead(left()))
            break;
        received += socket.readAll();
        if (received.size() > kLongestMessage)
            break;
    }
    return messageFrom(received);
}

} // namespace tonequill
