// What does it cost to change speed and pitch of 60 s of stereo? The peer is the
// command line of the same engine, whose whole processor time is counted; the
// bar is one time the peer. The faster engine runs beside it, for the choice.

#include "Measure.h"
#include "audio/effects/TimePitch.h"
#include "platform/media/AudioFile.h"

#include <rubberband/RubberBandStretcher.h>

#include <QCoreApplication>

#include <array>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

// The faster engine, fed as the finer one is by TimePitch.
void runFaster(const AudioBuffer& in, double rate, double semitones)
{
    using RubberBand::RubberBandStretcher;
    constexpr std::size_t kBlock = 1'024;
    RubberBandStretcher stretcher(48'000, 2,
                                  RubberBandStretcher::OptionProcessOffline | RubberBandStretcher::OptionEngineFaster |
                                      RubberBandStretcher::OptionThreadingNever | RubberBandStretcher::OptionChannelsTogether,
                                  1 / rate, std::exp2(semitones / 12));
    const auto length = static_cast<std::size_t>(in.frameLength());
    stretcher.setExpectedInputDuration(length);
    stretcher.setMaxProcessSize(kBlock);
    std::array<std::array<float, kBlock>, 2> taken;
    std::array<float*, 2> into = {taken[0].data(), taken[1].data()};
    for (const bool isStudy : {true, false})
        for (std::size_t first = 0; first < length; first += kBlock) {
            const std::array<const float*, 2> channels = {in.channel(0).data() + first, in.channel(1).data() + first};
            const std::size_t count = std::min(kBlock, length - first);
            const bool isFinal = first + count == length;
            if (isStudy)
                stretcher.study(channels.data(), count, isFinal);
            else
                stretcher.process(channels.data(), count, isFinal);
            while (!isStudy && stretcher.available() > 0)
                stretcher.retrieve(into.data(), std::min<std::size_t>(kBlock, static_cast<std::size_t>(stretcher.available())));
        }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QString minute = bench::makeMedia(
        u"minute.wav"_s,
        {u"-f"_s, u"lavfi"_s, u"-i"_s,
         u"aevalsrc='0.4*sin(2*PI*400*t+90*sin(t))+0.2*(random(0)-0.5)|0.4*sin(2*PI*510*t+90*sin(t))+0.2*(random(1)-0.5)':s=48000:d=60"_s});
    // Both sides differ: what is the same on both would take half the time.
    AudioFile file(minute);
    AudioBuffer in(file.format(), file.length());
    file.read(in);
    const QString target = bench::folder().filePath(u"stretched.wav"_s);
    struct Change {
        const char* name;
        double rate;
        double semitones;
    };
    for (const Change& change :
         {Change{"speed 1.25, pitch +3", 1.25, 3}, Change{"speed 0.5", 0.5, 0}, Change{"pitch -4", 1, -4}}) {
        const auto frames = static_cast<qint64>(static_cast<double>(in.frameLength()) / change.rate) + 2'048;
        AudioBuffer out({48'000, 2}, frames);
        out.setFrameLength(frames);
        const auto run = [&] { return bench::costOf([&] { TimePitch::apply(in, change.rate, change.semitones, out); }); };
        const auto runFasterOne = [&] { return bench::costOf([&] { runFaster(in, change.rate, change.semitones); }); };
        const auto runPeer = [&](const QString& engine) {
            return bench::costOf({u"rubberband"_s, engine, u"-q"_s, u"--centre-focus"_s, u"-T"_s, QString::number(change.rate),
                                  u"-p"_s, QString::number(change.semitones), minute, target});
        };
        constexpr int kRounds = 4;
        const auto [ours, peer] = bench::bestOfBoth(kRounds, run, [&] { return runPeer(u"-3"_s); });
        const auto [faster, fasterPeer] = bench::bestOfBoth(kRounds, runFasterOne, [&] { return runPeer(u"-2"_s); });
        bench::printRatio(change.name, ours.cpuSeconds, peer.cpuSeconds, 1, "rubberband -3");
        std::printf("%-34s %9.4f s   rubberband -2 %9.4f s   the finer engine costs %.1f times as much\n", "  the faster engine",
                    faster.cpuSeconds, fasterPeer.cpuSeconds, ours.cpuSeconds / faster.cpuSeconds);
    }
    return bench::exitCode();
}
