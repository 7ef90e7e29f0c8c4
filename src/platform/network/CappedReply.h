#pragma once

#include <QByteArray>

#include <chrono>
#include <functional>

class QNetworkAccessManager;
class QNetworkRequest;

namespace tonequill {

// What came back of a request whose size and time were limited.
struct CappedReply {
    enum class Outcome { answered, unreachable, timedOut, tooLarge, cancelled };

    Outcome outcome = Outcome::unreachable;
    int status = 0; // of HTTP, where it answered
    QByteArray body;
};

// Sends a GET, or a POST where there is a body. `take` is called once, on this
// thread: when the answer is complete, when `time` has passed or when more than
// `bytes` have come. If the manager goes first it is called with `cancelled`.
void fetchCapped(QNetworkAccessManager& manager, const QNetworkRequest& request, const QByteArray& body,
                 std::chrono::milliseconds time, qint64 bytes, std::function<void(CappedReply)> take);

} // namespace tonequill
