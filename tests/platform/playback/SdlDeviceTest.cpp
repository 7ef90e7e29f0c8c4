#include "platform/playback/SdlDevice.h"

#include "support/Environment.h"
#include "support/Printing.h"
#include "support/Recorder.h"

#include <QLocalServer>

#include <gmock/gmock.h>

#include <csignal>
#include <thread>

using namespace tonequill;
using namespace tonequill::test;
using namespace Qt::StringLiterals;

TEST(SdlDevice, SaysThatThereIsNoDevice)
{
    const QString path = noise(u"silent.wav"_s, 0.1, 15);
    Recorder recorder;
    auto player = recorder.open(path);
    for (const char* driver : {"nonsense", "alsa"}) {
        qputenv("SDL_AUDIODRIVER", driver);
        const test::Environment cards("ALSA_CONFIG_PATH", "/dev/null"); // none
        QElapsedTimer time;
        time.start();
        EXPECT_FALSE(player->play()) << driver;
        EXPECT_LT(time.elapsed(), 5'000);
        EXPECT_FALSE(player->isPlaying());
        EXPECT_EQ(player->currentTime(), 0);
    }
    qputenv("SDL_AUDIODRIVER", "disk");
    EXPECT_TRUE(playToEnd(*player)) << "now there is one";
    player.reset();
    EXPECT_TRUE(recorder.heard() == framesOf(path));
}

TEST(SdlDevice, WaitsForNoSoundServerThatHangs)
{
    const QString path = noise(u"hangs.wav"_s, 0.1, 21);
    {
        QTemporaryDir folder;
        QLocalServer server; // takes every call and never answers
        ASSERT_TRUE(server.listen(folder.filePath(u"pulse"_s)));
        const test::Environment address("PULSE_SERVER", QFile::encodeName(u"unix:"_s + server.fullServerName()));
        playTo("pulseaudio");
        auto output = std::make_unique<SdlAudioOutput>();
        auto player = output->open(path);
        QElapsedTimer time;
        time.start();
        EXPECT_FALSE(player->play());
        EXPECT_GT(time.elapsed(), 900) << "SDL hangs in it";
        EXPECT_LT(time.restart(), 5'000);
        EXPECT_FALSE(player->play());
        EXPECT_LT(time.restart(), 500) << "nobody asks twice";
        player.reset();
        output.reset();
        EXPECT_LT(time.restart(), 5'000);
    }
    Recorder recorder;
    auto player = recorder.open(path);
    EXPECT_TRUE(waitFor([&] { return player->play(); }));
    EXPECT_TRUE(waitFor([&] { return !player->isPlaying(); }));
    player.reset();
    EXPECT_TRUE(recorder.heard() == framesOf(path));
}

TEST(SdlDevice, PausesWhenTheDeviceIsLost)
{
    const QString path = noise(u"lost.wav"_s, 20, 16);
    Recorder recorder;
    auto player = recorder.open(path);
    const QByteArray file = qgetenv("SDL_DISKAUDIOFILE");
    qputenv("SDL_DISKAUDIOFILE", "/dev/full"); // takes nothing, which SDL tells as the loss of the device
    EXPECT_TRUE(player->play());
    EXPECT_TRUE(waitFor([&] { return !player->isPlaying(); }));
    const double time = player->currentTime();
    EXPECT_LT(time, 19);
    qputenv("SDL_DISKAUDIOFILE", file);
    EXPECT_TRUE(player->play());
    EXPECT_TRUE(player->isPlaying());
    EXPECT_TRUE(waitFor([&] { return player->currentTime() > time + 0.2; }));
    player.reset();
    EXPECT_GT(recorder.heard().size(), 9'000U);
}

TEST(SdlDevice, LeavesTheSignalsAlone)
{
    const auto handlers = [] {
        std::vector<void (*)(int)> all;
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGCHLD}) {
            struct sigaction action = {};
            sigaction(signal, nullptr, &action);
            all.push_back(action.sa_handler);
        }
        return all;
    };
    playTo("dummy");
    SdlAudioOutput output;
    auto player = output.open(noise(u"signals.wav"_s, 0.1, 17));
    const auto before = handlers();
    EXPECT_TRUE(player->play());
    EXPECT_EQ(handlers(), before);
}

TEST(SdlDevice, LetsGoOfAPlayerAtOnce)
{
    const QString path = test::makeMedia(u"busy.m4a"_s, test::wandering(44'100, 2, 20) + QStringList{u"-c:a"_s, u"aac"_s});
    playTo("dummy");
    SdlAudioOutput output;
    int slow = 0;
    for (int i = 0; i < 30; ++i) {
        auto player = output.open(path);
        player->setCurrentTime(0.5 * i);
        EXPECT_TRUE(player->play());
        QThread::usleep(300 * static_cast<unsigned long>(i)); // while it is sought, read, heard
        QElapsedTimer time;
        time.start();
        player.reset();
        slow += time.elapsed() > 50;
    }
    EXPECT_LE(slow, 2) << "a machine with too much to do may let it wait now and then";
}

TEST(SdlDevice, IsOpenedOnOtherThreadsAndOutlivedByItsPlayers)
{
    const QString path = noise(u"threads.wav"_s, 0.3, 20);
    playTo("dummy");
    auto output = std::make_unique<SdlAudioOutput>();
    std::vector<std::unique_ptr<AudioPlayer>> players(8);
    std::vector<std::thread> threads;
    for (auto& player : players)
        threads.emplace_back([&] { player = output->open(path); });
    for (auto& thread : threads)
        thread.join();
    for (const auto& player : players)
        EXPECT_TRUE(player->play());
    output.reset();
    for (const auto& player : players)
        EXPECT_TRUE(waitFor([&] { return !player->isPlaying(); }));
}
