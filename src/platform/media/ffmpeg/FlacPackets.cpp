#include "platform/media/ffmpeg/FlacPackets.h"

namespace tonequill {

FlacPackets::FlacPackets(std::shared_ptr<const RegularFile> file, FlacStream stream, qint64 offset)
    : m_file(std::move(file)),
      m_stream(stream),
      m_offset(offset),
      m_frames(*m_file, stream, offset)
{}

bool FlacPackets::next(AVPacket* packet, std::optional<PacketPlace>& place)
{
    if (m_direct) {
        const bool isThere = m_direct->next(packet, place);
        m_next = m_direct->nextPacket();
        return isThere;
    }
    const auto entry = m_frames.next();
    if (!entry)
        return false;
    if (av_new_packet(packet, entry->bytes) < 0)
        throw std::bad_alloc();
    if (m_file->read(packet->data, entry->bytes, entry->offset) < entry->bytes)
        return false;
    place = entry->place;
    ++m_next;
    return true;
}

void FlacPackets::goTo(qint64 packet)
{
    m_next = packet;
    if (m_direct)
        m_direct->goTo(packet);
    else
        m_frames = FlacFrames(*m_file, m_stream, m_offset);
}

void FlacPackets::findAll()
{
    if (m_direct)
        return;
    PacketTable table;
    FlacFrames frames(*m_file, m_stream, m_offset);
    while (const auto entry = frames.next())
        table.entries.push_back(*entry);
    m_direct.emplace(m_file, std::move(table));
    m_next = 0;
}

} // namespace tonequill
