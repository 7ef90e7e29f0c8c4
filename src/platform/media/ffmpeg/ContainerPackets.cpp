#include "platform/media/ffmpeg/ContainerPackets.h"

#include "platform/media/AudioFile.h"
#include "platform/media/ffmpeg/PacketTrim.h"

#include <QtEndian>

#include <algorithm>
#include <bit>

namespace tonequill {

namespace {

// A demuxer that reads a file more often than that to give its packets once is lost.
constexpr qint64 kMostReadings = 4;
constexpr qint64 kSpareBytes = 64LL * 1024 * 1024;

// After a jump the first packets may be incomplete; so many are looked at.
constexpr int kMaxUnknownPackets = 50;

// A number that two packets hardly ever share.
quint64 printOf(const AVPacket& packet)
{
    constexpr quint64 kFactor = 0x9E3779B97F4A7C15; // 2^64 divided by the golden ratio: odd, and mixes well
    quint64 print = static_cast<quint64>(packet.size);
    int i = 0;
    for (; i + 8 <= packet.size; i += 8)
        print = std::rotl((print ^ qFromUnaligned<quint64>(packet.data + i)) * kFactor, 29);
    for (; i < packet.size; ++i)
        print = std::rotl((print ^ packet.data[i]) * kFactor, 29);
    return print | 1;
}

bool isSame(const PacketTable::Entry& entry, const AVPacket& packet)
{
    return entry.offset == packet.pos && entry.bytes == packet.size && entry.print == printOf(packet);
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
    if (m_table) {
        if (m_next >= static_cast<qint64>(m_table->entries.size()))
            return false;
        const PacketTable::Entry* entry = &m_table->entries[static_cast<std::size_t>(m_next)];
        if (!isSame(*entry, *packet)) {
            // After a jump one of several equal packets was taken for another;
            // what has been given since then is still right, being equal.
            av_packet_unref(packet);
            readUpTo(m_next);
            if (!nextOfTrack(packet))
                return false;
        }
        where = entry->place;
    } else {
        where = place(*packet);
    }
    ++m_next;
    return true;
}

// Calls take(packet, place) for all of them from the first on, and is back at the
// first then.
template <typename Take>
void ContainerPackets::takeAll(const Take& take)
{
    if (m_next > 0) {
        m_input.reset();
        restart();
    }
    const auto packet = ffmpeg::allocated<ffmpeg::Packet>(av_packet_alloc());
    const qint64 most = m_input->bytesRead() + m_file->size() * kMostReadings + kSpareBytes;
    std::optional<PacketPlace> where;
    while (m_input->bytesRead() < most && next(packet.get(), where)) {
        m_file->requireWanted();
        take(*packet, where);
        av_packet_unref(packet.get());
    }
    m_input.reset();
    restart();
}

void ContainerPackets::findAll()
{
    if (m_table || m_rule == CodecTraits::Frames::unknown)
        return;
    PacketTable table;
    takeAll([&table](const AVPacket& packet, const std::optional<PacketPlace>& where) {
        table.entries.push_back({*where, packet.size, packet.pos, packet.pts, printOf(packet)});
    });
    m_table = std::move(table);
}

qint64 ContainerPackets::framesByDurations(int sampleRate)
{
    const AVRational unit = m_input->firstAudio()->time_base;
    qint64 time = 0;
    takeAll([&time](const AVPacket& packet, const std::optional<PacketPlace>&) { time += std::max<qint64>(packet.duration, 0); });
    return av_rescale_q(time, unit, {1, sampleRate});
}

void ContainerPackets::goTo(qint64 packet)
{
    if (packet == m_next)
        return;
    if (packet > 0 && jump(packet))
        return;
    readUpTo(packet); // the demuxer's way of seeking is not to be trusted with this file
}

// Reads from the start, which is always right. The packets before are not decoded.
void ContainerPackets::readUpTo(qint64 packet)
{
    m_input.reset();
    restart();
    for (; m_next < packet && nextOfTrack(m_found.get()); ++m_next)
        av_packet_unref(m_found.get());
}

bool ContainerPackets::jump(qint64 packet)
{
    av_packet_unref(m_found.get());
    const qint64 time = m_table->entries[static_cast<std::size_t>(packet)].time;
    if (time == AV_NOPTS_VALUE ||
        avformat_seek_file(m_input->context(), m_track, std::numeric_limits<int64_t>::min(), time, time, 0) < 0)
        return false;
    // The first packets may be incomplete and thus unknown.
    const auto& entries = m_table->entries;
    auto known = entries.end();
    int unknown = 0;
    for (; known == entries.end() && unknown < kMaxUnknownPackets && nextOfTrack(m_found.get()); ++unknown) {
        known = std::find_if(entries.begin(), entries.begin() + packet + 1,
                             [this](const auto& entry) { return isSame(entry, *m_found); });
        if (known == entries.begin() + packet + 1)
            known = entries.end();
        if (known == entries.end())
            av_packet_unref(m_found.get());
    }
    if (known == entries.end())
        return false;
    for (m_next = known - entries.begin(); m_next < packet; ++m_next) {
        av_packet_unref(m_found.get());
        if (!nextOfTrack(m_found.get()) || !isSame(entries[static_cast<std::size_t>(m_next) + 1], *m_found)) {
            av_packet_unref(m_found.get());
            return false;
        }
    }
    return true;
}

} // namespace tonequill
