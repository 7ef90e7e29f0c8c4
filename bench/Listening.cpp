// What does it cost to listen? Bars: 5 ms of one core for a window of one second,
// 60 ms for the load of the network. --classify does one thing in a process of its
// own, whose largest memory is then that of listening; --nothing is the measure
// for it.

#include "Measure.h"
#include "platform/media/AudioFile.h"
#include "understanding/listening/PatchStream.h"
#include "understanding/listening/SoundClassifier.h"

#include <QCoreApplication>
#include <QFile>

#include <cmath>
#include <limits>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

constexpr double kLoadBar = 0.060;   // seconds
constexpr double kWindowBar = 0.005; // seconds of one core
constexpr double kToTheEnd = std::numeric_limits<double>::infinity();

QString minute()
{
    return bench::makeMedia(u"minute-to-hear.wav"_s,
                            {u"-f"_s, u"lavfi"_s, u"-i"_s,
                             u"aevalsrc='0.4*sin(2*PI*400*t+90*sin(t))+0.2*(random(0)-0.5)|0.4*sin(2*PI*510*t)':s=48000:d=60"_s});
}

QString hour()
{
    return bench::makeMedia(u"hour-to-hear.wav"_s, {u"-stream_loop"_s, u"59"_s, u"-i"_s, minute(), u"-c"_s, u"copy"_s});
}

// One second of noise at 16 kHz, as the front end gets it.
std::vector<float> second()
{
    std::vector<float> samples(MelFrontEnd::kSampleRate);
    std::uint32_t dice = 1;
    for (float& sample : samples) {
        dice = dice * 1'664'525 + 1'013'904'223;
        sample = static_cast<float>(dice >> 8) / (1 << 24) - 0.5F;
    }
    return samples;
}

bench::Cost oneWindow()
{
    constexpr int kWindows = 20;
    const auto model = SoundEventModel::builtIn();
    const std::vector<float> samples = second();
    std::size_t heard = 0;
    bench::Cost cost = bench::best(10, [&] {
        return bench::costOf([&] {
            for (int window = 0; window < kWindows; ++window) {
                PatchStream stream([&](std::span<const float> patch) { heard += model->confidences(patch).size(); });
                stream.add(samples);
                stream.finish();
            }
        });
    });
    if (heard == 0)
        qFatal("nothing was heard");
    cost.cpuSeconds /= kWindows;
    return cost;
}

bench::Cost load()
{
    return bench::best(10, [] { return bench::costOf([] { SoundEventModel::builtIn(); }); });
}

bench::Cost oneMinute()
{
    const SoundClassifier classifier;
    const QString file = minute();
    return bench::best(3, [&] { return bench::costOf([&] { classifier.classify(file, 0, kToTheEnd, 5); }); });
}

void print(const char* what, double seconds, double bar)
{
    std::printf("%-40s %7.2f ms (bar %.0f ms: %s)\n", what, seconds * 1e3, bar * 1e3, bench::verdict(seconds <= bar));
}

// Of this program alone: ru_maxrss would count what the parent had when it forked.
double peakMegabytes()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        qFatal("no /proc");
    const QByteArray text = status.readAll();
    return text.sliced(text.indexOf("VmHWM:") + 6).trimmed().split(' ').first().toDouble() / 1024;
}

double megabytesOf(const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    if (!process.waitForFinished(600'000) || process.exitCode() != 0)
        qFatal("the child failed");
    return process.readAllStandardOutput().toDouble();
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--classify" || arguments.value(1) == u"--nothing") {
        if (arguments.value(1) == u"--classify")
            SoundClassifier().classify(arguments.value(2), 0, kToTheEnd, 5);
        else
            AudioFile(arguments.value(2)).length();
        std::printf("%.1f\n", peakMegabytes());
        return 0;
    }
    // The first load also brings OpenCV's libraries in; the others don't.
    print("the first load of the network", bench::costOf([] { SoundEventModel::builtIn(); }).wallSeconds, kLoadBar);
    print("a load of the network", load().wallSeconds, kLoadBar);
    print("a window of one second, processor time", oneWindow().cpuSeconds, kWindowBar);
    const bench::Cost whole = oneMinute();
    std::printf("%-40s %7.2f ms, processor time %.2f ms\n", "a minute in a file", whole.wallSeconds * 1e3,
                whole.cpuSeconds * 1e3);
    std::printf("largest memory: a minute %.1f MB, an hour %.1f MB, without listening %.1f MB\n",
                megabytesOf({u"--classify"_s, minute()}), megabytesOf({u"--classify"_s, hour()}),
                megabytesOf({u"--nothing"_s, minute()}));
    return bench::exitCode();
}
