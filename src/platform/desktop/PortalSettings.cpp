#include "platform/desktop/PortalSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

const QString kService = u"org.freedesktop.portal.Desktop"_s;
const QString kPath = u"/org/freedesktop/portal/desktop"_s;
const QString kInterface = u"org.freedesktop.portal.Settings"_s;
const QString kSpace = u"org.freedesktop.appearance"_s;
const QString kKey = u"color-scheme"_s;

} // namespace

PortalSettings::PortalSettings(std::function<void(const QVariant&)> told) : m_told(std::move(told))
{
    // Without an address the library would start a bus of its own.
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (address.isEmpty())
        return;
    m_connection = QUuid::createUuid().toString();
    QDBusConnection bus = QDBusConnection::connectToBus(address, m_connection);
    if (!bus.isConnected())
        return;
    // Qt D-Bus looks the types of a slot up by their names, and knows its own only
    // once they have been used (6.4).
    qRegisterMetaType<QDBusVariant>();
    // First listen, then ask, so that no change falls in between.
    const bool isHeard = bus.connect(kService, kPath, kInterface, u"SettingChanged"_s, {kSpace, kKey}, u"ssv"_s, this,
                                     SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    if (!isHeard)
        qWarning("Changes between light and dark can't be followed.");
    auto* portal = new QDBusServiceWatcher(kService, bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(portal, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        m_hasHeard = false; // it is another one
        read();
    });
    read();
}

PortalSettings::~PortalSettings()
{
    if (!m_connection.isEmpty())
        QDBusConnection::disconnectFromBus(m_connection);
}

void PortalSettings::read()
{
    auto call = QDBusMessage::createMethodCall(kService, kPath, kInterface, u"Read"_s);
    call << kSpace << kKey;
    auto* answer = new QDBusPendingCallWatcher(QDBusConnection(m_connection).asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusMessage reply = answer->reply();
        const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage && reply.signature() == u"v";
        if (!m_hasHeard)
            m_told(isAnswer ? reply.arguments().first() : QVariant());
    });
}

void PortalSettings::onSettingChanged(const QString&, const QString&, const QDBusVariant& value)
{
    m_hasHeard = true;
    m_told(value.variant());
}

} // namespace tonequill
