#include "platform/media/pcm/WavSink.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace tonequill {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kBlockFrames = 8'192;

// The sizes in a RIFF header have 32 bits; they leave out the first 8 bytes.
constexpr qint64 kMaxRiffBytes = std::numeric_limits<quint32>::max();

constexpr quint16 kPcm = 1;
constexpr quint16 kIeeeFloat = 3;
constexpr quint16 kExtensible = 0xFFFE;

// What follows the sample kind in the sub-format GUID of WAVE_FORMAT_EXTENSIBLE.
constexpr char kGuidTail[] = "\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71";

template <typename Number>
void append(QByteArray& bytes, Number value)
{
    value = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

int bytesPerSample(WavSink::Samples samples)
{
    return samples == WavSink::Samples::int24 ? 3 : 4;
}

void putInt24(const float* from, std::byte* into, qint64 frames, int stride)
{
    constexpr float kFullScale = 8'388'608.0F; // 2^23
    for (qint64 i = 0; i < frames; ++i, into += 3 * stride) {
        const float scaled = std::isnan(from[i]) ? 0.0F : std::clamp(from[i] * kFullScale, -kFullScale, kFullScale - 1);
        const auto value = static_cast<quint32>(std::lrint(scaled));
        into[0] = static_cast<std::byte>(value);
        into[1] = static_cast<std::byte>(value >> 8);
        into[2] = static_cast<std::byte>(value >> 16);
    }
}

void putFloat32(const float* from, std::byte* into, qint64 frames, int stride)
{
    for (qint64 i = 0; i < frames; ++i, into += 4 * stride)
        std::memcpy(into, &from[i], 4);
}

} // namespace

WavSink::WavSink(const QString& path, AudioFormat format, Samples samples)
    : m_file(path),
      m_format(format),
      m_samples(samples),
      m_frameBytes(bytesPerSample(samples) * format.channelCount),
      m_headerBytes(0)
{
    const QByteArray ofNoFrames = header(); // written again when the length is known
    m_headerBytes = ofNoFrames.size();
    m_file.write(ofNoFrames.constData(), m_headerBytes, 0);
    m_block.resize(static_cast<std::size_t>(kBlockFrames * m_frameBytes));
}

void WavSink::write(const AudioBuffer& buffer, const Progress* progress)
{
    const qint64 frames = buffer.frameLength();
    if (frames > (kMaxRiffBytes - m_headerBytes - m_dataBytes) / m_frameBytes)
        throw AudioFileError(AudioFileError::Kind::write, m_file.path(), u"a WAV file can't be larger than 4 GB"_s);
    const int sampleBytes = bytesPerSample(m_samples);
    for (qint64 first = 0; first < frames; first += kBlockFrames) {
        if (progress && progress->isCancelled())
            throw Cancelled();
        const qint64 count = std::min(kBlockFrames, frames - first);
        for (int channel = 0; channel < m_format.channelCount; ++channel) {
            const float* from = buffer.channel(channel).data() + first;
            std::byte* into = m_block.data() + channel * sampleBytes;
            if (m_samples == Samples::int24)
                putInt24(from, into, count, m_format.channelCount);
            else
                putFloat32(from, into, count, m_format.channelCount);
        }
        m_file.write(m_block.data(), count * m_frameBytes, m_headerBytes + m_dataBytes);
        m_dataBytes += count * m_frameBytes;
    }
}

void WavSink::finish()
{
    if (m_dataBytes % 2 != 0)
        m_file.write("\0", 1, m_headerBytes + m_dataBytes); // chunks start at even places
    const QByteArray complete = header();
    m_file.write(complete.constData(), complete.size(), 0);
    m_file.finish();
}

QByteArray WavSink::header() const
{
    const auto channels = static_cast<quint16>(m_format.channelCount);
    const auto rate = static_cast<quint32>(std::lround(m_format.sampleRate));
    const auto bits = static_cast<quint16>(8 * bytesPerSample(m_samples));
    const quint16 kind = m_samples == Samples::int24 ? kPcm : kIeeeFloat;
    // Two channels of plain PCM need no extension, and the oldest readers know
    // the short form; more channels are only valid in the long one.
    const bool isExtensible = channels > 2;

    QByteArray chunk;
    append(chunk, isExtensible ? kExtensible : kind);
    append(chunk, channels);
    append(chunk, rate);
    append(chunk, rate * static_cast<quint32>(m_frameBytes));
    append(chunk, static_cast<quint16>(m_frameBytes));
    append(chunk, bits);
    if (isExtensible) {
        append(chunk, quint16(22)); // bytes that follow
        append(chunk, bits);
        append(chunk, quint32(0)); // no loudspeaker is named
        append(chunk, kind);
        chunk.append(kGuidTail, sizeof kGuidTail - 1);
    } else if (kind != kPcm) {
        append(chunk, quint16(0));
    }

    QByteArray bytes("WAVEfmt ");
    append(bytes, static_cast<quint32>(chunk.size()));
    bytes += chunk;
    if (kind != kPcm) { // demanded of everything that is not integer PCM
        bytes += "fact";
        append(bytes, quint32(4));
        append(bytes, static_cast<quint32>(m_dataBytes / m_frameBytes));
    }
    bytes += "data";
    append(bytes, static_cast<quint32>(m_dataBytes));

    QByteArray riff("RIFF");
    append(riff, static_cast<quint32>(bytes.size() + m_dataBytes + m_dataBytes % 2));
    return riff + bytes;
}

} // namespace tonequill
