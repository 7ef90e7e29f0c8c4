// How long a dropped file takes to its best part and to its name, as the window
// does it: from importURLs to the range that is shown and to what was heard. The
// peer is FFmpeg decoding the same file to nothing; the best part of a compressed
// hour is shown within 1.2 times of that.

#include "Bar.h"
#include "app/library/ImportFlows.h"
#include "app/model/AppModel.h"
#include "app/smart/NamingFlows.h"
#include "base/Background.h"
#include "discovery/catalogue/SoundIndex.h"
#include "platform/desktop/DesktopApps.h"
#include "platform/network/LocalLanguageModel.h"
#include "platform/playback/NoAudioOutput.h"
#include "understanding/listening/SoundClassifier.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace tonequill;

namespace {

void ffmpeg(const QStringList& arguments)
{
    if (QProcess::execute(u"ffmpeg"_s, QStringList{u"-v"_s, u"error"_s, u"-y"_s} + arguments) != 0)
        qFatal("ffmpeg failed");
}

constexpr double kShownBar = 1.2;

enum class Judged { yes, no };

void measure(const QString& label, int seconds, const QString& ending, const QStringList& codec, Judged judged)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"recording."_s + ending);
    // A burst every seven seconds over room noise.
    const QString sound = u"aevalsrc=exprs='0.002*(random(0)-0.5)+lt(mod(t,7),0.5)*exp(-mod(t,7)*6)*0.8*(random(1)-0.5)'"
                          ":s=48000:d=%1"_s.arg(seconds);
    ffmpeg(QStringList{u"-f"_s, u"lavfi"_s, u"-i"_s, sound} + codec + QStringList{file});
    QElapsedTimer clock;
    clock.start();
    ffmpeg({u"-i"_s, file, u"-f"_s, u"null"_s, u"-"_s});
    const double decoding = double(clock.nsecsElapsed()) / 1e6;

    SystemClock time;
    Defaults defaults(folder.filePath(u"tonequill.ini"_s));
    const SoundClassifier classifier;
    NoAudioOutput output;
    Workers workers;
    BackgroundEditorWork work(classifier, output, workers);
    DesktopApps apps;
    LocalLanguageModel languageModel(LocalLanguageModel::Settings::from(defaults));
    AppModel model({defaults, time, workers, work, apps, languageModel, SoundIndex::shared()},
                   std::make_unique<LibraryStore>(time, workers, folder.filePath(u"Library"_s)));
    double shown = 0;
    double heard = 0;
    QObject::connect(&model.editor(), &EditorModel::rangeChanged, &model, [&] {
        if (shown == 0 && !model.editor().marked().isEmpty())
            shown = double(clock.nsecsElapsed()) / 1e6;
    });
    QObject::connect(&model.editor(), &EditorModel::heardChanged, &model, [&] {
        if (heard == 0 && model.editor().heard())
            heard = double(clock.nsecsElapsed()) / 1e6;
    });
    QObject::connect(&model.editor(), &EditorModel::settled, &model, [] { QCoreApplication::quit(); });
    clock.restart();
    followTheEar(model);
    startFlow(importURLs(model, {file}));
    QCoreApplication::exec();
    std::printf("%-12s best part shown %7.0f ms, named %7.0f ms, all parts labelled %7.0f ms; ffmpeg to null %7.0f ms",
                qPrintable(label), shown, heard, double(clock.nsecsElapsed()) / 1e6, decoding);
    if (judged == Judged::yes)
        std::printf("   ratio %.2f (bar %.2f: %s)", shown / decoding, kShownBar,
                    bench::verdict(shown > 0 && shown <= kShownBar * decoding));
    std::printf("\n");
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir caches;
    qputenv("XDG_CACHE_HOME", caches.path().toLocal8Bit());
    const QStringList aac{u"-c:a"_s, u"aac"_s};
    measure(u"10 s, AAC"_s, 10, u"m4a"_s, aac, Judged::no);
    measure(u"3 min, AAC"_s, 180, u"m4a"_s, aac, Judged::no);
    measure(u"1 h, AAC"_s, 3600, u"m4a"_s, aac, Judged::yes);
    measure(u"1 h, MP3"_s, 3600, u"mp3"_s, {}, Judged::yes);
    measure(u"1 h, WAV"_s, 3600, u"wav"_s, {}, Judged::no);
    return bench::exitCode();
}
