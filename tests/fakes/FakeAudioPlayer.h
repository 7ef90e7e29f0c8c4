#pragma once

#include "platform/playback/AudioPlayer.h"

namespace tonequill::test {

// A player whose time a test moves.
class FakeAudioPlayer final : public AudioPlayer {
public:
    explicit FakeAudioPlayer(double seconds) : length(seconds) {}

    double length;
    double time = 0;
    bool hasDevice = true;
    bool playing = false;
    int loops = 0;
    int plays = 0;
    double volume = 1;
    std::vector<double> power{kSilenceDb, kSilenceDb};

    bool play() override
    {
        ++plays;
        return playing = hasDevice;
    }
    void pause() override { playing = false; }
    void stop() override { playing = false; }
    bool isPlaying() const override { return playing; }
    double duration() const override { return length; }
    double currentTime() const override { return time; }
    void setCurrentTime(double seconds) override { time = seconds; }
    void setNumberOfLoops(int count) override { loops = count; }
    void setVolume(double value) override { volume = value; }
    std::vector<double> averagePower() const override { return power; }
};

} // namespace tonequill::test
