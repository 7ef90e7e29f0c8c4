#pragma once

#include <QString>

#include <memory>
#include <vector>

namespace tonequill {

// One sound file that can be heard: as a port, because tests turn its time by
// hand. Times are seconds of the file. One thread at a time.
class AudioPlayer {
public:
    static constexpr int kEndless = -1;
    static constexpr double kSilenceDb = -160;

    virtual ~AudioPlayer() = default;

    // Plays on from currentTime(), or from the start if the sound had ended.
    // False if nothing can be heard: no device, or one that is lost; the next
    // play() tries again. Never blocks on the file.
    virtual bool play() = 0;
    virtual void pause() = 0;
    // Ends playing; the position stays, as after pause(), but what was read ahead is let go.
    virtual void stop() = 0;

    virtual bool isPlaying() const = 0;
    virtual double duration() const = 0;

    // What is heard now. While it plays this moves smoothly and never runs
    // backwards, except from the end to the start of a loop.
    virtual double currentTime() const = 0;
    // Jumps to the frame at `seconds`, which is held within the file.
    virtual void setCurrentTime(double seconds) = 0;

    // How often the sound is repeated after its first round; kEndless for ever.
    virtual void setNumberOfLoops(int count) = 0;
    virtual void setVolume(double volume) = 0; // 0…1

    // The average power of each channel of the last tenth of a second that was
    // heard, in dBFS; kSilenceDb while nothing plays.
    virtual std::vector<double> averagePower() const = 0;
};

// What players are heard on.
class AudioOutput {
public:
    virtual ~AudioOutput() = default;

    // A player that stands at the start of the file. Any thread; it reads the
    // file's head, which of some formats takes long enough to leave the window's
    // thread alone. Throws AudioFileError.
    virtual std::unique_ptr<AudioPlayer> open(const QString& path) = 0;
};

} // namespace tonequill
