#pragma once

#include "platform/media/AudioBuffer.h"
#include "platform/media/AudioFile.h"

#include <QString>

#include <memory>

namespace tonequill {

// What a written audio file contains.
enum class AudioEncoding {
    wavInt24,   // RIFF WAVE, 24-bit integer PCM, rounded to nearest
    wavFloat32, // RIFF WAVE, 32-bit IEEE float PCM
    m4aAac,     // AAC-LC in MPEG-4, with its priming declared
};

// Writes frames to a new audio file. The file is complete after finish(); a
// writer that goes away before, or fails, removes what it wrote. It does not
// sync: the caller of a file that is to be kept does. One thread.
class AudioFileWriter {
public:
    // `bitRate` in bits per second counts for m4aAac only.
    // Throws AudioFileError (write, unsupported). REQUIRES: nothing is at `path`
    // that should be kept.
    AudioFileWriter(const QString& path, AudioFormat format, AudioEncoding encoding, int bitRate = 0);
    ~AudioFileWriter();
    AudioFileWriter(const AudioFileWriter&) = delete;
    AudioFileWriter& operator=(const AudioFileWriter&) = delete;

    // Appends the buffer's valid frames; samples beyond full scale are clamped
    // in integers. Throws AudioFileError (write), and for a WAV past its 4 GB, and
    // Cancelled, within a block of some thousand frames.
    // REQUIRES: buffer.format() == the writer's format; no write or finish()
    // was called after finish() or a failure.
    void write(const AudioBuffer& buffer, const Progress* progress = nullptr);

    // Writes what is buffered, completes the header and closes the file.
    // Throws AudioFileError (write).
    void finish();

    class Sink; // how one kind of file is written; a detail of the implementation

private:
    AudioFormat m_format;
    std::unique_ptr<Sink> m_sink; // null after a failure or finish()
};

} // namespace tonequill
