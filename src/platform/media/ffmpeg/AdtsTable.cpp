#include "platform/media/ffmpeg/AdtsTable.h"

#include "platform/media/ffmpeg/FrameTable.h"

#include <QtEndian>

namespace tonequill {

namespace {

// Bits: 12 sync, 1 version, 2 layer (0), 1 "no checksum", 2 profile, 4 rate, 1
// private, 3 channels, 4 of no use here, 13 length, 11 fullness, 2 blocks − 1.
std::optional<FrameHeader> readHeader(std::span<const uint8_t> bytes)
{
    constexpr int kHeaderBytes = 7;
    constexpr int kRates = 13;
    constexpr quint32 kFixed = 0xFFFEFDC0;
    if (bytes.size() < kHeaderBytes)
        return std::nullopt;
    const quint32 word = qFromBigEndian<quint32>(bytes.data());
    const int rate = static_cast<int>(word >> 10 & 15);
    const int length = static_cast<int>(word & 3) << 11 | bytes[4] << 3 | bytes[5] >> 5;
    const bool isOneBlock = (bytes[6] & 3) == 0; // more of them are hardly ever written
    if (word >> 20 != 0xFFF || (word >> 17 & 3) != 0 || rate >= kRates || length < kHeaderBytes || !isOneBlock)
        return std::nullopt;
    return FrameHeader{length, 0, word & kFixed};
}

} // namespace

std::optional<PacketTable> adtsTable(const RegularFile& file, qint64 firstFrame, int frames)
{
    ByteWindow window(file);
    std::optional<PacketTable> table = frameTable(window, firstFrame, readHeader);
    if (table) {
        qint64 start = 0;
        for (PacketTable::Entry& entry : table->entries) {
            entry.place = {start, frames, 0, 0};
            start += frames;
        }
    }
    return table;
}

} // namespace tonequill
