#pragma once

#include "platform/media/RegularFile.h"
#include "platform/media/ffmpeg/PacketReader.h"

#include <memory>

namespace tonequill {

// Packets whose offsets in the file are all known: they are read without a
// demuxer, so that any of them can be the next one.
class DirectPackets final : public PacketReader {
public:
    // REQUIRES: every entry of `table` has its offset and its size.
    DirectPackets(std::shared_ptr<const RegularFile> file, PacketTable table);

    bool next(AVPacket* packet, std::optional<PacketPlace>& place) override;
    const PacketTable* table() const override { return &m_table; }
    void goTo(qint64 packet) override { m_next = packet; }

private:
    bool fillBlock(const PacketTable::Entry& wanted);

    std::shared_ptr<const RegularFile> m_file;
    PacketTable m_table;
    std::vector<uint8_t> m_block; // bytes of the file from m_blockOffset on
    qint64 m_blockOffset = 0;
};

} // namespace tonequill
