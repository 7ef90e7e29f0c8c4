#pragma once

#include <QByteArray>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>

#include <functional>

namespace tonequill::test {

// A server on the loopback that speaks as much HTTP and OpenAI protocol as a
// test wants, and misbehaves on demand.
class FakeModelServer {
public:
    enum class Mood { answer, refuseSchemas, refuse, hang, drip, tenMegabytes, dieInTheMiddle, redirect };

    FakeModelServer()
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

    QUrl base() const { return QUrl(QStringLiteral("http://127.0.0.1:%1/v1").arg(m_server.serverPort())); }
    // From now on nothing listens any more.
    void stop() { m_server.close(); }

    QStringList models{QStringLiteral("nomic-embed-text"), QStringLiteral("small-chat")};
    Mood mood = Mood::answer;        // towards questions
    Mood probeMood = Mood::answer;   // towards GET models
    QString content;                 // what the model says
    QStringList paths;               // every request, in order
    QList<QJsonObject> questions;    // the bodies of the POSTs
    std::function<void()> onRequest; // called before a request is answered

    // A completion that says `text`.
    static QByteArray completion(const QString& text)
    {
        const QJsonObject message{{QStringLiteral("role"), QStringLiteral("assistant")}, {QStringLiteral("content"), text}};
        const QJsonObject choice{{QStringLiteral("message"), message}};
        return QJsonDocument(QJsonObject{{QStringLiteral("choices"), QJsonArray{choice}}}).toJson();
    }

private:
    void read(QTcpSocket* socket)
    {
        QByteArray& got = m_got[socket];
        got += socket->readAll();
        const qsizetype head = got.indexOf("\r\n\r\n");
        if (head < 0)
            return;
        const QByteArray header = got.left(head).toLower();
        qsizetype length = 0;
        if (const qsizetype at = header.indexOf("content-length:"); at >= 0)
            length = header.mid(at + 15, header.indexOf('\r', at) < 0 ? -1 : header.indexOf('\r', at) - at - 15)
                         .trimmed()
                         .toLongLong();
        if (got.size() < head + 4 + length)
            return;
        const QByteArray body = got.mid(head + 4, length);
        const QByteArray line = got.left(got.indexOf('\r'));
        m_got.remove(socket);
        paths << QString::fromLatin1(line.split(' ').value(1));
        if (onRequest)
            onRequest();
        if (line.startsWith("GET"))
            reply(socket, probeMood, modelList());
        else
            answerQuestion(socket, QJsonDocument::fromJson(body).object());
    }

    QByteArray modelList() const
    {
        QJsonArray list;
        for (const QString& id : models)
            list << QJsonObject{{QStringLiteral("id"), id}};
        return QJsonDocument(QJsonObject{{QStringLiteral("data"), list}}).toJson();
    }

    void answerQuestion(QTcpSocket* socket, const QJsonObject& question)
    {
        questions << question;
        const QString format = question[QStringLiteral("response_format")][QStringLiteral("type")].toString();
        if (mood == Mood::refuseSchemas)
            reply(socket, format == QStringLiteral("json_schema") ? Mood::refuse : Mood::answer, completion(content));
        else
            reply(socket, mood, completion(content));
    }

    static void reply(QTcpSocket* socket, Mood how, const QByteArray& body)
    {
        switch (how) {
        case Mood::answer:
        case Mood::refuseSchemas:
            send(socket, "200 OK", body);
            break;
        case Mood::refuse:
            send(socket, "400 Bad Request", "{\"error\":\"no\"}");
            break;
        case Mood::hang:
            break;
        case Mood::drip: {
            socket->write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
            auto* timer = new QTimer(socket);
            QObject::connect(timer, &QTimer::timeout, socket, [socket] { socket->write(" "); });
            timer->start(5);
            break;
        }
        case Mood::tenMegabytes:
            send(socket, "200 OK", QByteArray(10 << 20, ' ') + body);
            break;
        case Mood::dieInTheMiddle:
            socket->write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n" + body.left(20));
            socket->flush();
            socket->disconnectFromHost();
            break;
        case Mood::redirect:
            socket->write("HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:1/\r\nContent-Length: 0\r\n\r\n");
            break;
        }
    }

    static void send(QTcpSocket* socket, const QByteArray& status, const QByteArray& body)
    {
        socket->write("HTTP/1.1 " + status + "\r\nContent-Type: application/json\r\nContent-Length: " +
                      QByteArray::number(body.size()) + "\r\n\r\n" + body);
    }

    QHash<QTcpSocket*, QByteArray> m_got;
    QTcpServer m_server;
};

} // namespace tonequill::test
