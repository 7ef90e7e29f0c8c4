#pragma once

#include <QHash>
#include <QPointer>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>

#include <functional>

namespace tonequill::test {

// A server on the loopback that writes whatever bytes a test wants.
class FakeHttpServer {
public:
    FakeHttpServer()
    {
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            while (QTcpSocket* socket = m_server.nextPendingConnection()) {
                QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { read(socket); });
                QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
        if (!m_server.listen(QHostAddress::LocalHost))
            qFatal("The test could not listen on the loopback");
    }

    QUrl url(const QString& path = QStringLiteral("/")) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
    }
    void stop() { m_server.close(); }

    QList<QByteArray> requests; // with their bodies
    // Gets the path and the socket to write to. The connection stays until it closes it.
    std::function<void(const QString& path, QTcpSocket& socket)> answer;

    static void send(QTcpSocket& socket, const QByteArray& bytes)
    {
        socket.write(bytes);
        socket.disconnectFromHost();
    }
    static void sendBody(QTcpSocket& socket, const QByteArray& body, const QByteArray& status = "200 OK",
                         const QByteArray& headers = {})
    {
        send(socket,
             "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body);
    }
    // The same bytes for ever, as fast as they are taken.
    static void flood(QTcpSocket& socket, const QByteArray& start, const QByteArray& again)
    {
        socket.write(start);
        auto* timer = new QTimer(&socket);
        QObject::connect(timer, &QTimer::timeout, &socket, [&socket, again] {
            while (socket.state() == QAbstractSocket::ConnectedState && socket.bytesToWrite() < (1 << 20))
                socket.write(again);
        });
        timer->start(0);
    }

private:
    void read(QTcpSocket* socket)
    {
        QByteArray& got = m_got[socket];
        got += socket->readAll();
        const qsizetype head = got.indexOf("\r\n\r\n");
        if (head < 0)
            return;
        qsizetype length = 0;
        for (const QByteArray& line : got.left(head).split('\n')) {
            if (line.toLower().startsWith("content-length:"))
                length = line.mid(15).trimmed().toLongLong();
        }
        if (got.size() < head + 4 + length)
            return;
        requests << m_got.take(socket);
        if (answer)
            answer(QString::fromLatin1(requests.last().split(' ').value(1)), *socket);
    }

    QHash<QTcpSocket*, QByteArray> m_got;
    QTcpServer m_server;
};

} // namespace tonequill::test
