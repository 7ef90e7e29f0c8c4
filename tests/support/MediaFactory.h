#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tonequill::test {

// A fresh path in a folder that goes away with the test program.
QString scratchPath(const QString& name);

// Runs a program to its end and gives its exit status; -1 if it does not come to that.
int run(const QString& program, const QStringList& arguments);

// Makes a file of that name with the ffmpeg program and gives its path; a second
// call with the same arguments gives the file that is there. `arguments` are
// everything but the output, separated by blanks where no quoting is needed.
QString makeMedia(const QString& name, const QStringList& arguments);

// Arguments of a lavfi input: `channels` tones that wander between 300 and 800
// Hz, with a little noise, so that no two stretches are alike. Deterministic.
QStringList wandering(int sampleRate, int channels, double seconds);

// Arguments of a lavfi input: a small moving picture.
QStringList picture(double seconds);

QByteArray bytesOfFile(const QString& path);

// Writes scratchPath(name) and gives its path.
QString makeFile(const QString& name, const QByteArray& bytes);

} // namespace tonequill::test
