#include "platform/process/Defaults.h"

#include "platform/files/FileDescriptor.h"
#include "platform/files/Files.h"
#include "platform/files/ScratchFile.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>

#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

// Something else than a file (a pipe, a device) would block whoever reads it, and is
// not ours to replace.
bool isFileOrFree(const QString& path)
{
    const QFileInfo info(path);
    return info.isFile() || !info.exists();
}

QVariantMap readIni(const QString& path)
{
    if (!isFileOrFree(path))
        return {};
    const QSettings ini(path, QSettings::IniFormat);
    QVariantMap values;
    for (const QString& key : ini.allKeys())
        values.insert(key, ini.value(key));
    return values;
}

// Whoever keeps the settings elsewhere and links to them wants them to stay there.
QString behindLinks(QString path)
{
    constexpr int kMostLinks = 40; // as many as the kernel follows
    for (int i = 0; i < kMostLinks && QFileInfo(path).isSymLink(); ++i)
        path = QFileInfo(path).symLinkTarget();
    return path;
}

} // namespace

QString Defaults::standardPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/Tonequill/tonequill.ini"_s;
}

Defaults::Defaults(QString path) : m_path(behindLinks(std::move(path))), m_values(readIni(m_path))
{}

std::optional<bool> Defaults::boolean(const QString& key) const
{
    const QVariant value = m_values.value(key);
    if (!value.isValid())
        return std::nullopt;
    return value.toBool();
}

std::optional<QString> Defaults::text(const QString& key) const
{
    const QVariant value = m_values.value(key);
    if (!value.isValid())
        return std::nullopt;
    // An unquoted comma makes a list of a text that a person typed into the file.
    return value.typeId() == QMetaType::QStringList ? value.toStringList().join(u", "_s) : value.toString();
}

std::optional<QByteArray> Defaults::data(const QString& key) const
{
    const QVariant value = m_values.value(key);
    if (!value.isValid())
        return std::nullopt;
    return value.toByteArray();
}

void Defaults::setBoolean(const QString& key, bool value)
{
    set(key, value);
}

void Defaults::setText(const QString& key, const QString& value)
{
    set(key, value);
}

void Defaults::setData(const QString& key, const QByteArray& value)
{
    set(key, value);
}

bool Defaults::saveAgain()
{
    m_isSaved = m_isSaved || save();
    return m_isSaved;
}

void Defaults::remove(const QString& key)
{
    m_values.remove(key);
    m_isSaved = save();
}

void Defaults::set(const QString& key, const QVariant& value)
{
    m_values.insert(key, value);
    m_isSaved = save();
}

// QSettings makes the text, but doesn't write it home: on a full disk it turns a
// small file into an empty one and reports success. Settings that cannot be
// saved are no reason to stop: whoever set them asks isSaved() and tells.
bool Defaults::save() const
{
    if (!isFileOrFree(m_path))
        return false;
    const ScratchFile scratch = ScratchFile::privateFolder(); // they may hold tokens
    const QString scratchPath = scratch.path() + u"/settings.ini"_s;
    if (scratch.path().isEmpty() || !FileDescriptor(scratchPath, O_WRONLY | O_CREAT | O_EXCL, 0600).close())
        return false;
    {
        QSettings ini(scratchPath, QSettings::IniFormat);
        for (auto it = m_values.cbegin(); it != m_values.cend(); ++it)
            ini.setValue(it.key(), it.value());
    }
    if (readIni(scratchPath).size() != m_values.size())
        return false;
    try {
        QDir().mkpath(QFileInfo(m_path).path());
        constexpr qint64 kLimit = 64 << 20;
        const QByteArray bytes = m_values.isEmpty() ? QByteArray() : Files::readAll(scratchPath, kLimit);
        Files::writeDurably(m_path, std::span(&bytes, 1), Files::Privacy::ownerOnly);
    } catch (const FileError&) {
        return false;
    }
    return true;
}

} // namespace tonequill
