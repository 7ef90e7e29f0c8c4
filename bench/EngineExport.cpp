// How long does it take to export 10 s out of the middle of an hour: cut,
// resampled from 44.1 to 48 kHz, peak to -1 dB, 24 bits? The peer is sox with its
// very high quality rate; the bar is one time the peer. Ours is a library call,
// the peer's a program with its start.

#include "Measure.h"
#include "audio/export/AudioExporter.h"

#include <QCoreApplication>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

void compare(const char* what, const QString& source)
{
    ExportRequest request;
    request.source = source;
    request.start = 1'800;
    request.end = 1'810;
    const QString ours = bench::folder().filePath(u"ours.wav"_s);
    const QString theirs = bench::folder().filePath(u"theirs.wav"_s);
    const auto [export10, peer] = bench::bestOfBoth(
        15, [&] { return bench::costOf([&] { AudioExporter::exportRange(request, ours); }); },
        [&] {
            return bench::costOf({u"sox"_s, u"-V1"_s, source, u"-b"_s, u"24"_s, theirs, u"trim"_s, u"1800"_s, u"10"_s, u"rate"_s,
                                  u"-v"_s, u"48000"_s, u"gain"_s, u"-n"_s, u"-1"_s});
        });
    bench::printRatio(what, export10.wallSeconds, peer.wallSeconds, 1, "sox");
    std::printf("%-34s %9.4f s   sox %9.4f s   ratio %5.2f\n", "  its processor time", export10.cpuSeconds, peer.cpuSeconds,
                export10.cpuSeconds / peer.cpuSeconds);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QString minute = bench::makeMedia(
        u"minute44.wav"_s,
        {u"-f"_s, u"lavfi"_s, u"-i"_s,
         u"aevalsrc='0.4*sin(2*PI*400*t+90*sin(t))+0.2*(random(0)-0.5)|0.4*sin(2*PI*510*t+90*sin(t))+0.2*(random(1)-0.5)':s=44100:d=60"_s});
    const QString wav = bench::makeMedia(u"hour44.wav"_s, {u"-stream_loop"_s, u"59"_s, u"-i"_s, minute, u"-c"_s, u"copy"_s});
    const QString mp3 = bench::makeMedia(u"hour44.mp3"_s, {u"-i"_s, wav, u"-b:a"_s, u"128k"_s});
    compare("10 s out of 1 h of WAV", wav);
    compare("10 s out of 1 h of MP3", mp3);
    return bench::exitCode();
}
