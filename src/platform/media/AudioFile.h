#pragma once

#include "base/Progress.h"
#include "base/UserError.h"
#include "platform/media/AudioBuffer.h"

#include <QString>

#include <memory>

namespace tonequill {

// What went wrong with an audio file, with the user's sentence.
class AudioFileError : public UserError {
public:
    enum class Kind { open, unsupported, read, seek, write, noMemory };
    AudioFileError(Kind kind, const QString& path, const QString& detail = {});
    Kind kind() const { return m_kind; }

    // The same failure of a file that the user knows by another name.
    AudioFileError named(const QString& name) const { return {m_kind, Name{name}, m_detail}; }

private:
    struct Name {
        QString text;
    };
    AudioFileError(Kind kind, const Name& name, const QString& detail);

    Kind m_kind;
    QString m_detail;
};

// An audio file (or the first sound track of a media file) opened for reading:
// frames of 32-bit floats at the file's own rate and channel count.
//
// Positions are exact: reading frames [a, b) gives the same samples as that
// slice of a read from the start, compressed or not. Encoder delay and padding
// are left out where the file declares them. Damage becomes silence of the same
// length; a decoder that has met it may differ from one that has not.
//
// Headers are not believed: rates outside 80 Hz…768 kHz and more than 64 channels
// are refused as unsupported, and length() never exceeds what the file's bytes
// can hold. The content alone tells what a file is, not its name; text, images,
// folders, pipes and whatever refers to other files are refused. A sample that
// is not a finite number reads as 0. One thread at a time; several files may be
// read at once.
//
// Opening, seeking and reading throw Cancelled, within a block or a packet, once
// `progress` is cancelled; the file is good for nothing then.
class AudioFile {
public:
    // Throws AudioFileError (open, unsupported). REQUIRES: `progress` outlives the file.
    explicit AudioFile(const QString& path, const Progress* progress = nullptr);
    ~AudioFile();
    AudioFile(AudioFile&&) noexcept;
    AudioFile& operator=(AudioFile&&) noexcept;

    AudioFormat format() const;
    double sampleRate() const { return format().sampleRate; }
    int channelCount() const { return format().channelCount; }

    // Frames in the file. Of the few codecs whose packets don't tell their length
    // (Windows Media, DTS, E-AC-3 …) it is the container's word, and reads may end earlier.
    qint64 length() const;
    double durationSeconds() const { return static_cast<double>(length()) / sampleRate(); }

    // The frame that the next read starts with.
    qint64 framePosition() const;

    // Moves the position. Past the end, the next read gives 0 frames.
    // Throws AudioFileError (seek). REQUIRES: frame >= 0.
    void seek(qint64 frame);

    // Reads up to min(frames, into.capacityFrames()) frames, sets
    // into.frameLength() to what was read and returns it; 0 at the end. A file
    // that is damaged in the middle gives what could be decoded; one that
    // cannot be read any more throws AudioFileError (read).
    // REQUIRES: into.format() == format(), frames >= 1.
    qint64 read(AudioBuffer& into, qint64 frames);
    qint64 read(AudioBuffer& into) { return read(into, into.capacityFrames()); }

    class Source; // how one kind of file is read; a detail of the implementation

private:
    std::unique_ptr<Source> m_source;
    const Progress* m_progress = nullptr;
    qint64 m_position = 0;
};

} // namespace tonequill
