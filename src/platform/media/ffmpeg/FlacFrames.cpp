#include "platform/media/ffmpeg/FlacFrames.h"

#include <QtEndian>

#include <array>

extern "C" {
#include <libavutil/crc.h>
}

namespace tonequill {

namespace {

constexpr qint64 kMaxHeaderBytes = 16;
constexpr qint64 kSumBytes = 2;   // behind each frame
constexpr uint8_t kSync = 0xFF;   // and six bits more
constexpr qint64 kTagBytes = 128; // of a trailing "TAG" (ID3v1)

// What looks like a header within a frame is rarer than one in 2^30 bytes.
constexpr int kMaxLooks = 8;

// What a missing frame of sound may have taken: no encoder is asked for more.
constexpr qint64 kMaxFramesPerByte = 64;

quint32 sumOf(AVCRCId id, quint32 before, std::span<const uint8_t> bytes)
{
    return av_crc(av_crc_get_table(id), before, bytes.data(), bytes.size());
}

// Bytes of the number behind the first four: it is coded like UTF-8, up to 36 bits.
// 0 for what is no such code.
int numberBytes(uint8_t first)
{
    if (first < 0x80)
        return 1;
    int bytes = 0;
    while (bytes < 8 && (first & (0x80 >> bytes)) != 0)
        ++bytes;
    return bytes >= 2 && bytes <= 7 ? bytes : 0;
}

std::optional<qint64> readNumber(std::span<const uint8_t> bytes)
{
    const int count = bytes.empty() ? 0 : numberBytes(bytes[0]);
    if (count == 0 || bytes.size() < static_cast<std::size_t>(count))
        return std::nullopt;
    qint64 number = count == 1 ? bytes[0] : bytes[0] & (0x7F >> count);
    for (const uint8_t byte : bytes.subspan(1, static_cast<std::size_t>(count) - 1)) {
        if ((byte & 0xC0) != 0x80)
            return std::nullopt;
        number = number << 6 | (byte & 0x3F);
    }
    return number;
}

int framesOf(int code, std::span<const uint8_t> behindNumber)
{
    if (code == 1)
        return 192;
    if (code <= 5)
        return 144 << code;
    if (code >= 8)
        return 1 << code;
    return 1 + (code == 6 ? behindNumber[0] : behindNumber[0] << 8 | behindNumber[1]);
}

int channelsOf(uint8_t code)
{
    return code < 8 ? code + 1 : 2; // above: how two channels are coded together
}

} // namespace

std::optional<FlacHeader> flacHeader(std::span<const uint8_t> bytes)
{
    constexpr std::size_t kFixedBytes = 4;
    if (bytes.size() <= kFixedBytes || bytes[0] != kSync || (bytes[1] & 0xFE) != 0xF8)
        return std::nullopt;
    const int frames = bytes[2] >> 4;
    const int rate = bytes[2] & 15;
    const int channels = bytes[3] >> 4;
    if (frames == 0 || rate == 15 || channels > 10 || (bytes[3] & 1) != 0)
        return std::nullopt;
    const auto number = readNumber(bytes.subspan(kFixedBytes));
    if (!number)
        return std::nullopt;
    const auto behindNumber = kFixedBytes + static_cast<std::size_t>(numberBytes(bytes[kFixedBytes]));
    const std::size_t framesBytes = frames == 6 ? 1 : frames == 7 ? 2 : 0;
    const std::size_t rateBytes = rate < 12 ? 0 : rate == 12 ? 1 : 2;
    const std::size_t sumPlace = behindNumber + framesBytes + rateBytes;
    if (bytes.size() <= sumPlace)
        return std::nullopt;
    FlacHeader header;
    header.frames = framesOf(frames, bytes.subspan(behindNumber));
    header.bytes = static_cast<int>(sumPlace) + 1;
    header.number = *number;
    header.isSampleNumber = (bytes[1] & 1) != 0;
    header.fixed = static_cast<quint32>(rate << 16 | (bytes[3] & 0x0E) << 8 | channelsOf(static_cast<uint8_t>(channels)));
    header.isIntact = sumOf(AV_CRC_8_ATM, 0, bytes.first(sumPlace)) == bytes[sumPlace];
    return header;
}

FlacStream FlacStream::of(const AVCodecParameters& track)
{
    constexpr int kBytes = 34;
    if (track.extradata_size < kBytes)
        return {};
    const uint8_t* bytes = track.extradata;
    const quint64 packed = qFromBigEndian<quint64>(bytes + 10); // 20 bits of rate, 3, 5, 36
    return {qFromBigEndian<quint16>(bytes), qFromBigEndian<quint16>(bytes + 2), static_cast<int>(packed >> 41 & 7) + 1,
            static_cast<int>(packed >> 36 & 31) + 1, static_cast<qint64>(packed & 0xF'FFFF'FFFF)};
}

FlacFrames::FlacFrames(const RegularFile& file, FlacStream stream, qint64 offset)
    : m_window(file),
      m_stream(stream),
      m_from(offset)
{}

// An intact header of this stream.
std::optional<FlacHeader> FlacFrames::headerAt(qint64 offset)
{
    const auto header = flacHeader(m_window.at(offset, kMaxHeaderBytes));
    if (!header || !header->isIntact || (m_fixed && header->fixed != *m_fixed))
        return std::nullopt;
    return header;
}

std::optional<FlacFrames::Found> FlacFrames::find(qint64 offset, qint64 end)
{
    while (const auto sync = m_window.find(kSync, offset, end)) {
        if (const auto header = headerAt(*sync))
            return Found{*sync, *header};
        offset = *sync + 1;
    }
    return std::nullopt;
}

// Bytes of a frame whose samples are all stored as they are, and some to spare.
qint64 FlacFrames::mostBytes(const FlacHeader& header) const
{
    constexpr qint64 kMostBits = 33; // the difference of two channels takes one more
    constexpr qint64 kSpare = 64;
    return header.bytes + kSpare + (header.fixed & 0xFF) * (header.frames * kMostBits / 8 + kSpare);
}

// The checksum with the bytes from `offset` up to `end`. With that which stands at
// its end a frame has the sum 0.
quint32 FlacFrames::sumWith(quint32 before, qint64 offset, qint64 end)
{
    while (offset < end) {
        const auto bytes = m_window.upTo(offset, end);
        if (bytes.empty())
            break;
        before = sumOf(AV_CRC_16_ANSI, before, bytes);
        offset += static_cast<qint64>(bytes.size());
    }
    return before;
}

// Whether the sum is right anywhere before `end`.
bool FlacFrames::hasWholeFrame(qint64 offset, qint64 end)
{
    const auto header = headerAt(offset);
    const auto bytes = m_window.at(offset, end - offset);
    const auto least = static_cast<std::size_t>(header->bytes + 1);
    if (bytes.size() < least + kSumBytes)
        return false;
    quint32 sum = sumOf(AV_CRC_16_ANSI, 0, bytes.first(least));
    for (std::size_t i = least; i < bytes.size(); ++i) {
        sum = sumOf(AV_CRC_16_ANSI, sum, bytes.subspan(i, 1));
        if (sum == 0)
            return true;
    }
    return false;
}

// Where the frame ends: before the next one or at the file's end with the right
// sum, else (it is damaged, or something else stands behind it) wherever the next
// one begins. None where nothing of its size can be a frame.
std::optional<qint64> FlacFrames::endOf(const Found& frame)
{
    const qint64 most = std::min(frame.offset + mostBytes(frame.header), m_window.fileBytes());
    m_window.keepFrom(frame.offset);
    std::optional<Found> first;
    quint32 sum = 0;
    qint64 summed = frame.offset;
    auto next = find(frame.offset + frame.header.bytes, most);
    for (int looks = 0; next && looks < kMaxLooks; ++looks, next = find(summed + 1, most)) {
        sum = sumWith(sum, summed, next->offset);
        summed = next->offset;
        if (sum == 0) {
            m_next = next;
            return next->offset;
        }
        if (!first)
            first = next;
    }
    m_next = first ? first : find(most, m_window.fileBytes());
    const qint64 end = std::min(most, m_next ? m_next->offset : most);
    if (first || hasWholeFrame(frame.offset, end))
        return end;
    return std::nullopt;
}

// By its number alone. Old encoders count samples without saying so, where frames
// are not of one length.
qint64 FlacFrames::startOf(const FlacHeader& header) const
{
    const bool countsSamples = header.isSampleNumber || m_stream.minFrames != m_stream.maxFrames;
    const qint64 frames = m_stream.maxFrames > 0 ? m_stream.maxFrames : header.frames;
    return (countsSamples ? header.number : header.number * frames) - m_firstStart;
}

qint64 FlacFrames::placeOf(const Found& frame) const
{
    const qint64 start = startOf(frame.header);
    const qint64 most = (frame.offset - m_lastOffset) * kMaxFramesPerByte;
    const bool isInStream = m_stream.length == 0 || start + frame.header.frames <= m_stream.length;
    return start > m_end && start - m_end <= most && isInStream ? start : m_end;
}

std::optional<PacketTable::Entry> FlacFrames::next()
{
    if (!m_isBegun) {
        m_isBegun = true;
        m_next = find(m_from, m_window.fileBytes());
        if (m_next) {
            m_fixed = m_next->header.fixed;
            m_firstStart = startOf(m_next->header);
        }
    }
    while (m_next) {
        const Found frame = *m_next;
        const auto end = endOf(frame);
        if (!end)
            continue;
        PacketTable::Entry entry;
        entry.place = {placeOf(frame), frame.header.frames, 0, 0};
        entry.offset = frame.offset;
        entry.bytes = static_cast<qint32>(*end - frame.offset);
        m_end = entry.place.end();
        m_lastOffset = frame.offset;
        return entry;
    }
    return std::nullopt;
}

std::optional<qint64> FlacFrames::toldEnd()
{
    const auto first = find(m_from, m_window.fileBytes());
    if (!first || m_stream.length == 0)
        return std::nullopt;
    FlacFrames tail = *this;
    tail.m_fixed = first->header.fixed;
    tail.m_firstStart = startOf(first->header);
    FlacHeader largest = first->header;
    largest.frames = std::max(largest.frames, m_stream.maxFrames);
    qint64 end = m_window.fileBytes();
    if (end > kTagBytes) {
        const auto tag = m_window.at(end - kTagBytes, 3);
        end -= tag.size() == 3 && std::memcmp(tag.data(), "TAG", 3) == 0 ? kTagBytes : 0;
    }
    const qint64 from = std::max(first->offset, end - mostBytes(largest));
    tail.m_window.keepFrom(from);
    std::optional<qint64> last;
    for (auto frame = tail.find(from, end); frame; frame = tail.find(frame->offset + 1, end))
        if (tail.startOf(frame->header) + frame->header.frames == m_stream.length)
            last = frame->offset;
    return last && tail.sumWith(0, *last, end) == 0 ? std::optional(m_stream.length) : std::nullopt;
}

} // namespace tonequill
