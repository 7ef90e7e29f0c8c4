#include "platform/desktop/DesktopApps.h"

#include "platform/desktop/DesktopEntry.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QUrl>
#include <QUuid>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

const QByteArray kBundleKey = "X-Tonequill-Bundle";

// Beyond any desktop that people use, and a few tens of milliseconds to read.
constexpr int kMostEntries = 5'000;
constexpr qint64 kLargestEntry = 256 * 1024; // bytes

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.read(kLargestEntry) : QByteArray();
}

// The program and the arguments by which an application opens a file; empty if
// it isn't there.
QStringList commandFor(const QString& bundle, const QString& path)
{
    QSet<QString> seen; // an entry hides those of its name in folders that come later
    int count = 0;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        QDirIterator entries(folder, {u"*.desktop"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (entries.hasNext() && ++count <= kMostEntries) {
            const QString file = entries.next();
            const QString id = file.sliced(folder.size() + 1).replace(u'/', u'-');
            if (seen.contains(id))
                continue;
            seen.insert(id);
            const QByteArray text = bytesOf(file);
            if (!text.contains(kBundleKey))
                continue;
            const auto entry = DesktopEntry::parse(text);
            if (!entry || !entry->list(QString::fromLatin1(kBundleKey)).contains(bundle))
                continue;
            const QString needed = entry->value(u"TryExec"_s);
            QStringList command = entry->command(path);
            if (command.isEmpty() || (!needed.isEmpty() && QStandardPaths::findExecutable(needed).isEmpty()))
                continue;
            command.first() = QStandardPaths::findExecutable(command.first());
            if (!command.first().isEmpty())
                return command;
        }
    }
    return {};
}

constexpr int kMostAskers = 16; // they wait; none stands before another

bool start(QStringList command)
{
    const QString program = command.takeFirst();
    return QProcess::startDetached(program, command);
}

bool askFileManager(const QString& method, const QString& path, std::chrono::milliseconds patience)
{
    // Without an address the library would start a bus of its own.
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (address.isEmpty())
        return false;
    const QString name = QUuid::createUuid().toString();
    bool isShown = false;
    {
        const QDBusConnection bus = QDBusConnection::connectToBus(address, name);
        auto call = QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                                   u"org.freedesktop.FileManager1"_s, method);
        call << QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)} << QString();
        isShown = bus.isConnected() &&
                  bus.call(call, QDBus::Block, static_cast<int>(patience.count())).type() == QDBusMessage::ReplyMessage;
    }
    QDBusConnection::disconnectFromBus(name);
    return isShown;
}

// Has the file manager show `path`, or else opens `folder`.
void show(QThreadPool& askers, const QString& method, const QString& path, const QString& folder,
          std::chrono::milliseconds patience)
{
    askers.start([method, path, folder, patience] {
        if (!askFileManager(method, path, patience))
            start({u"xdg-open"_s, folder});
    });
}

} // namespace

DesktopApps::DesktopApps(std::chrono::milliseconds patience) : m_patience(patience)
{
    m_askers.setMaxThreadCount(kMostAskers);
}

bool DesktopApps::has(const QString& bundle) const
{
    return !commandFor(bundle, {}).isEmpty();
}

bool DesktopApps::open(const QString& path, const QString& bundle)
{
    const QStringList command = commandFor(bundle, path);
    return !command.isEmpty() && start(command);
}

void DesktopApps::reveal(const QString& path)
{
    show(m_askers, u"ShowItems"_s, path, QFileInfo(path).absolutePath(), m_patience);
}

void DesktopApps::showFolder(const QString& path)
{
    show(m_askers, u"ShowFolders"_s, path, path, m_patience);
}

} // namespace tonequill
