#pragma once

#include "support/Environment.h"
#include "support/MediaFactory.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <optional>

namespace tonequill::test {

// A session bus of the test's own, which programs find by the environment.
class SessionBus {
public:
    SessionBus()
    {
        const QString told = makeFile(QStringLiteral("dbus"), {});
        const QString line = QStringLiteral("dbus-daemon --session --fork --print-address=1 --print-pid=1 >'") + told + u'\'';
        EXPECT_EQ(run(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QStringLiteral("PATH=/usr/bin ") + line}), 0);
        const QByteArrayList lines = bytesOfFile(told).split('\n');
        m_address = QString::fromUtf8(lines.value(0));
        m_daemon = lines.value(1).toInt();
        m_variable.emplace("DBUS_SESSION_BUS_ADDRESS", lines.value(0));
    }
    ~SessionBus()
    {
        if (m_daemon > 0)
            kill(m_daemon, SIGTERM);
    }

    const QString& address() const { return m_address; }

private:
    QString m_address;
    pid_t m_daemon = 0;
    std::optional<Environment> m_variable;
};

// A program on that bus, which answers to one name and one path: a call is given
// to `answer` and gets no reply but what that sends.
class BusProgram final : public QDBusVirtualObject {
public:
    using Answer = std::function<void(const QDBusMessage& call, const QDBusConnection& bus)>;

    BusProgram(const SessionBus& bus, QString service, const QString& path, Answer answer)
        : m_service(std::move(service)),
          m_answer(std::move(answer)),
          m_bus(QDBusConnection::connectToBus(bus.address(), m_name))
    {
        isThere = m_bus.registerVirtualObject(path, this) && (m_service.isEmpty() || m_bus.registerService(m_service));
    }
    ~BusProgram() override { QDBusConnection::disconnectFromBus(m_name); }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        m_answer(message, bus);
        return true;
    }

    void send(const QDBusMessage& message) const { m_bus.send(message); }

    bool isThere = false;

private:
    QString m_name = QUuid::createUuid().toString();
    QString m_service;
    Answer m_answer;
    QDBusConnection m_bus;
};

} // namespace tonequill::test
