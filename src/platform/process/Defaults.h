#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

namespace tonequill {

// The key-value store for settings, tokens and manifests. An absent key is
// different from a stored false or an empty text. Every change is on the disk
// when the setter returns; one that cannot be written stays in memory and is
// tried again with the next. One thread.
class Defaults {
public:
    // $XDG_CONFIG_HOME/Tonequill/tonequill.ini, or what the system has for that.
    static QString standardPath();

    explicit Defaults(QString path = standardPath());

    const QString& path() const { return m_path; }

    std::optional<bool> boolean(const QString& key) const;
    std::optional<QString> text(const QString& key) const;
    std::optional<QByteArray> data(const QString& key) const;

    void setBoolean(const QString& key, bool value);
    void setText(const QString& key, const QString& value);
    void setData(const QString& key, const QByteArray& value);
    void remove(const QString& key);

    // Whether every change is on the disk.
    bool isSaved() const { return m_isSaved; }
    // Tries once more if that failed. Whether they are on the disk now.
    bool saveAgain();

private:
    void set(const QString& key, const QVariant& value);
    bool save() const;

    QString m_path;
    QVariantMap m_values;
    bool m_isSaved = true;
};

} // namespace tonequill
