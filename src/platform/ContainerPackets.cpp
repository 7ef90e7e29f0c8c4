#include "platform/ContainerPackets.h"

#include "platform/AudioFile.h"
#include "platform/PacketTrim.h"

#include <algorithm>
#include <chrono>

namespace tonequill {

namespace {

// Reading all packets of the largest files would keep the user waiting.
constexpr qint64 kMaxScannedBytes = 1024LL * 1024 * 1024;
constexpr auto kScanPatience = std::chrono::seconds(4);

// After a jump the first packets may be incomplete, or not be the ones that
// were meant; so many are looked at before giving up.
constexpr int kJumpPackets = 2'000;

PacketTable::Entry entryOf(const AVPacket& packet, const PacketPlace& place)
{
    return {place, packet.size, packet.pos, packet.pts};
}

bool isSame(const PacketTable::Entry& entry, const AVPacket& packet)
{
    return entry.time == packet.pts && entry.offset == packet.pos && entry.bytes == packet.size;
}

} // namespace

ContainerPackets::ContainerPackets(std::unique_ptr<MediaInput> input, CodecTraits::Frames rule, int firstFrames)
    : m_file(input->sharedFile()),
      m_input(std::move(input)),
      m_rule(rule),
      m_firstFrames(firstFrames),
      m_frames(rule, *m_input->firstAudio()->codecpar, firstFrames),
      m_found(ffmpeg::allocated<ffmpeg::Packet>(av_packet_alloc()))
{
    restart();
}

void ContainerPackets::restart()
{
    if (!m_input) // a demuxer that went back to the start may remember what came after
        m_input = std::make_unique<MediaInput>(m_file);
    const AVStream* stream = m_input->firstAudio();
    if (!stream)
        throw AudioFileError(AudioFileError::Kind::seek, m_file->path());
    m_input->selectOnly(stream);
    m_track = stream->index;
    m_frames = PacketFrames(m_rule, *stream->codecpar, m_firstFrames);
    m_skip = m_frames.headerSkip();
    m_start = 0;
    m_next = 0;
    av_packet_unref(m_found.get());
}

bool ContainerPackets::nextOfTrack(AVPacket* packet)
{
    while (m_input->read(packet)) {
        if (packet->stream_index == m_track)
            return true;
        av_packet_unref(packet);
    }
    return false;
}

std::optional<PacketPlace> ContainerPackets::place(const AVPacket& packet)
{
    if (m_rule == CodecTraits::Frames::unknown)
        return std::nullopt;
    const std::optional<PacketTrim> trim = trimOf(packet);
    if (trim && trim->start > 0)
        m_skip = trim->start;
    PacketPlace place = {m_start, m_frames.count(packet), 0, 0};
    place.skipStart = static_cast<qint32>(std::min<qint64>(m_skip, place.frames));
    m_skip -= place.skipStart;
    if ((packet.flags & AV_PKT_FLAG_DISCARD) != 0)
        place.skipStart = place.frames;
    if (trim)
        place.skipEnd = static_cast<qint32>(std::min<qint64>(trim->end, place.frames - place.skipStart));
    m_start = place.end();
    return place;
}

bool ContainerPackets::next(AVPacket* packet, std::optional<PacketPlace>& where)
{
    if (m_found->data)
        av_packet_move_ref(packet, m_found.get());
    else if (!nextOfTrack(packet))
        return false;
    if (!m_table)
        where = place(*packet);
    else if (m_next < static_cast<qint64>(m_table->entries.size()))
        where = m_table->entries[static_cast<std::size_t>(m_next)].place;
    else
        return false;
    ++m_next;
    return true;
}

void ContainerPackets::scan()
{
    if (m_file->size() > kMaxScannedBytes)
        return;
    const auto deadline = std::chrono::steady_clock::now() + kScanPatience;
    const auto packet = ffmpeg::allocated<ffmpeg::Packet>(av_packet_alloc());
    PacketTable table;
    std::optional<PacketPlace> where;
    bool isLate = false;
    while (!isLate && next(packet.get(), where)) {
        table.entries.push_back(entryOf(*packet, *where));
        av_packet_unref(packet.get());
        isLate = table.entries.size() % 1024 == 0 && std::chrono::steady_clock::now() > deadline;
    }
    m_input.reset();
    restart();
    if (!isLate)
        m_table = std::move(table);
}

void ContainerPackets::goTo(qint64 packet)
{
    if (packet == m_next)
        return;
    if (packet > 0 && jump(packet))
        return;
    // The demuxer's way of seeking is not to be trusted with this file.
    m_input.reset();
    restart();
    std::optional<PacketPlace> where;
    while (m_next < packet && next(m_found.get(), where))
        av_packet_unref(m_found.get());
}

bool ContainerPackets::jump(qint64 packet)
{
    av_packet_unref(m_found.get());
    const auto& entries = m_table->entries;
    const PacketTable::Entry& wanted = entries[static_cast<std::size_t>(packet)];
    if (wanted.time == AV_NOPTS_VALUE ||
        avformat_seek_file(m_input->context(), m_track, std::numeric_limits<int64_t>::min(), wanted.time, wanted.time, 0) < 0)
        return false;
    for (int i = 0; i < kJumpPackets && nextOfTrack(m_found.get()); ++i) {
        if (isSame(wanted, *m_found)) {
            m_next = packet;
            return true;
        }
        const bool isPast = m_found->pts != AV_NOPTS_VALUE && m_found->pts > wanted.time;
        av_packet_unref(m_found.get());
        if (isPast)
            return false;
    }
    return false;
}

} // namespace tonequill
