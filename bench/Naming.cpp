// How long the main thread is busy at most while two hundred sounds are named, and
// how often the index is written meanwhile. The peer is one index write that is
// waited for, as each name once cost.

#include "Bar.h"
#include "app/library/ImportFlows.h"
#include "app/model/AppModel.h"
#include "app/smart/SmartActions.h"
#include "discovery/catalogue/SoundIndex.h"
#include "platform/desktop/DesktopApps.h"
#include "platform/network/LocalLanguageModel.h"
#include "platform/playback/NoAudioOutput.h"
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

constexpr int kSounds = 200;
constexpr double kBusyBarMs = 50; // three frames of a display; more is seen as a hitch

// The longest time that an event had to wait for its turn: the longest pause of a timer.
class Busy : public QObject {
public:
    Busy()
    {
        m_since.start();
        connect(&m_timer, &QTimer::timeout, this, [this] { m_longestMs = std::max(m_longestMs, lapMs()); });
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.start(1);
    }
    double longestMs() { return std::max(m_longestMs, lapMs()); }

private:
    double lapMs()
    {
        const double lap = double(m_since.nsecsElapsed()) / 1e6;
        m_since.start();
        return lap;
    }

    QTimer m_timer;
    QElapsedTimer m_since;
    double m_longestMs = 0;
};

template <typename T>
void wait(QCoro::Task<T> task)
{
    QEventLoop loop;
    task.then([&loop](auto&&...) { loop.quit(); });
    loop.exec();
}

QStringList cameraFiles(const QTemporaryDir& folder)
{
    QStringList files;
    for (int i = 0; i < kSounds; ++i) {
        files << folder.filePath(u"IMG_%1.wav"_s.arg(1000 + i));
        const QString sound = u"anoisesrc=d=2:a=0.3:r=48000:seed=%1"_s.arg(i);
        if (QProcess::execute(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-f"_s, u"lavfi"_s, u"-i"_s, sound, files.last()}) != 0)
            qFatal("ffmpeg failed");
    }
    return files;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    Defaults defaults(folder.filePath(u"settings.ini"_s));
    SystemClock clock;
    Workers workers;
    const SoundClassifier classifier;
    NoAudioOutput output;
    BackgroundEditorWork work(classifier, output, workers);
    DesktopApps apps;
    LocalLanguageModel noModel(LocalLanguageModel::Settings{});
    AppModel model({defaults, clock, workers, work, apps, noModel, SoundIndex::shared()},
                   std::make_unique<LibraryStore>(clock, workers, folder.filePath(u"Library"_s)));
    wait(importURLs(model, cameraFiles(folder)));
    QElapsedTimer since;
    model.library().isSaved();
    model.library().update(model.library().items().first(), [](SoundItem& item) { item.tags << u"once"_s; });
    since.start();
    model.library().isSaved();
    const double oneWriteMs = double(since.nsecsElapsed()) / 1e6;

    const int before = model.library().saveCount();
    since.restart();
    Busy busy;
    wait(smartRename(model, model.library().items()));
    const double busyMs = busy.longestMs();
    std::printf("%d sounds named in %.1f s: %d index writes (one alone, waited for: %.1f ms)\n", kSounds,
                double(since.elapsed()) / 1e3, model.library().saveCount() - before, oneWriteMs);
    std::printf("the main thread was busy for %.1f ms at most (bar %.0f: %s)\n", busyMs, kBusyBarMs,
                bench::verdict(busyMs <= kBusyBarMs));
    model.close();
    return bench::exitCode();
}
