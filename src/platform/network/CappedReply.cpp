#include "platform/network/CappedReply.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPromise>
#include <QTimer>

namespace tonequill {

namespace {

// One request on its way; it lives as a child of its reply.
class Exchange : public QObject {
public:
    Exchange(QNetworkReply* reply, std::chrono::milliseconds time, qint64 bytes)
        : QObject(reply),
          m_reply(reply),
          m_mostBytes(bytes)
    {
        m_promise.start();
        // Nothing is buffered beyond the cap, however fast it comes.
        reply->setReadBufferSize(bytes + 1);
        connect(reply, &QNetworkReply::readyRead, this, [this] { take(); });
        connect(reply, &QNetworkReply::finished, this, [this] {
            take();
            const bool hasAnswer = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
            // An HTTP error is an answer; a connection that broke in the middle is none.
            const bool isWhole =
                m_reply->error() == QNetworkReply::NoError || m_reply->error() >= QNetworkReply::ContentAccessDenied;
            end(hasAnswer && isWhole ? CappedReply::Outcome::answered : CappedReply::Outcome::unreachable);
        });
        QTimer::singleShot(time, this, [this] { end(CappedReply::Outcome::timedOut); });
    }

    ~Exchange() override { settle(CappedReply::Outcome::cancelled); }

    QFuture<CappedReply> future() { return m_promise.future(); }

private:
    void take()
    {
        m_body += m_reply->read(m_mostBytes + 1 - m_body.size());
        if (m_body.size() > m_mostBytes)
            end(CappedReply::Outcome::tooLarge);
    }

    void settle(CappedReply::Outcome outcome)
    {
        if (m_isDone)
            return;
        m_isDone = true;
        m_promise.addResult(CappedReply{outcome, m_status, m_body});
        m_promise.finish();
    }

    void end(CappedReply::Outcome outcome)
    {
        if (m_isDone)
            return;
        m_status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        settle(outcome);
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }

    QNetworkReply* m_reply;
    qint64 m_mostBytes;
    QPromise<CappedReply> m_promise;
    QByteArray m_body;
    int m_status = 0;
    bool m_isDone = false;
};

} // namespace

QFuture<CappedReply> fetchCapped(QNetworkAccessManager& manager, const QNetworkRequest& request, const QByteArray& body,
                                 std::chrono::milliseconds time, qint64 bytes)
{
    QNetworkReply* reply = body.isEmpty() ? manager.get(request) : manager.post(request, body);
    return (new Exchange(reply, time, bytes))->future();
}

} // namespace tonequill
