#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace tonequill {

// The part of a desktop entry that starts a program: the group "Desktop Entry" of
// a .desktop file, by the rules of freedesktop.org (version 1.5). A plain value.
class DesktopEntry {
public:
    // None for what has no such group, is no application, or says that it isn't there.
    static std::optional<DesktopEntry> parse(const QByteArray& text);

    // A value of the group, unescaped; empty without one. Translations are not read.
    QString value(const QString& key) const { return m_values.value(key); }
    // The parts of a value that is a list.
    QStringList list(const QString& key) const;

    // The program and its arguments that open a file, by the entry's Exec line.
    // A line that names no place for the file has it at its end. Empty for a line
    // that breaks the rules of quoting.
    QStringList command(const QString& path) const;

private:
    QHash<QString, QString> m_values;
};

} // namespace tonequill
