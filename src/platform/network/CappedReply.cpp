#include "platform/network/CappedReply.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

namespace tonequill {

namespace {

// One request on its way; it lives as a child of its reply.
class Exchange : public QObject {
public:
    Exchange(QNetworkReply* reply, std::chrono::milliseconds time, qint64 bytes, std::function<void(CappedReply)> done)
        : QObject(reply),
          m_reply(reply),
          m_mostBytes(bytes),
          m_done(std::move(done))
    {
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

    ~Exchange() override
    {
        if (!m_isDone)
            m_done({CappedReply::Outcome::cancelled, 0, {}});
    }

private:
    void take()
    {
        m_body += m_reply->read(m_mostBytes + 1 - m_body.size());
        if (m_body.size() > m_mostBytes)
            end(CappedReply::Outcome::tooLarge);
    }

    void end(CappedReply::Outcome outcome)
    {
        if (m_isDone)
            return;
        m_isDone = true;
        CappedReply reply{outcome, m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), std::move(m_body)};
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
        const auto done = std::move(m_done); // who takes it may end the manager, and with it this
        done(std::move(reply));
    }

    QNetworkReply* m_reply;
    qint64 m_mostBytes;
    std::function<void(CappedReply)> m_done;
    QByteArray m_body;
    bool m_isDone = false;
};

} // namespace

void fetchCapped(QNetworkAccessManager& manager, const QNetworkRequest& request, const QByteArray& body,
                 std::chrono::milliseconds time, qint64 bytes, std::function<void(CappedReply)> take)
{
    QNetworkReply* reply = body.isEmpty() ? manager.get(request) : manager.post(request, body);
    new Exchange(reply, time, bytes, std::move(take)); // the reply owns it
}

} // namespace tonequill
