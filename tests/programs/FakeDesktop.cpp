// A desktop on the session bus: its settings portal and its file manager.
//
//     fake_desktop SCHEME
//
// SCHEME is the portal's "color-scheme"; each line on the standard input is a new
// one, told to everybody. It prints "ready", then each folder that it is asked
// to show.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSocketNotifier>

#include <iostream>
#include <string>

using namespace Qt::StringLiterals;

namespace {

const QString kPortalPath = u"/org/freedesktop/portal/desktop"_s;
const QString kManagerPath = u"/org/freedesktop/FileManager1"_s;

class Desktop final : public QDBusVirtualObject {
public:
    explicit Desktop(uint scheme) : m_scheme(scheme) {}

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override
    {
        if (call.member() == u"Read") {
            const QVariant inner = QVariant::fromValue(QDBusVariant(m_scheme));
            bus.send(call.createReply(QVariant::fromValue(QDBusVariant(inner))));
        } else if (call.member() == u"ShowFolders") {
            std::cout << call.arguments().value(0).toStringList().join(u' ').toStdString() << std::endl;
            bus.send(call.createReply());
        } else {
            return false;
        }
        return true;
    }

    void change(uint scheme)
    {
        m_scheme = scheme;
        auto signal = QDBusMessage::createSignal(kPortalPath, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << u"org.freedesktop.appearance"_s << u"color-scheme"_s << QVariant::fromValue(QDBusVariant(scheme));
        QDBusConnection::sessionBus().send(signal);
    }

private:
    uint m_scheme;
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    Desktop desktop(application.arguments().value(1).toUInt());
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerVirtualObject(kPortalPath, &desktop) || !bus.registerVirtualObject(kManagerPath, &desktop) ||
        !bus.registerService(u"org.freedesktop.portal.Desktop"_s) || !bus.registerService(u"org.freedesktop.FileManager1"_s))
        return 1;
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        std::string line;
        if (std::getline(std::cin, line))
            desktop.change(uint(std::stoul(line)));
        else
            QCoreApplication::quit();
    });
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}
