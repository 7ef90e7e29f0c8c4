// What does it cost to analyse one hour of sound? Each run is a process of its
// own, so that processor time and the largest memory are those of the analysis;
// FFmpeg's decoding of the same file to nowhere runs beside it as the measure.

#include "Measure.h"
#include "audio/analysis/AudioAnalyzer.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

constexpr int kRounds = 3;

void compare(const QString& path, double maxRatio, double maxCpu, double maxMegabytes)
{
    const bench::Cost ours = bench::best(kRounds, [&] {
        return bench::costOf(QStringList{QCoreApplication::applicationFilePath(), u"--analyze"_s, path});
    });
    const bench::Cost peer = bench::best(kRounds, [&] {
        return bench::costOf(
            QStringList{u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-i"_s, path, u"-f"_s, u"null"_s, u"-"_s});
    });
    std::printf("%-10s analysis %6.3f s CPU %6.1f MB   decoding to null %6.3f s CPU   ratio %.2f",
                qPrintable(QFileInfo(path).fileName()), ours.cpuSeconds, ours.peakMegabytes, peer.cpuSeconds,
                ours.cpuSeconds / peer.cpuSeconds);
    if (maxRatio > 0)
        std::printf(" (bar %.2f: %s)", maxRatio, bench::verdict(ours.cpuSeconds <= maxRatio * peer.cpuSeconds));
    if (maxCpu > 0)
        std::printf(" (bars %.2f s, %.0f MB: %s)", maxCpu, maxMegabytes,
                    bench::verdict(ours.cpuSeconds <= maxCpu && ours.peakMegabytes <= maxMegabytes));
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
    // The hour, made once: a minute of tones and noise, sixty times.
    const QString minute = bench::makeMedia(
        u"minute.wav"_s,
        {u"-f"_s, u"lavfi"_s, u"-i"_s,
         u"aevalsrc='0.4*sin(2*PI*400*t+90*sin(t))+0.2*(random(0)-0.5)|0.4*sin(2*PI*510*t+90*sin(t))+0.2*(random(1)-0.5)':s=48000:d=60"_s});
    const QString wav = bench::makeMedia(u"hour.wav"_s, {u"-stream_loop"_s, u"59"_s, u"-i"_s, minute, u"-c"_s, u"copy"_s});
    const QString mp3 = bench::makeMedia(u"hour.mp3"_s, {u"-i"_s, wav, u"-b:a"_s, u"128k"_s});
    const QString m4a = bench::makeMedia(u"hour.m4a"_s, {u"-i"_s, wav, u"-b:a"_s, u"128k"_s});
    compare(wav, 0, 0.35, 40);
    compare(mp3, 1.1, 0, 0);
    compare(m4a, 1.1, 0, 0);
    return bench::exitCode();
}
