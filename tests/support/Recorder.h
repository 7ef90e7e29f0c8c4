#pragma once

#include "platform/playback/SdlAudioOutput.h"
#include "support/MediaFactory.h"
#include "support/Signal.h"
#include "support/Sound.h"
#include "support/WavBytes.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <cstring>
#include <vector>

namespace tonequill::test {

struct Frame {
    float left = 0;
    float right = 0;
    bool operator==(const Frame&) const = default;
};
using Frames = std::vector<Frame>;

// Where outputs that are made from now on are heard. SDL asks the environment
// each time it is started, which an output does with its first sound.
inline void playTo(const char* driver, const QString& file = {}, const char* delayMs = "1")
{
    qputenv("SDL_AUDIODRIVER", driver);
    qputenv("SDL_DISKAUDIOFILE", QFile::encodeName(file));
    // Each block of 21 ms takes so long: about twenty times as fast as real time,
    // which takes no longer and still lets a decoder keep up.
    qputenv("SDL_DISKAUDIODELAY", delayMs);
}

// An output whose sound is written down.
class Recorder {
public:
    explicit Recorder(const char* delayMs = "1")
    {
        playTo("disk", path(), delayMs);
        m_output = std::make_unique<SdlAudioOutput>();
    }

    std::unique_ptr<AudioPlayer> open(const QString& file) { return m_output->open(file); }

    // Everything that was heard, silences included. REQUIRES: the players are gone.
    Frames all()
    {
        m_output.reset();
        const QByteArray bytes = bytesOfFile(path());
        Frames frames(static_cast<std::size_t>(bytes.size()) / sizeof(Frame));
        std::memcpy(frames.data(), bytes.constData(), frames.size() * sizeof(Frame));
        return frames;
    }

    // What was heard without the silences: a sound of noise has none of its own,
    // and how long the device waits for a sound is not what is tested.
    Frames heard()
    {
        Frames frames = all();
        std::erase(frames, Frame());
        return frames;
    }

private:
    QString path() const { return m_folder.filePath(QStringLiteral("heard.raw")); }

    QTemporaryDir m_folder;
    std::unique_ptr<SdlAudioOutput> m_output;
};

template <typename Condition>
bool waitFor(Condition&& condition, int milliseconds = 10'000)
{
    QElapsedTimer time;
    time.start();
    while (!condition()) {
        if (time.elapsed() > milliseconds)
            return false;
        QThread::usleep(500);
    }
    return true;
}

inline bool playToEnd(AudioPlayer& player)
{
    return player.play() && waitFor([&] { return !player.isPlaying(); });
}

inline QString wav(const QString& name, const Samples& interleaved, std::uint16_t channels, std::uint32_t rate = 48'000)
{
    return makeFile(name, WavBytes{.kind = 3, .channels = channels, .sampleRate = rate, .bits = 32}.with(
                              std::span<const float>(interleaved)));
}

inline QString noise(const QString& name, double seconds, std::uint32_t seed)
{
    return wav(name, noise(seconds, seed), 1);
}

inline Frames framesOf(const QString& path)
{
    const AudioBuffer whole = readAll(path);
    Frames frames(static_cast<std::size_t>(whole.frameLength()));
    for (std::size_t i = 0; i < frames.size(); ++i)
        frames[i] = {whole.channel(0)[i], whole.channel(whole.channelCount() - 1)[i]};
    return frames;
}

inline Frames from(const Frames& frames, std::size_t first)
{
    return {frames.begin() + static_cast<std::ptrdiff_t>(first), frames.end()};
}

inline Frames times(const Frames& frames, float gain)
{
    Frames result;
    for (const Frame& frame : frames)
        result.push_back({frame.left * gain, frame.right * gain});
    return result;
}

} // namespace tonequill::test
