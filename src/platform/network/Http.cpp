#include "platform/network/Http.h"

#include "platform/network/HttpParser.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkProxy>
#include <QSslSocket>
#include <QTimer>

#include <algorithm>

namespace tonequill {

using namespace Qt::StringLiterals;
using Outcome = HttpReply::Outcome;

namespace {

constexpr int kMostRedirects = 5;
constexpr qint64 kReadAhead = 64 * 1024; // bytes that the socket may hold for us

int portOf(const QUrl& url)
{
    return url.port(url.scheme() == u"https" ? 443 : 80);
}

bool isHttp(const QUrl& url)
{
    return url.isValid() && !url.host().isEmpty() && (url.scheme() == u"http" || url.scheme() == u"https");
}

bool isSameServer(const QUrl& one, const QUrl& other)
{
    return one.scheme() == other.scheme() && one.host() == other.host() && portOf(one) == portOf(other);
}

bool isPublicAddress(const QHostAddress& address)
{
    bool isV4 = false;
    const QHostAddress plain(address.toIPv4Address(&isV4)); // a mapped one, too
    static const QList<std::pair<QHostAddress, int>> notPublic4 = [] {
        QList<std::pair<QHostAddress, int>> nets;
        for (const char* net : {"0.0.0.0/8", "10.0.0.0/8", "100.64.0.0/10", "127.0.0.0/8", "169.254.0.0/16", "172.16.0.0/12",
                                "192.0.0.0/24", "192.168.0.0/16", "198.18.0.0/15", "224.0.0.0/3"})
            nets << QHostAddress::parseSubnet(QString::fromLatin1(net));
        return nets;
    }();
    static const QList<std::pair<QHostAddress, int>> public6 = {QHostAddress::parseSubnet(u"2000::/3"_s)};
    const auto isIn = [](const QHostAddress& one, const QList<std::pair<QHostAddress, int>>& nets) {
        return std::any_of(nets.begin(), nets.end(), [&](const auto& net) { return one.isInSubnet(net); });
    };
    return isV4 ? !isIn(plain, notPublic4) : isIn(address, public6);
}

// One request on its way, over one connection after the other.
class Way final : public QObject, public Http::Exchange {
public:
    Way(Http::Settings settings, HttpRequest request, std::function<void(HttpReply)> take)
        : m_settings(std::move(settings)),
          m_request(std::move(request)),
          m_take(std::move(take))
    {
        m_idle.setSingleShot(true);
        m_idle.setInterval(m_request.timeOut);
        connect(&m_idle, &QTimer::timeout, this, [this] { end(Outcome::timedOut); });
        m_deadline.setSingleShot(true);
        connect(&m_deadline, &QTimer::timeout, this, [this] { end(Outcome::timedOut); });
        m_deadline.start(m_request.deadline);
    }

    ~Way() override { stop(); }

    void go(const QUrl& url)
    {
        m_url = url;
        if (!isHttp(url))
            return end(Outcome::badResponse);
        m_mayBeNear =
            std::any_of(m_settings.own.begin(), m_settings.own.end(), [&](const QUrl& own) { return isSameServer(own, url); });
        m_idle.start();
        m_parser = std::make_unique<HttpParser>(m_request.largestBody);
        m_proxy = m_settings.proxy == Http::Proxy::none ? QNetworkProxy(QNetworkProxy::NoProxy) : desktopProxy();
        const QHostAddress literal(url.host());
        if (!literal.isNull())
            return connectTo({literal});
        if (m_proxy.type() != QNetworkProxy::NoProxy)
            return open(url.host()); // the proxy looks the name up
        m_lookup = QHostInfo::lookupHost(url.host(), this, [this](const QHostInfo& info) {
            m_lookup = -1;
            if (info.error() != QHostInfo::NoError || info.addresses().isEmpty())
                end(Outcome::offline);
            else
                connectTo(info.addresses());
        });
    }

private:
    QNetworkProxy desktopProxy() const
    {
        const auto proxies = QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(m_url));
        QNetworkProxy proxy = proxies.isEmpty() ? QNetworkProxy(QNetworkProxy::NoProxy) : proxies.first();
        if (proxy.type() == QNetworkProxy::HttpCachingProxy)
            proxy.setType(QNetworkProxy::HttpProxy); // a socket can only be led through
        return proxy;
    }

    // To the first that answers. A name that leads near by any of its addresses isn't asked.
    void connectTo(const QList<QHostAddress>& addresses)
    {
        if (!m_mayBeNear && !std::all_of(addresses.begin(), addresses.end(), isPublicAddress))
            return end(Outcome::badResponse);
        m_addresses = addresses;
        open(m_addresses.takeFirst().toString());
    }

    void open(const QString& host)
    {
        m_socket = std::make_unique<QSslSocket>();
        m_socket->setProxy(m_proxy);
        m_socket->setReadBufferSize(kReadAhead);
        const bool isSecret = m_url.scheme() == u"https";
        connect(m_socket.get(), &QSslSocket::readyRead, this, [this] { read(); });
        connect(m_socket.get(), &QSslSocket::disconnected, this, [this] { read(true); });
        connect(m_socket.get(), &QSslSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) { fail(error); });
        connect(m_socket.get(), &QSslSocket::encrypted, this, [this] { ask(); });
        if (isSecret) {
            m_socket->connectToHostEncrypted(host, quint16(portOf(m_url)), m_url.host());
        } else {
            connect(m_socket.get(), &QSslSocket::connected, this, [this] { ask(); });
            m_socket->connectToHost(host, quint16(portOf(m_url)));
        }
    }

