#pragma once

#include "base/FlowGroup.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

namespace tonequill {

// One request: a GET, or a POST where there is a body.
struct HttpRequest {
    enum class Redirects : std::uint8_t { refused, followed };

    QUrl url; // http or https
    QByteArray body;
    QList<std::pair<QByteArray, QByteArray>> headers; // besides the client's own
    std::chrono::milliseconds timeOut{40000};         // without a byte
    std::chrono::milliseconds deadline{40000};        // for all of it, redirects and all
    qint64 largestBody = qint64(8) << 20;             // bytes
    Redirects redirects = Redirects::refused;
};

// What came of it.
struct HttpReply {
    enum class Outcome : std::uint8_t {
        answered,    // with any status; the body is whole
        offline,     // nobody is there, or the connection broke
        timedOut,    // no byte for too long, or not done in time
        badResponse, // not HTTP, too much of it, no way to read it, or nowhere that may be asked
        cancelled,
    };

    Outcome outcome = Outcome::offline;
    int status = 0;
    QByteArray body;
    QUrl url;                           // which answered in the end
    std::chrono::seconds retryAfter{0}; // where the server asks for patience
};

// Asks servers, and believes nothing that they say: headers and bodies are capped as they
// come in, packed bodies are not taken (they are not asked for), and every wait ends. No
// cookies, nothing is kept. Redirects lead nowhere but to http and https, never from https to
// http, and at most five times.
//
// Addresses of this machine and of private networks are asked only where the
// configuration names them, so that no catalogue and no redirect makes the program knock
// there. One thread, which has an event loop; nothing blocks it.
class Http {
public:
    enum class Proxy : std::uint8_t { ofTheDesktop, none };
    struct Settings {
        QByteArray userAgent = "Tonequill/0.3";
        Proxy proxy = Proxy::ofTheDesktop;
        QList<QUrl> own{}; // by scheme, host and port: these may be on this machine, or near
    };

    Http() = default;
    explicit Http(Settings settings) : m_settings(std::move(settings)) {}

    // The reply, or Cancelled when the group ends first.
    QCoro::Task<HttpReply> fetch(FlowGroup& flows, HttpRequest request) const;

    // A request on its way. It is dropped with this, and then nothing is told.
    class Exchange {
    public:
        virtual ~Exchange() = default;
    };
    // `take` is called once, maybe before this returns.
    std::unique_ptr<Exchange> begin(const HttpRequest& request, std::function<void(HttpReply)> take) const;

    // Whether the address is one that anybody on the internet may have.
    static bool isPublic(const QString& address);

private:
    Settings m_settings;
};

} // namespace tonequill
