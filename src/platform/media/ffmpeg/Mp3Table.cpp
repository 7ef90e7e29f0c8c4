#include "platform/media/ffmpeg/Mp3Table.h"

#include "platform/media/ffmpeg/FrameTable.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <string_view>

namespace tonequill {

namespace {

// Every decoder adds this many frames of its own to the encoder's delay.
constexpr qint64 kDecoderDelay = 528 + 1;

// Kilobits a second by version (1, or 2 and 2.5), layer and the number in the header.
constexpr std::array<std::array<std::array<int, 14>, 3>, 2> kKilobits = {{
    {{{32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
      {32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
      {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}}},
    {{{32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
      {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
      {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}}},
}};

// A header of MPEG 1, 2 or 2.5, layer I, II or III (ISO/IEC 11172-3, 2.4.1.3).
std::optional<FrameHeader> readHeader(std::span<const uint8_t> bytes)
{
    constexpr quint32 kSync = 0xFFE00000;
    constexpr quint32 kVersionLayerRate = 0xFFFE0C00;
    constexpr std::array<int, 3> kRates = {44'100, 48'000, 32'000};
    if (bytes.size() < sizeof(quint32))
        return std::nullopt;
    const quint32 word = qFromBigEndian<quint32>(bytes.data());
    const quint32 version = word >> 19 & 3;     // 0 is 2.5, 2 is 2, 3 is 1
    const quint32 layer = 4 - (word >> 17 & 3); // 4 is none
    const quint32 bitRate = word >> 12 & 15;
    const quint32 rate = word >> 10 & 3;
    if ((word & kSync) != kSync || version == 1 || layer == 4 || bitRate == 0 || bitRate == 15 || rate == 3)
        return std::nullopt;
    const int bitsPerSecond = kKilobits[version == 3 ? 0 : 1][layer - 1][bitRate - 1] * 1000;
    const int hertz = kRates[rate] >> (version == 3 ? 0 : version == 2 ? 1 : 2);
    const int frames = layer == 1 ? 384 : layer == 2 || version == 3 ? 1152 : 576;
    const int padding = static_cast<int>(word >> 9 & 1);
    const bool isMono = (word >> 6 & 3) == 3;
    const int unit = layer == 1 ? 4 : 1; // bytes
    return FrameHeader{(frames / 8 / unit * bitsPerSecond / hertz + padding) * unit, frames,
                       (word & kVersionLayerRate) | (isMono ? 1U : 0U)};
}

struct Gapless {
    qint64 frameCount = 0; // of MPEG frames, without the one that tells it
    qint64 delay = 0;
    qint64 padding = 0;
};

// The information frame stands right before the first frame of sound. Its tag:
// "Xing" or "Info", flags, then as flagged the number of frames, of bytes, a
// table of contents and a quality; then the encoder's name and, 21 bytes after
// its start, 12 bits each of delay and padding.
std::optional<Gapless> readGapless(const RegularFile& file, qint64 firstFrame)
{
    constexpr qint64 kMaxFrameBytes = 2881;
    std::array<uint8_t, kMaxFrameBytes> bytes = {};
    const qint64 from = std::max<qint64>(0, firstFrame - kMaxFrameBytes);
    const qint64 got = file.read(bytes.data(), firstFrame - from, from);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(std::max<qint64>(got, 0)));
    const std::size_t tag = std::max(text.rfind("Xing") + 1, text.rfind("Info") + 1); // npos + 1 is 0
    if (tag == 0)
        return std::nullopt;
    std::size_t place = tag - 1 + 4;
    const auto word = [&](std::size_t at) { return at + 4 <= text.size() ? qFromBigEndian<quint32>(bytes.data() + at) : 0; };
    const quint32 flags = word(place);
    place += 4;
    Gapless gapless;
    if ((flags & 1) == 0)
        return std::nullopt;
    gapless.frameCount = word(place);
    place += 4 + ((flags & 2) != 0 ? 4U : 0U) + ((flags & 4) != 0 ? 100U : 0U) + ((flags & 8) != 0 ? 4U : 0U);
    constexpr std::size_t kDelayPlace = 21;
    if (place + kDelayPlace + 3 > text.size())
        return std::nullopt;
    const std::string_view encoder = text.substr(place, 4);
    if (encoder != "LAME" && encoder != "Lavf" && encoder != "Lavc")
        return std::nullopt; // others leave these bytes to chance
    const quint32 both = word(place + kDelayPlace) >> 8;
    gapless.delay = both >> 12;
    gapless.padding = both & 0xFFF;
    return gapless;
}

void trim(PacketTable& table, const Gapless& gapless)
{
    qint64 skip = gapless.delay + kDecoderDelay;
    qint64 start = 0;
    for (PacketTable::Entry& entry : table.entries) {
        entry.place.start = start;
        entry.place.skipStart = static_cast<qint32>(std::min<qint64>(skip, entry.place.frames));
        skip -= entry.place.skipStart;
        start = entry.place.end();
    }
    // A file that was cut since then does not end with the padding.
    if (static_cast<qint64>(table.entries.size()) == gapless.frameCount && gapless.padding > kDecoderDelay)
        table.endAt(std::max<qint64>(0, start - (gapless.padding - kDecoderDelay)));
}

} // namespace

std::optional<PacketTable> mp3Table(const RegularFile& file, qint64 firstFrame)
{
    ByteWindow window(file);
    std::optional<PacketTable> table = frameTable(window, firstFrame, readHeader);
    if (!table)
        return std::nullopt;
    if (const std::optional<Gapless> gapless = readGapless(file, firstFrame))
        trim(*table, *gapless);
    return table;
}

} // namespace tonequill
