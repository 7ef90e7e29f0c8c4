#include "support/MediaFactory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <stdexcept>
#include <thread>

namespace tonequill::test {

using namespace Qt::StringLiterals;

QString scratchPath(const QString& name)
{
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

int run(const QString& program, const QStringList& arguments)
{
    constexpr int kPatienceMs = 60'000;
    int status = -1;
    const auto work = [&] {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(program, arguments);
        if (process.waitForFinished(kPatienceMs) && process.exitStatus() == QProcess::NormalExit)
            status = process.exitCode();
    };
    // The thread sanitizer no longer sees the locks of a thread that has forked, so
    // that this is done by one that ends.
    std::thread(work).join();
    return status;
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
