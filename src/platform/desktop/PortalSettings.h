#pragma once

#include <QObject>
#include <QVariant>

#include <functional>

class QDBusVariant;

namespace tonequill {

// One connection to the session bus that listens to the settings portal and
// reads "color-scheme". It belongs to the thread that it is made on, and may
// block it while it is made.
class PortalSettings : public QObject {
    Q_OBJECT
    Q_MOC_INCLUDE(<QDBusVariant>)

public:
    // `told` is called on that thread, with the scheme as the portal sent it.
    explicit PortalSettings(std::function<void(const QVariant& scheme)> told);
    ~PortalSettings() override;

private Q_SLOTS:
    void onSettingChanged(const QString& space, const QString& key, const QDBusVariant& value);

private:
    void read();

    std::function<void(const QVariant&)> m_told;
    QString m_connection;
    bool m_hasHeard = false; // of a change, which is newer than any answer
};

} // namespace tonequill