    void ask()
    {
        m_addresses.clear();
        const bool isPost = !m_request.body.isEmpty();
        QByteArray path = m_url.path(QUrl::FullyEncoded).toLatin1();
        if (path.isEmpty())
            path = "/";
        if (m_url.hasQuery())
            path += '?' + m_url.query(QUrl::FullyEncoded).toLatin1();
        QByteArray host = m_url.host(QUrl::FullyEncoded).toLatin1();
        if (host.contains(':'))
            host = '[' + host + ']';
        if (m_url.port() > 0)
            host += ':' + QByteArray::number(m_url.port());
        QByteArray head = (isPost ? "POST " : "GET ") + path + " HTTP/1.1\r\nHost: " + host +
                          "\r\nConnection: close\r\nAccept-Encoding: identity\r\nUser-Agent: " + m_settings.userAgent + "\r\n";
        for (const auto& [name, value] : m_request.headers)
            head += name + ": " + value + "\r\n";
        if (isPost)
            head += "Content-Length: " + QByteArray::number(m_request.body.size()) + "\r\n";
        m_socket->write(head + "\r\n" + m_request.body);
    }

    void read(bool isEnd = false)
    {
        while (m_socket && m_socket->bytesAvailable() > 0 && m_parser->state() < HttpParser::State::done) {
            m_idle.start();
            m_parser->take(m_socket->read(kReadAhead));
        }
        if (isEnd && m_parser->state() < HttpParser::State::done && m_parser->end() == HttpParser::State::broken)
            return end(Outcome::offline); // it broke off in the middle
        if (m_parser->state() == HttpParser::State::broken)
            return end(Outcome::badResponse);
        if (m_parser->state() == HttpParser::State::done)
            answered();
    }

    void answered()
    {
        const int status = m_parser->status();
        const bool isRedirect = status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
        const auto target = m_parser->header("location");
        if (!isRedirect || !target || m_request.redirects == HttpRequest::Redirects::refused || !m_request.body.isEmpty())
            return end(Outcome::answered);
        const QUrl next = m_url.resolved(QUrl(QString::fromUtf8(*target)));
        const bool isWeaker = m_url.scheme() == u"https" && next.scheme() != u"https";
        if (++m_redirects > kMostRedirects || isWeaker)
            return end(Outcome::badResponse);
        drop();
        go(next);
    }

    void fail(QAbstractSocket::SocketError error)
    {
        switch (error) {
        case QAbstractSocket::RemoteHostClosedError:
            return; // what has come is read when it is disconnected
        case QAbstractSocket::SocketTimeoutError:
        case QAbstractSocket::ProxyConnectionTimeoutError:
            return end(Outcome::timedOut);
        case QAbstractSocket::SslHandshakeFailedError:
        case QAbstractSocket::SslInternalError:
        case QAbstractSocket::SslInvalidUserDataError:
        case QAbstractSocket::ProxyAuthenticationRequiredError:
        case QAbstractSocket::ProxyProtocolError:
            return end(Outcome::badResponse);
        default:
            break;
        }
        if (m_addresses.isEmpty())
            return end(Outcome::offline);
        drop();
        open(m_addresses.takeFirst().toString());
    }

    // The socket may be the one that is calling.
    void drop()
    {
        if (!m_socket)
            return;
        m_socket->disconnect(this);
        m_socket->abort();
        m_socket.release()->deleteLater();
    }

    void stop()
    {
        if (m_lookup >= 0)
            QHostInfo::abortHostLookup(m_lookup);
        m_lookup = -1;
        drop();
        m_idle.stop();
        m_deadline.stop();
    }

    void end(Outcome outcome)
    {
        if (!m_take)
            return;
        HttpReply reply;
        reply.outcome = outcome;
        reply.url = m_url;
        if (outcome == Outcome::answered) {
            reply.status = m_parser->status();
            reply.body = m_parser->body();
            constexpr qint64 kMostPatience = 24 * 60 * 60;
            const qint64 seconds = m_parser->header("retry-after").value_or(QByteArray()).toLongLong();
            reply.retryAfter = std::chrono::seconds(std::clamp<qint64>(seconds, 0, kMostPatience));
        }
        stop();
        const auto take = std::exchange(m_take, nullptr); // who takes it may drop this
        take(std::move(reply));
    }

    Http::Settings m_settings;
    HttpRequest m_request;
    std::function<void(HttpReply)> m_take;
    QUrl m_url;
    bool m_mayBeNear = false;
    int m_redirects = 0;
    int m_lookup = -1;
    QNetworkProxy m_proxy;
    QList<QHostAddress> m_addresses; // not tried yet
    std::unique_ptr<QSslSocket> m_socket;
    std::unique_ptr<HttpParser> m_parser;
    QTimer m_idle;
    QTimer m_deadline;
};

} // namespace

bool Http::isPublic(const QString& address)
{
    return isPublicAddress(QHostAddress(address));
}

std::unique_ptr<Http::Exchange> Http::begin(const HttpRequest& request, std::function<void(HttpReply)> take) const
{
    auto way = std::make_unique<Way>(m_settings, request, std::move(take));
    way->go(request.url);
    return way;
}

QCoro::Task<HttpReply> Http::fetch(FlowGroup& flows, HttpRequest request) const
{
    std::unique_ptr<Exchange> exchange;
    const Http client = *this; // a copy: this may go while the flow waits
    const auto ask = [&exchange, &client, &request](std::function<void(HttpReply)> take) {
        exchange = client.begin(request, std::move(take));
    };
    const HttpReply reply = co_await flows.reply<HttpReply>(ask);
    co_return HttpReply(reply); // a copy: QCoro 0.8 moves out of what it is given
}

} // namespace tonequill
