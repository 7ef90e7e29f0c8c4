#include "support/MediaFactory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cerrno>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tonequill::test {

using namespace Qt::StringLiterals;

QString scratchPath(const QString& name)
{
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

int run(const QString& program, const QStringList& arguments)
{
    QByteArrayList words{QFile::encodeName(program)};
    for (const QString& argument : arguments)
        words << QFile::encodeName(argument);
    std::vector<char*> line;
    for (QByteArray& word : words)
        line.push_back(word.data());
    line.push_back(nullptr);
    // Not QProcess: after its fork the thread sanitizer no longer sees this thread's locks.
    pid_t child = 0;
    int status = 0;
    if (posix_spawnp(&child, line.front(), nullptr, nullptr, line.data(), environ) != 0)
        return -1;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

QString makeMedia(const QString& name, const QStringList& arguments)
{
    // Two tests may ask for different files of one name.
    const QString folder = scratchPath(QString::number(qHash(arguments), 16));
    const QString path = folder + u'/' + name;
    QDir().mkpath(folder);
    const QStringList all = QStringList{u"-nostdin"_s, u"-v"_s, u"error"_s, u"-y"_s} + arguments + QStringList{path};
    if (!QFileInfo::exists(path) && run(u"ffmpeg"_s, all) != 0)
        throw std::runtime_error("ffmpeg could not make " + name.toStdString());
    return path;
}

QStringList wandering(int sampleRate, int channels, double seconds)
{
    QStringList parts;
    for (int channel = 0; channel < channels; ++channel)
        parts << u"0.4*sin(2*PI*%1*t+50*sin(1.7*t)+90*sin(0.37*t))+0.05*(random(%2)-0.5)"_s.arg(400 + 110 * channel).arg(channel);
    return {u"-f"_s, u"lavfi"_s, u"-i"_s,
            u"aevalsrc='%1':s=%2:d=%3"_s.arg(parts.join(u'|')).arg(sampleRate).arg(seconds, 0, 'f', 6)};
}

QStringList picture(double seconds)
{
    return {u"-f"_s, u"lavfi"_s, u"-i"_s, u"testsrc=size=160x90:rate=25:duration=%1"_s.arg(seconds, 0, 'f', 3)};
}

QByteArray bytesOfFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no file " + path.toStdString());
    return file.readAll();
}

QString makeFile(const QString& name, const QByteArray& bytes)
{
    const QString path = scratchPath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("could not write " + path.toStdString());
    return path;
}

} // namespace tonequill::test
