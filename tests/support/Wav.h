#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QFile>
#include <QString>

#include <cmath>
#include <numbers>

namespace tonequill::test {

// Writes a mono 16-bit WAV of a 440 Hz tone at half of full scale.
inline QString writeTone(const QString& path, double seconds = 0.25, int rate = 8000)
{
    const auto frames = quint32(seconds * rate);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out.writeRawData("RIFF", 4);
    out << quint32(36 + frames * 2);
    out.writeRawData("WAVEfmt ", 8);
    out << quint32(16) << quint16(1) << quint16(1) << quint32(rate) << quint32(rate * 2) << quint16(2) << quint16(16);
    out.writeRawData("data", 4);
    out << quint32(frames * 2);
    for (quint32 i = 0; i < frames; ++i)
        out << qint16(16384 * std::sin(2 * std::numbers::pi * 440 * i / rate));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("The test could not write %s", qPrintable(path));
    return path;
}

inline void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("The test could not write %s", qPrintable(path));
}

} // namespace tonequill::test
