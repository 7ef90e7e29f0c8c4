// effect_figures FOLDER: measures the effects from their impulse responses, prints
// the figures of docs/effects.md and writes into FOLDER what its pictures are
// drawn from.

#include "audio/effects/FeedbackDelay.h"
#include "audio/effects/HallReverb.h"
#include "audio/effects/TimePitch.h"
#include "platform/media/AudioFileWriter.h"
#include "support/Acoustics.h"
#include "support/Clicks.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>

using namespace tonequill;
using namespace Qt::StringLiterals;
using test::Response;
using test::Samples;
using test::stretchOf;

namespace {

constexpr std::array kOctaves = {63.0, 125.0, 250.0, 500.0, 1'000.0, 2'000.0, 4'000.0, 8'000.0, 16'000.0};

void writeWav(const QString& path, const Response& response, std::size_t frames, float gain)
{
    std::vector<Samples> channels = {response.left, response.right};
    for (Samples& channel : channels) {
        channel.resize(frames);
        for (float& sample : channel)
            sample *= gain;
    }
    const AudioBuffer buffer = test::bufferOf(channels);
    AudioFileWriter writer(path, buffer.format(), AudioEncoding::wavFloat32);
    writer.write(buffer);
    writer.finish();
}

// What is left of the energy at each hundredth of a second, in dB.
std::vector<double> decayCurve(const Samples& response)
{
    std::vector<double> levels;
    const double all = test::energyOf(response);
    for (double seconds = 0; seconds < 3; seconds += 0.01)
        levels.push_back(
            10 * std::log10(test::energyOf(std::span(response).subspan(static_cast<std::size_t>(seconds * 48'000))) / all));
    return levels;
}

void writeCurves(const QString& path, const Response& hall)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("could not write %s", qPrintable(path));
    for (const double hertz : kOctaves) {
        QByteArray line = QByteArray::number(hertz);
        for (const double level : decayCurve(test::bandOf(hall.left, hertz)))
            line += ' ' + QByteArray::number(level, 'f', 2);
        file.write(line + '\n');
    }
}

void measureHall(const QDir& folder)
{
    const auto respond = [](float left, float right) {
        return test::responseOf([](auto one, auto other) { HallReverb(1).process(one, other); }, left, right);
    };
    const Response hall = respond(1, 1);
    Samples impulse(hall.left.size());
    impulse[0] = 1;
    std::printf("hall: band, RT60 left, right, level against the dry sound left, right, correlation of the sides\n");
    for (const double hertz : kOctaves) {
        const Samples left = test::bandOf(hall.left, hertz);
        const Samples right = test::bandOf(hall.right, hertz);
        const double dry = test::energyOf(test::bandOf(impulse, hertz));
        std::printf("%6.0f Hz  %.2f s  %.2f s  %+.1f dB  %+.1f dB  %+.2f\n", hertz, test::decaySeconds(left),
                    test::decaySeconds(right), 10 * std::log10(test::energyOf(left) / dry),
                    10 * std::log10(test::energyOf(right) / dry), test::correlation(left, right));
    }
    std::printf("echo density:");
    for (const double seconds : {0.02, 0.04, 0.06, 0.08, 0.1, 0.15, 0.2, 0.5, 1.0})
        std::printf("  %.0f ms %.2f", seconds * 1'000, test::echoDensity(stretchOf(hall.left, seconds, 0.02)));
    const Response fromLeft = respond(1, 0);
    std::printf("\ncorrelation of the sides: sound on both, first 100 ms %+.3f, then %+.3f; on the left only %+.3f, %+.3f\n",
                test::correlation(stretchOf(hall.left, 0, 0.1), stretchOf(hall.right, 0, 0.1)),
                test::correlation(stretchOf(hall.left, 0.1, 2), stretchOf(hall.right, 0.1, 2)),
                test::correlation(stretchOf(fromLeft.left, 0, 0.1), stretchOf(fromLeft.right, 0, 0.1)),
                test::correlation(stretchOf(fromLeft.left, 0.1, 2), stretchOf(fromLeft.right, 0.1, 2)));
    const auto bands = test::ringing(hall);
    std::printf("highest of %zu bands over its neighbours, on average over the decay: %+.1f dB\n", bands.size(),
                *std::max_element(bands.begin(), bands.end()));
    writeWav(folder.filePath(u"hall.wav"_s), hall, 48'000 * 3, 8);
    writeCurves(folder.filePath(u"decay.txt"_s), hall);
}

void measureEcho(const QDir& folder)
{
    const Response echo = test::responseOf(
        [](auto left, auto right) {
            for (const auto& side : {left, right})
                FeedbackDelay({.delaySeconds = 0.24, .feedback = 0.38, .cutoffHz = 7'000, .wet = 1}).process(side);
        },
        1, 1);
    std::printf("echo: number, place of its peak, gain at 0 Hz, level at 7 kHz against 0 Hz\n");
    for (std::size_t k = 1; k <= 6; ++k) {
        const auto tap = std::span(echo.left).subspan(k * 11'520, 480);
        double sum = 0;
        for (const float sample : tap)
            sum += static_cast<double>(sample);
        const auto peak = std::max_element(tap.begin(), tap.end()) - tap.begin();
        std::printf("%zu  %.3f ms  %.4f  %.2f dB\n", k, (double(k) * 11'520 + double(peak)) / 48, sum,
                    test::decibels(test::amplitudeAt(tap, 7'000) / sum / 2 * double(tap.size())));
    }
    writeWav(folder.filePath(u"echo.wav"_s), echo, 48'000 * 2, 1);
}

void measureTimePitch()
{
    std::printf("time-pitch: error of a 440 Hz tone in cents, at speed 0.5, 1 and 2\n");
    for (const double semitones : {-12.0, -7.0, -4.0, 0.0, 4.0, 7.0, 12.0}) {
        std::printf("%+4.0f semitones", semitones);
        for (const double rate : {0.5, 1.0, 2.0}) {
            AudioBuffer out({48'000, 2}, static_cast<qint64>(96'000 / rate) + 4'800);
            out.setFrameLength(out.capacityFrames());
            TimePitch::apply(test::stereo(test::sine(440, 2)), rate, semitones, out);
            const auto middle =
                out.channel(0).subspan(static_cast<std::size_t>(24'000 / rate), static_cast<std::size_t>(48'000 / rate));
            std::printf("  %+.3f", 1'200 * std::log2(test::frequencyOf(middle) / 440 / std::exp2(semitones / 12)));
        }
        std::printf("\n");
    }
}

// The largest error of a click's place, in milliseconds.
double clickError(double rate, double semitones)
{
    const test::Clicks clicks(static_cast<std::size_t>(14'400 * std::max(1.0, rate)));
    AudioBuffer out({48'000, 2}, static_cast<qint64>(double(clicks.samples.size()) / rate) + 4'800);
    out.setFrameLength(out.capacityFrames());
    TimePitch::apply(test::stereo(clicks.samples), rate, semitones, out);
    double worst = 0;
    for (const std::size_t place : clicks.places) {
        const double expected = double(place) / rate;
        worst = std::max(worst, std::abs(test::clickNear(out.channel(0), expected) - expected) / 48);
    }
    return worst;
}

void measureClicks()
{
    std::printf("time-pitch: largest error of a click's place\nspeed");
    for (const double rate : {0.25, 0.35, 0.5, 0.75, 1.5, 2.0, 4.0})
        std::printf("  %.2f: %.1f ms", rate, clickError(rate, 0));
    std::printf("\npitch");
    for (const double semitones : {-12.0, -9.0, -4.0, 4.0, 8.0, 12.0})
        std::printf("  %+.0f: %.1f ms", semitones, clickError(1, semitones));
    std::printf("\n");
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: effect_figures FOLDER\n");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    measureHall(folder);
    measureEcho(folder);
    measureTimePitch();
    measureClicks();
}
