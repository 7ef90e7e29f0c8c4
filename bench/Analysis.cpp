// What does it cost to analyse one hour of sound? Each run is a process of its
// own, so that processor time and the largest memory are those of the analysis;
// FFmpeg's decoding of the same file to nowhere runs beside it as the measure.

#include "audio/AudioAnalyzer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

struct Cost {
    double cpuSeconds = 0;
    double peakMegabytes = 0;
};

double seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

// Runs a program to its end. REQUIRES: it is found and succeeds.
Cost costOf(const QStringList& command)
{
    std::vector<QByteArray> words;
    for (const QString& word : command)
        words.push_back(word.toLocal8Bit());
    std::vector<char*> arguments;
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    int status = 0;
    rusage usage = {};
    if (child < 0 || wait4(child, &status, 0, &usage) < 0 || status != 0)
        qFatal("%s failed", words[0].constData());
    return {seconds(usage.ru_utime) + seconds(usage.ru_stime), static_cast<double>(usage.ru_maxrss) / 1024};
}

Cost cheapest(const QStringList& command)
{
    constexpr int kRounds = 3;
    Cost best = costOf(command);
    for (int round = 1; round < kRounds; ++round) {
        const Cost cost = costOf(command);
        best = {std::min(best.cpuSeconds, cost.cpuSeconds), std::min(best.peakMegabytes, cost.peakMegabytes)};
    }
    return best;
}

// The hour, made once: a minute of tones and noise, sixty times.
QString makeHour(const QDir& folder, const QString& name, const QStringList& arguments)
{
    const QString path = folder.filePath(name);
    if (QFileInfo::exists(path))
        return path;
    std::printf("making %s …\n", qPrintable(path));
    const QString unfinished = folder.filePath(u"unfinished-"_s + name);
    const QStringList all = QStringList{u"-nostdin"_s, u"-v"_s, u"error"_s, u"-y"_s} + arguments + QStringList{unfinished};
    if (QProcess::execute(u"ffmpeg"_s, all) != 0 || !QFile::rename(unfinished, path))
        qFatal("could not make the test file");
    return path;
}

void compare(const QString& path, double maxRatio, double maxCpu, double maxMegabytes)
{
    const Cost ours = cheapest({QCoreApplication::applicationFilePath(), u"--analyze"_s, path});
    const Cost peer = cheapest({u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-i"_s, path, u"-f"_s, u"null"_s, u"-"_s});
    std::printf("%-10s analysis %6.3f s CPU %6.1f MB   decoding to null %6.3f s CPU   ratio %.2f",
                qPrintable(QFileInfo(path).fileName()), ours.cpuSeconds, ours.peakMegabytes, peer.cpuSeconds,
                ours.cpuSeconds / peer.cpuSeconds);
    if (maxRatio > 0)
        std::printf(" (bar %.2f: %s)", maxRatio, ours.cpuSeconds <= maxRatio * peer.cpuSeconds ? "met" : "MISSED");
    if (maxCpu > 0)
        std::printf(" (bars %.2f s, %.0f MB: %s)", maxCpu, maxMegabytes,
                    ours.cpuSeconds <= maxCpu && ours.peakMegabytes <= maxMegabytes ? "met" : "MISSED");
    std::printf("\n");
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == u"--analyze"_s) {
        const AudioAnalysis analysis = AudioAnalyzer::analyze(arguments[2]);
        return analysis.rms.empty() ? 1 : 0;
    }
    const QDir folder(QDir::temp().filePath(u"tonequill-bench"_s));
    folder.mkpath(u"."_s);
    const QString minute = makeHour(
        folder, u"minute.wav"_s,
        {u"-f"_s, u"lavfi"_s, u"-i"_s,
         u"aevalsrc='0.4*sin(2*PI*400*t+90*sin(t))+0.2*(random(0)-0.5)|0.4*sin(2*PI*510*t+90*sin(t))+0.2*(random(1)-0.5)':s=48000:d=60"_s});
    const QString wav = makeHour(folder, u"hour.wav"_s, {u"-stream_loop"_s, u"59"_s, u"-i"_s, minute, u"-c"_s, u"copy"_s});
    const QString mp3 = makeHour(folder, u"hour.mp3"_s, {u"-i"_s, wav, u"-b:a"_s, u"128k"_s});
    const QString m4a = makeHour(folder, u"hour.m4a"_s, {u"-i"_s, wav, u"-b:a"_s, u"128k"_s});
    compare(wav, 0, 0.35, 40);
    compare(mp3, 1.1, 0, 0);
    compare(m4a, 1.1, 0, 0);
}
