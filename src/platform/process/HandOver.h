#pragma once

#include <QJsonObject>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

class QLocalServer;
class QLocalSocket;

namespace tonequill {

// How a second program gives its work to the one that owns the library: one
// JSON object over a local socket, answered by one. Only the same user can
// connect.
//
// The messages: {"add": [absolute paths]} imports files (none: the window just
// comes to the front), {"delete": [ids]} deletes sounds, {"name": [ids]} gives
// them smart names.
class HandOver : public QObject {
    Q_OBJECT

public:
    // What the owner does with a message, and what it answers.
    using Handler = std::function<QJsonObject(const QJsonObject& message)>;

    HandOver();
    ~HandOver() override;

    // The address for LibraryLock::publish; none if it could not listen. From now
    // on messages wait here until somebody serves them.
    std::optional<QString> listen(const QString& libraryFolder);
    // Whether a text has the shape of such an address.
    static bool isAddress(const QString& text);
    // Carries out what came and what comes, unless its sender gave up meanwhile.
    void serve(Handler handler);

    // Sends a message to an owner and waits for its answer, at most `timeoutMs`.
    // None if nobody answers in time: it is not carried out later either. Blocks;
    // no event loop is needed.
    static std::optional<QJsonObject> send(const QString& address, const QJsonObject& message, int timeoutMs);

private:
    void serveWaiting();
    void serve(QLocalSocket* socket);

    Handler m_handler;
    std::unique_ptr<QLocalServer> m_server;
};

} // namespace tonequill
