// How good is the resampler? Stepped tones go from 44.1 to 48 kHz through ours
// and through sox with its very high quality rate: the passband's ripple, where
// it ends, and the loudest thing that is not the tone (aliases, images, noise).
// The bar: not worse than sox.

#include "Measure.h"
#include "audio/export/AudioExporter.h"
#include "platform/media/AudioFile.h"
#include "platform/media/AudioFileWriter.h"

#include <QCoreApplication>

#include <cmath>
#include <numbers>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

constexpr double kFrom = 44'100;
constexpr double kTo = 48'000;
constexpr double kStepSeconds = 0.5;
constexpr double kAmplitude = 0.5;

struct Figures {
    double rippleDb = 0;      // largest minus smallest level of the tones up to 20 kHz
    double edgeHertz = 0;     // the last tone within 0.1 dB
    double residueDb = -1000; // the loudest rest of a tone up to 20 kHz, against the tone
    double imageDb = -1000;   // the same for the tones above it
};

std::vector<double> tones()
{
    std::vector<double> hertz;
    for (double each = 40; each < 20'000; each *= 1.12)
        hertz.push_back(each);
    for (double each = 20'000; each < 22'000; each += 100)
        hertz.push_back(each);
    return hertz;
}

AudioBuffer sweep()
{
    const auto step = static_cast<std::size_t>(kStepSeconds * kFrom);
    const auto all = tones();
    AudioBuffer buffer({kFrom, 1}, static_cast<qint64>(step * all.size()));
    buffer.setFrameLength(buffer.capacityFrames());
    for (std::size_t k = 0; k < all.size(); ++k)
        for (std::size_t n = 0; n < step; ++n) {
            // Raised cosines at both ends, so that a tone stays by itself.
            const double edge = std::min<double>(1, double(std::min(n, step - 1 - n)) / 4'000);
            const double gain = 0.5 - 0.5 * std::cos(std::numbers::pi * edge);
            buffer.channel(0)[k * step + n] =
                static_cast<float>(kAmplitude * gain * std::sin(2 * std::numbers::pi * all[k] * double(n) / kFrom));
        }
    return buffer;
}

// Level of the tone and of what is left without it, in the steady middle.
struct Levels {
    double toneDb = 0;
    double restDb = 0;
};

Levels levelsOf(std::span<const float> samples, double hertz)
{
    // The best fit of a sine and a cosine, solved for both.
    double cc = 0, ss = 0, cs = 0, xc = 0, xs = 0;
    const auto angle = [hertz](std::size_t n) { return 2 * std::numbers::pi * hertz * double(n) / kTo; };
    for (std::size_t n = 0; n < samples.size(); ++n) {
        const double c = std::cos(angle(n)), s = std::sin(angle(n)), x = double(samples[n]);
        cc += c * c;
        ss += s * s;
        cs += c * s;
        xc += x * c;
        xs += x * s;
    }
    const double determinant = cc * ss - cs * cs;
    const double a = (xc * ss - xs * cs) / determinant;
    const double b = (xs * cc - xc * cs) / determinant;
    double rest = 0;
    for (std::size_t n = 0; n < samples.size(); ++n)
        rest += std::pow(double(samples[n]) - a * std::cos(angle(n)) - b * std::sin(angle(n)), 2);
    return {20 * std::log10(std::hypot(a, b) / kAmplitude),
            10 * std::log10(rest / double(samples.size()) / (kAmplitude * kAmplitude / 2) + 1e-30)};
}

Figures judge(const AudioBuffer& converted)
{
    const auto step = static_cast<std::size_t>(kStepSeconds * kTo);
    const auto all = tones();
    Figures figures;
    double lowest = 1000, highest = -1000;
    for (std::size_t k = 0; k < all.size(); ++k) {
        const auto middle = converted.channel(0).subspan(k * step + step / 4, step / 2);
        const Levels levels = levelsOf(middle, all[k]);
        if (std::abs(levels.toneDb) < 0.1)
            figures.edgeHertz = all[k];
        double& rest = all[k] <= 20'000 ? figures.residueDb : figures.imageDb;
        rest = std::max(rest, levels.restDb);
        if (all[k] <= 20'000) {
            lowest = std::min(lowest, levels.toneDb);
            highest = std::max(highest, levels.toneDb);
        }
    }
    figures.rippleDb = highest - lowest;
    return figures;
}

void print(const char* name, const Figures& figures)
{
    std::printf("%-10s ripple to 20 kHz %.5f dB   flat to %.0f Hz   rest to 20 kHz %.1f dB   above %.1f dB\n", name,
                figures.rippleDb, figures.edgeHertz, figures.residueDb, figures.imageDb);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const AudioBuffer source = sweep();
    const QString path = bench::folder().filePath(u"sweep44.wav"_s);
    const QString converted = bench::folder().filePath(u"sweep48.wav"_s);
    AudioFileWriter writer(path, source.format(), AudioEncoding::wavFloat32);
    writer.write(source);
    writer.finish();
    bench::costOf({u"sox"_s, u"-V1"_s, u"-D"_s, path, u"-e"_s, u"floating-point"_s, u"-b"_s, u"32"_s, converted, u"rate"_s,
                   u"-v"_s, u"48000"_s});
    AudioFile file(converted);
    AudioBuffer peer(file.format(), file.length());
    file.read(peer);
    const Figures theirs = judge(peer);
    const Figures ours = judge(AudioExporter::convert(source, {kTo, 1}));
    print("ours", ours);
    print("sox -v", theirs);
    // Differences below what a tone's level can be told to (32-bit floats) are none.
    const bool isMet = ours.rippleDb <= theirs.rippleDb + 1e-5 && ours.edgeHertz >= theirs.edgeHertz &&
                       ours.residueDb <= theirs.residueDb + 0.5 && ours.imageDb <= theirs.imageDb + 0.5;
    std::printf("not worse: %s\n", bench::verdict(isMet));
    return bench::exitCode();
}
