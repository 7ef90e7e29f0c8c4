#include "platform/media/ffmpeg/DirectPackets.h"

#include <cstring>

namespace tonequill {

namespace {

constexpr qint64 kBlockBytes = 128 * 1024;

} // namespace

DirectPackets::DirectPackets(std::shared_ptr<const RegularFile> file, PacketTable table)
    : m_file(std::move(file)),
      m_table(std::move(table))
{}

// Reads the packets that follow each other in the file at once. In a video they
// come in small groups, and the pictures between them are left out.
bool DirectPackets::fillBlock(const PacketTable::Entry& wanted)
{
    qint64 end = wanted.offset + wanted.bytes;
    for (auto i = static_cast<std::size_t>(m_next) + 1; i < m_table.entries.size(); ++i) {
        const PacketTable::Entry& entry = m_table.entries[i];
        if (entry.offset != end || end + entry.bytes - wanted.offset > kBlockBytes)
            break;
        end += entry.bytes;
    }
    m_blockOffset = wanted.offset;
    m_block.resize(static_cast<std::size_t>(end - wanted.offset));
    const qint64 got = m_file->read(m_block.data(), end - wanted.offset, wanted.offset);
    m_block.resize(static_cast<std::size_t>(std::max<qint64>(got, 0)));
    return got >= wanted.bytes;
}

bool DirectPackets::next(AVPacket* packet, std::optional<PacketPlace>& place)
{
    if (m_next >= static_cast<qint64>(m_table.entries.size()))
        return false;
    const PacketTable::Entry& entry = m_table.entries[static_cast<std::size_t>(m_next)];
    const qint64 blockEnd = m_blockOffset + static_cast<qint64>(m_block.size());
    if ((entry.offset < m_blockOffset || entry.offset + entry.bytes > blockEnd) && !fillBlock(entry))
        return false;
    if (av_new_packet(packet, entry.bytes) < 0)
        throw std::bad_alloc();
    std::memcpy(packet->data, m_block.data() + (entry.offset - m_blockOffset), static_cast<std::size_t>(entry.bytes));
    packet->pts = packet->dts = entry.time;
    place = entry.place;
    ++m_next;
    return true;
}

} // namespace tonequill
