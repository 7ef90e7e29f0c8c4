#pragma once

#include "Bar.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStringList>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <utility>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

// What the benchmarks measure with. Everything is the best of several rounds: a
// machine that is busy with something else only ever makes things slower.
namespace tonequill::bench {

struct Cost {
    double wallSeconds = 0;
    double cpuSeconds = 0;
    double peakMegabytes = 0; // of a program that was run; 0 for work of our own
};

inline Cost lower(const Cost& a, const Cost& b)
{
    return {std::min(a.wallSeconds, b.wallSeconds), std::min(a.cpuSeconds, b.cpuSeconds),
            std::min(a.peakMegabytes, b.peakMegabytes)};
}

inline double seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

inline Cost best(int rounds, const std::function<Cost()>& measure)
{
    Cost lowest = measure();
    for (int round = 1; round < rounds; ++round)
        lowest = lower(lowest, measure());
    return lowest;
}

// The same for two that are compared, taken in turns, so that a busy time of the
// machine meets both.
inline std::pair<Cost, Cost> bestOfBoth(int rounds, const std::function<Cost()>& one, const std::function<Cost()>& other)
{
    std::pair<Cost, Cost> lowest = {one(), other()};
    for (int round = 1; round < rounds; ++round) {
        lowest = {lower(lowest.first, one()), lower(lowest.second, other())};
    }
    return lowest;
}

inline Cost costOf(const std::function<void()>& work)
{
    rusage before = {};
    rusage after = {};
    const auto start = std::chrono::steady_clock::now();
    getrusage(RUSAGE_SELF, &before);
    work();
    getrusage(RUSAGE_SELF, &after);
    const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return {wall, seconds(after.ru_utime) + seconds(after.ru_stime) - seconds(before.ru_utime) - seconds(before.ru_stime), 0};
}

// Runs a program to its end. REQUIRES: it is found and succeeds.
inline Cost costOf(const QStringList& command)
{
    std::vector<QByteArray> words;
    for (const QString& word : command)
        words.push_back(word.toLocal8Bit());
    std::vector<char*> arguments;
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    int status = 0;
    rusage usage = {};
    if (child < 0 || wait4(child, &status, 0, &usage) < 0 || status != 0)
        qFatal("%s failed", words[0].constData());
    const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return {wall, seconds(usage.ru_utime) + seconds(usage.ru_stime), static_cast<double>(usage.ru_maxrss) / 1024};
}

// The folder of the test files, which stay for the next run.
inline QDir folder()
{
    const QDir all(QDir::temp().filePath(QStringLiteral("tonequill-bench")));
    all.mkpath(QStringLiteral("."));
    return all;
}

// Makes a file of folder() with the ffmpeg program, once.
inline QString makeMedia(const QString& name, const QStringList& arguments)
{
    const QString path = folder().filePath(name);
    if (QFileInfo::exists(path))
        return path;
    const QString unfinished = folder().filePath(QStringLiteral("unfinished-") + name);
    const QStringList always = {QStringLiteral("-nostdin"), QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y")};
    if (QProcess::execute(QStringLiteral("ffmpeg"), always + arguments + QStringList{unfinished}) != 0 ||
        !QFile::rename(unfinished, path))
        qFatal("could not make the test file");
    return path;
}

// One line: what, our figure, the peer's, their ratio and the bar. The ratio is
// judged as it is printed, to a hundredth; no measurement here is better.
inline void printRatio(const char* what, double ours, double peers, double bar, const char* peer)
{
    std::printf("%-34s %9.4f s   %s %9.4f s   ratio %5.2f (bar %.2f: %s)\n", what, ours, peer, peers, ours / peers, bar,
                verdict(std::round(100 * ours / peers) <= 100 * bar));
}

} // namespace tonequill::bench
