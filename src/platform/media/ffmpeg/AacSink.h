#pragma once

#include "platform/media/AudioFileSink.h"
#include "platform/media/ffmpeg/M4aFile.h"

#include <memory>

namespace tonequill {

// AAC-LC in MPEG-4. The encoder's delay is declared in the file, so that it
// plays exactly what was written.
class AacSink final : public AudioFileWriter::Sink {
public:
    // Throws AudioFileError (write, unsupported).
    AacSink(const QString& path, AudioFormat format, int bitRate);

    // Whether AAC knows this rate and channel count.
    static bool supports(AudioFormat format);

    void write(const AudioBuffer& buffer, const Progress* progress) override;
    void finish() override;

private:
    void encode(const AVFrame* frame);
    void encodePending();

    QString m_path;
    ffmpeg::CodecContext m_encoder;
    ffmpeg::Frame m_pending; // up to one encoder frame
    qint64 m_pendingFrames = 0;
    qint64 m_written = 0;
    ffmpeg::Packet m_packet;
    std::unique_ptr<M4aFile> m_file;
};

} // namespace tonequill
