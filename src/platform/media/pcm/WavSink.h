#pragma once

#include "platform/media/AudioFileSink.h"
#include "platform/media/OutputFile.h"

#include <QByteArray>

#include <vector>

namespace tonequill {

// RIFF WAVE files. Written here and not by libavformat: the format is a page
// long, and so rounding, the `fact` chunk and every failed write are ours.
class WavSink final : public AudioFileWriter::Sink {
public:
    enum class Samples { int24, float32 };

    // Throws AudioFileError (write).
    WavSink(const QString& path, AudioFormat format, Samples samples);

    void write(const AudioBuffer& buffer, const Progress* progress) override;
    void finish() override;

private:
    QByteArray header() const;

    OutputFile m_file;
    AudioFormat m_format;
    Samples m_samples;
    int m_frameBytes;
    qint64 m_headerBytes;
    qint64 m_dataBytes = 0;
    std::vector<std::byte> m_block;
};

} // namespace tonequill
