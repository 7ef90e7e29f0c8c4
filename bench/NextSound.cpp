// How soon the sound that somebody chooses is ready and can be heard while sounds
// that nobody looks at any more are being analysed and listened to. The peer is the
// same sound alone; it may take half a second more.

#include "Bar.h"
#include "base/Workers.h"
#include "editor/EditorModel.h"
#include "platform/playback/SdlAudioOutput.h"
#include "understanding/listening/SoundClassifier.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace tonequill;

namespace {

constexpr double kMoreThanAloneMs = 500;

QString makeWav(const QTemporaryDir& folder, const QString& name, double seconds)
{
    const QString file = folder.filePath(name + u".wav"_s);
    const QString sound = u"aevalsrc=exprs='0.002*(random(0)-0.5)+lt(mod(t,7),0.5)*exp(-mod(t,7)*6)*0.8*(random(1)-0.5)'"
                          ":s=48000:d=%1"_s.arg(seconds);
    if (QProcess::execute(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-y"_s, u"-f"_s, u"lavfi"_s, u"-i"_s, sound, file}) != 0)
        qFatal("ffmpeg failed");
    return file;
}

SoundItem itemOf(double seconds)
{
    SoundItem item;
    item.id = QUuid::createUuid();
    item.duration = seconds;
    return item;
}

void pass(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

struct Times {
    double ready = 0; // milliseconds from the choice to the analysis
    double heard = 0; // … and to the first sound, for somebody who presses Play until it plays
};

// Chooses the long sounds one after the other, and then the one that is measured.
Times choose(const QStringList& left, double leftSeconds, int pauseMs, const QString& chosen, double seconds)
{
    const SoundClassifier classifier;
    SdlAudioOutput output;
    Workers workers;
    BackgroundEditorWork work(classifier, output, workers);
    SystemClock clock;
    EditorModel editor(work, clock);
    for (const QString& path : left) {
        editor.load(itemOf(leftSeconds), path);
        pass(pauseMs);
    }
    Times times;
    QElapsedTimer since;
    since.start();
    editor.load(itemOf(seconds), chosen);
    while (times.ready == 0 || times.heard == 0) {
        if (times.ready == 0 && editor.analysisState() == EditorModel::AnalysisState::ready)
            times.ready = double(since.nsecsElapsed()) / 1e6;
        if (times.heard == 0) {
            editor.play();
            if (editor.isPlaying())
                times.heard = double(since.nsecsElapsed()) / 1e6;
        }
        pass(1);
    }
    return times;
}

void measure(const char* label, const QStringList& left, double leftSeconds, int pauseMs, const QString& chosen, double seconds)
{
    const Times alone = choose({}, 0, 0, chosen, seconds);
    const Times among = choose(left, leftSeconds, pauseMs, chosen, seconds);
    const double more = std::max(among.ready - alone.ready, among.heard - alone.heard);
    std::printf("%-34s ready %5.0f ms, heard %5.0f ms; alone %5.0f and %5.0f ms; %.0f ms more (bar %.0f: %s)\n", label,
                among.ready, among.heard, alone.ready, alone.heard, more, kMoreThanAloneMs,
                bench::verdict(more <= kMoreThanAloneMs));
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (qEnvironmentVariableIsEmpty("SDL_AUDIODRIVER"))
        qputenv("SDL_AUDIODRIVER", "dummy");
    const QTemporaryDir folder;
    const QString twenty = makeWav(folder, u"twenty"_s, 1200);
    const QString three = makeWav(folder, u"three"_s, 180);
    const QString thirty = makeWav(folder, u"thirty"_s, 30);
    const QString brief = makeWav(folder, u"brief"_s, 2.5);
    measure("four of 20 min 4 s apart, 30 s", QStringList(4, twenty), 1200, 4000, thirty, 30);
    measure("three of 20 min 1.5 s apart, 2.5 s", QStringList(3, twenty), 1200, 1500, brief, 2.5);
    measure("eight of 3 min 0.4 s apart, 2.5 s", QStringList(8, three), 180, 400, brief, 2.5);
    return bench::exitCode();
}
