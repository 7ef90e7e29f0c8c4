#include "platform/playback/SdlAudioOutput.h"

#include "platform/playback/SdlDevice.h"

#include <QThreadPool>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tonequill {

class SdlAudioOutput::Parts {
public:
    // A decoder waits most of its time, so that each player may have one.
    Parts() { decoders.setMaxThreadCount(std::numeric_limits<int>::max()); }

    QThreadPool decoders;
    SdlDevice device;
};

namespace {

class SdlAudioPlayer final : public AudioPlayer {
public:
    SdlAudioPlayer(std::shared_ptr<SdlAudioOutput::Parts> parts, PlaybackStream stream)
        : m_parts(std::move(parts)),
          m_sampleRate(stream.sampleRate()),
          m_duration(static_cast<double>(stream.length()) / stream.sampleRate()),
          m_meters(static_cast<std::size_t>(std::min(stream.channelCount(), PlaybackStream::kFormat.channelCount))),
          m_voice(std::make_shared<PlaybackVoice>(std::move(stream)))
    {}

    ~SdlAudioPlayer() override
    {
        m_voice->pause(); // a decoder that reads just now ends with its block
        m_parts->device.remove(m_voice);
    }

    bool play() override
    {
        if (!m_parts->device.start(m_voice)) {
            m_voice->pause();
            return false;
        }
        readAhead();
        return true;
    }

    void pause() override { m_voice->pause(); }
    void stop() override { m_voice->stop(); }
    bool isPlaying() const override { return m_voice->isPlaying(heard()); }
    double duration() const override { return m_duration; }
    double currentTime() const override { return m_voice->position(heard()) / m_sampleRate; }

    void setCurrentTime(double seconds) override
    {
        const double held = seconds > 0 ? std::min(seconds, m_duration) : 0; // what is no number is the start
        m_voice->seek(std::llround(held * m_sampleRate), heard());
        readAhead();
    }

    void setNumberOfLoops(int count) override
    {
        m_voice->setLoops(count);
        readAhead();
    }

    void setVolume(double volume) override { m_voice->setVolume(volume > 0 ? static_cast<float>(std::min(volume, 1.0)) : 0); }

    std::vector<double> averagePower() const override
    {
        std::vector<double> powers(m_meters, kSilenceDb);
        const double now = heard();
        if (!m_voice->isPlaying(now))
            return powers;
        const auto squares = m_voice->meanSquares(now);
        for (std::size_t i = 0; i < m_meters; ++i)
            powers[i] = squares[i] > 0 ? std::max(10 * std::log10(squares[i]), kSilenceDb) : kSilenceDb;
        return powers;
    }

private:
    double heard() const { return m_parts->device.heardFrame(); }

    void readAhead()
    {
        if (m_voice->claimDecoding())
            m_parts->decoders.start([voice = m_voice] { voice->decode(); });
    }

    std::shared_ptr<SdlAudioOutput::Parts> m_parts;
    double m_sampleRate;
    double m_duration;
    std::size_t m_meters; // channels that are metered
    std::shared_ptr<PlaybackVoice> m_voice;
};

} // namespace

SdlAudioOutput::SdlAudioOutput() : m_parts(std::make_shared<Parts>())
{}

SdlAudioOutput::~SdlAudioOutput() = default;

std::unique_ptr<AudioPlayer> SdlAudioOutput::open(const QString& path)
{
    return std::make_unique<SdlAudioPlayer>(m_parts, PlaybackStream(path));
}

} // namespace tonequill
