#include "platform/media/AudioFileWriter.h"

#include "platform/media/AudioFileSource.h"
#include "platform/media/ffmpeg/AacSink.h"
#include "platform/media/pcm/WavSink.h"

namespace tonequill {

namespace {

std::unique_ptr<AudioFileWriter::Sink> makeSink(const QString& path, AudioFormat format, AudioEncoding encoding, int bitRate)
{
    try {
        if (!isReadable(static_cast<int>(format.sampleRate), format.channelCount))
            throw AudioFileError(AudioFileError::Kind::unsupported, path);
        switch (encoding) {
        case AudioEncoding::wavInt24:
            return std::make_unique<WavSink>(path, format, WavSink::Samples::int24);
        case AudioEncoding::wavFloat32:
            return std::make_unique<WavSink>(path, format, WavSink::Samples::float32);
        case AudioEncoding::m4aAac:
            return std::make_unique<AacSink>(path, format, bitRate);
        }
    } catch (const std::bad_alloc&) {
        throw AudioFileError(AudioFileError::Kind::noMemory, path);
    }
    Q_UNREACHABLE();
}

} // namespace

AudioFileWriter::AudioFileWriter(const QString& path, AudioFormat format, AudioEncoding encoding, int bitRate)
    : m_format(format),
      m_sink(makeSink(path, format, encoding, bitRate))
{}

AudioFileWriter::~AudioFileWriter() = default;

void AudioFileWriter::write(const AudioBuffer& buffer, const Progress* progress)
{
    Q_ASSERT(m_sink && buffer.format() == m_format);
    try {
        m_sink->write(buffer, progress);
    } catch (...) {
        m_sink.reset(); // takes the partial file with it
        throw;
    }
}

void AudioFileWriter::finish()
{
    Q_ASSERT(m_sink);
    const auto sink = std::move(m_sink);
    sink->finish();
}

} // namespace tonequill
