#pragma once

#include "platform/media/AudioFile.h"
#include "platform/media/StreamConverter.h"

#include <optional>
#include <span>

namespace tonequill {

// A sound file as an endless or ending stream of what a loudspeaker takes:
// 48 kHz, two channels. Samples of a file of that rate come as they are; one
// channel goes to both sides, more than two are mixed down.
//
// Positions are frames of the file. From any of them the stream goes on as if it
// had been played from the start, also where the rate is converted, and the end
// joins the start without a seam. One thread at a time.
class PlaybackStream {
public:
    static constexpr AudioFormat kFormat = {48'000, 2};

    // Frames of the stream, at most a tenth of a second; valid until the next call.
    struct Block {
        std::span<const float> left;
        std::span<const float> right;
        bool isEmpty() const { return left.empty(); }
        Block from(std::size_t frame) const { return {left.subspan(frame), right.subspan(frame)}; }
    };

    // Throws AudioFileError.
    explicit PlaybackStream(const QString& path);

    double sampleRate() const { return m_file.sampleRate(); }
    int channelCount() const { return m_file.channelCount(); }
    // Frames of the file; less than it told if it turned out to end earlier.
    qint64 length() const { return m_length; }
    // Frames of the stream for one frame of the file.
    double ratio() const { return kFormat.sampleRate / m_file.sampleRate(); }

    // Starts a new stream at that frame. Throws AudioFileError. REQUIRES: 0 <= frame <= length().
    void seek(qint64 frame);
    // How often the file has begun again since then.
    int repeats() const { return m_repeats; }

    // The next frames. At the end of the file it goes on with its start, or ends:
    // the block is then empty. A stream that has ended goes on at the start
    // when it is asked to repeat after all. Throws AudioFileError.
    enum class AtEnd { stop, repeat };
    Block read(AtEnd atEnd);

private:
    Block skipped(const AudioBuffer& converted);

    AudioFile m_file;
    qint64 m_length;
    AudioBuffer m_block;
    std::optional<StreamConverter> m_converter;
    qint64 m_leadIn = 0; // silence before the file's start that is yet to be converted
    qint64 m_skip = 0;   // frames of the stream that only lead the converter in
    int m_repeats = 0;
    bool m_hasEnded = false;
};

} // namespace tonequill
