#include "platform/desktop/SystemAppearance.h"

#include "platform/desktop/PortalSettings.h"

#include <QDBusVariant>

namespace tonequill {

namespace {

constexpr uint kPreferDark = 1;

// Some portals put the variant that they answer with into another one.
constexpr int kMostVariants = 4;

bool isDarkScheme(QVariant scheme)
{
    for (int i = 0; i < kMostVariants && scheme.userType() == qMetaTypeId<QDBusVariant>(); ++i)
        scheme = scheme.value<QDBusVariant>().variant();
    return scheme.userType() == QMetaType::UInt && scheme.toUInt() == kPreferDark;
}

} // namespace

SystemAppearance::SystemAppearance()
{
    auto* asker = new QObject; // lives on the thread
    asker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, asker, &QObject::deleteLater);
    QMetaObject::invokeMethod(
        asker,
        [this, asker] {
            auto* portal = new PortalSettings([this](const QVariant& scheme) {
                const bool isDark = isDarkScheme(scheme);
                QMetaObject::invokeMethod(this, [this, isDark] { set(isDark); });
            });
            portal->setParent(asker);
        },
        Qt::QueuedConnection);
    m_thread.setObjectName(QStringLiteral("settings portal"));
    m_thread.start();
}

SystemAppearance::~SystemAppearance()
{
    m_thread.quit();
    m_thread.wait();
}

void SystemAppearance::set(bool isDark)
{
    if (isDark == m_isDark)
        return;
    m_isDark = isDark;
    Q_EMIT changed(isDark);
}

} // namespace tonequill
