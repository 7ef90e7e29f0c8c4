#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace tonequill {

// The path in the bytes that calls of the system take. Empty for a path with a
// U+0000: the system would end the name there and mean another file, while it
// refuses an empty one (ENOENT).
inline QByteArray systemPath(const QString& path)
{
    return path.contains(QChar(u'\0')) ? QByteArray() : QFile::encodeName(path);
}

} // namespace tonequill
