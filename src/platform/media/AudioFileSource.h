#pragma once

#include "platform/media/AudioFile.h"

#include <span>

namespace tonequill {

// How one kind of file is read. AudioFile checks what it asks for: no read
// crosses the end, and no seek is negative.
class AudioFile::Source {
public:
    virtual ~Source() = default;

    const AudioFormat& format() const { return m_format; }
    qint64 length() const { return m_length; }

    // The next read starts at `frame`. Throws AudioFileError (seek).
    // REQUIRES: 0 <= frame <= length().
    virtual void seek(qint64 frame) = 0;

    // Fills up to `frames` frames of every channel, sanitised: a sample that is
    // not a finite number is 0. Fewer only where the file ends early.
    // Throws AudioFileError (read).
    virtual qint64 read(std::span<float* const> channels, qint64 frames) = 0;

protected:
    AudioFormat m_format;
    qint64 m_length = 0;
};

// The slowest, the fastest and the widest sound that is read.
constexpr int kMinSampleRate = 80;
constexpr int kMaxSampleRate = 768'000;
constexpr int kMaxChannels = 64;

constexpr bool isReadable(int sampleRate, int channels)
{
    return sampleRate >= kMinSampleRate && sampleRate <= kMaxSampleRate && channels >= 1 && channels <= kMaxChannels;
}

} // namespace tonequill
