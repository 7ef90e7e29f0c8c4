#include "platform/media/ffmpeg/DecodedSource.h"

#include "platform/media/ffmpeg/AdtsTable.h"
#include "platform/media/ffmpeg/ContainerPackets.h"
#include "platform/media/ffmpeg/DirectPackets.h"
#include "platform/media/ffmpeg/FlacPackets.h"
#include "platform/media/ffmpeg/IndexTable.h"
#include "platform/media/ffmpeg/Mp3Table.h"
#include "platform/media/ffmpeg/PacketTrim.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace tonequill {

namespace {

// So many packets may be damaged before the first good one.
constexpr int kMaxPacketsToFirstFrame = 500;

// Reading all packets of the largest films would keep the user waiting: their
// container's word counts, if it gives one.
constexpr qint64 kMaxScannedBytes = 1024LL * 1024 * 1024;

// No codec in use packs sound tighter than this (6 kbit/s at 48 kHz).
constexpr qint64 kMaxFramesPerByte = 64;

bool isEncrypted(const AVCodecParameters& track)
{
    return track.codec_tag == MKTAG('e', 'n', 'c', 'a') || track.codec_tag == MKTAG('d', 'r', 'm', 's');
}

bool readPacketOf(MediaInput& input, const AVStream& stream, AVPacket* packet)
{
    while (input.read(packet)) {
        if (packet->stream_index == stream.index)
            return true;
        av_packet_unref(packet);
    }
    return false;
}

} // namespace

DecodedSource::DecodedSource(std::unique_ptr<MediaInput> input)
    : m_file(input->sharedFile()),
      m_track(ffmpeg::allocated<ffmpeg::CodecParameters>(avcodec_parameters_alloc())),
      m_packet(ffmpeg::allocated<ffmpeg::Packet>(av_packet_alloc()))
{
    const AVStream& stream = *input->firstAudio();
    input->selectOnly(&stream);
    m_timeBase = stream.time_base;
    learn(*input);
    if (!isReadable(static_cast<int>(m_format.sampleRate), m_format.channelCount))
        throw AudioFileError(AudioFileError::Kind::unsupported, m_file->path());
    chooseReader(*input);
    if (m_track->codec_id == AV_CODEC_ID_ALAC)
        m_length = std::min(m_length, alacEnd());
    decodeFrom(0);
}

DecodedSource::~DecodedSource() = default;

bool DecodedSource::readToLearn(MediaInput& input, const AVStream& stream)
{
    return m_reader ? m_reader->next(m_packet.get(), m_place) : readPacketOf(input, stream, m_packet.get());
}

// What the first decoded frame is like; headers are often wrong about it. A file of
// which none can be decoded is no sound, whatever its header promises.
void DecodedSource::learn(MediaInput& input)
{
    const AudioFileError unsupported(AudioFileError::Kind::unsupported, m_file->path());
    const AVStream& stream = *input.firstAudio();
    if (isEncrypted(*stream.codecpar))
        throw unsupported;
    if (avcodec_parameters_copy(m_track.get(), stream.codecpar) < 0)
        throw std::bad_alloc();
    if (std::string_view(input.context()->iformat->name) == "flac")
        m_reader = std::make_unique<FlacPackets>(m_file, FlacStream::of(*m_track), input.dataOffset());
    const std::unique_ptr<Decoder> decoder = makeDecoder(Decoder::Trimming::byCaller);
    int packets = 0;
    for (; packets < kMaxPacketsToFirstFrame && readToLearn(input, stream); ++packets) {
        if (packets == 0) {
            const std::optional<PacketTrim> trim = trimOf(*m_packet);
            m_firstOffset = m_packet->pos;
            m_firstSkip = trim ? trim->start : 0;
        }
        m_file->requireWanted();
        decoder->send(m_packet.get());
        av_packet_unref(m_packet.get());
        if (const AVFrame* frame = decoder->receive()) {
            m_format = {static_cast<double>(frame->sample_rate), frame->ch_layout.nb_channels};
            m_firstFrames = frame->nb_samples;
            m_traits = codecTraits(m_track->codec_id, decoder->profile(), *frame);
            return;
        }
    }
    // A track without any sound in it.
    m_format = {static_cast<double>(m_track->sample_rate), m_track->ch_layout.nb_channels};
    if (packets > 0 || declaredLength(input) > 0)
        throw unsupported;
}

// The table of a file whose packets can be found without its demuxer.
std::optional<PacketTable> DecodedSource::quickTable(MediaInput& input) const
{
    const std::string_view container = input.context()->iformat->name;
    if (m_traits.frames != CodecTraits::Frames::constant)
        return std::nullopt;
    std::optional<PacketTable> table;
    if (container == "mp3" && m_firstOffset >= 0)
        table = mp3Table(*m_file, m_firstOffset);
    else if (container == "aac" && m_firstOffset >= 0)
        table = adtsTable(*m_file, m_firstOffset, m_firstFrames);
    else
        table = indexTable(input, *input.firstAudio(), {m_firstFrames, static_cast<int>(m_format.sampleRate), m_firstSkip});
    if (table && table->entries.front().place.frames != m_firstFrames)
        return std::nullopt;
    return table;
}

void DecodedSource::chooseReader(MediaInput& input)
{
    if (auto table = quickTable(input)) {
        m_length = table->length();
        m_reader = std::make_unique<DirectPackets>(m_file, std::move(*table));
        return;
    }
    if (auto* flac = dynamic_cast<FlacPackets*>(m_reader.get())) {
        if (const auto end = flac->toldEnd()) {
            m_length = *end;
            return;
        }
    } else {
        readByDemuxer(input);
    }
    findPackets();
    if (m_reader->table())
        m_length = m_reader->table()->length();
}

// As far as the container's word counts, m_length is that.
void DecodedSource::readByDemuxer(const MediaInput& input)
{
    auto reader = std::make_unique<ContainerPackets>(std::make_unique<MediaInput>(m_file), m_traits.frames, m_firstFrames);
    m_length = declaredLength(input);
    m_isTold = m_length > 0 && !input.isBare();
    // Of a bare stream it would be a guess from the size of the file.
    if (m_traits.frames == CodecTraits::Frames::unknown && input.isBare())
        m_length = reader->framesByDurations(static_cast<int>(m_format.sampleRate));
    m_reader = std::move(reader);
}

// ALAC's last packet may hold fewer frames than the others, which not every
// container tells.
qint64 DecodedSource::alacEnd()
{
    const PacketTable* table = m_reader->table();
    if (!table || table->entries.empty())
        return m_length;
    m_reader->goTo(static_cast<qint64>(table->entries.size()) - 1);
    const std::unique_ptr<Decoder> decoder = makeDecoder();
    if (m_reader->next(m_packet.get(), m_place) && m_place && decoder->send(m_packet.get()))
        if (const AVFrame* frame = decoder->receive())
            return std::min(m_place->end(), m_place->start + frame->nb_samples - m_place->skipStart);
    return m_length;
}

qint64 DecodedSource::declaredLength(const MediaInput& input) const
{
    const int sampleRate = static_cast<int>(m_format.sampleRate);
    const AVStream& stream = *input.firstAudio();
    qint64 frames = 0;
    if (stream.duration != AV_NOPTS_VALUE)
        frames = av_rescale_q(stream.duration, stream.time_base, {1, sampleRate});
    else if (input.context()->duration != AV_NOPTS_VALUE)
        frames = av_rescale(input.context()->duration, sampleRate, AV_TIME_BASE);
    return std::clamp<qint64>(frames, 0, m_file->size() * kMaxFramesPerByte);
}

std::unique_ptr<Decoder> DecodedSource::makeDecoder(Decoder::Trimming trimming) const
{
    auto decoder = std::make_unique<Decoder>(*m_track, m_timeBase, trimming);
    if (!decoder->isOpen())
        throw AudioFileError(AudioFileError::Kind::unsupported, m_file->path());
    return decoder;
}

std::unique_ptr<Decoder> DecodedSource::makeDecoder() const
{
    return makeDecoder(m_traits.frames == CodecTraits::Frames::unknown ? Decoder::Trimming::byDecoder
                                                                       : Decoder::Trimming::byCaller);
}

// Has all packets counted; without them there is no other way than from the start.
void DecodedSource::findPackets()
{
    const bool isTooLarge = m_isTold && m_file->size() > kMaxScannedBytes;
    if (!m_reader->table() && m_traits.frames != CodecTraits::Frames::unknown && !isTooLarge) {
        m_reader->findAll();
        decodeFrom(0);
    }
    if (!m_reader->table())
        m_traits.recovery = CodecTraits::Recovery::fromStart;
}

void DecodedSource::decodeFrom(qint64 packet)
{
    const bool inStretches = m_traits.recovery == CodecTraits::Recovery::inStretches;
    m_firstDecoded = packet;
    m_recent.clear();
    m_reader->goTo(std::max<qint64>(0, inStretches ? packet - m_traits.preroll : packet));
    if (m_decoder && !inStretches && packet > 0)
        m_decoder->flush();
    else
        m_decoder = makeDecoder();
    m_isSent = false;
    m_isDrained = false;
    m_counted = 0;
    m_slice = {};
}

void DecodedSource::seek(qint64 frame)
{
    if (frame >= m_slice.start && frame < m_slice.end) {
        m_position = frame;
        return;
    }
    const bool isAhead = frame >= m_position;
    const bool isNear = isAhead && frame - m_position < static_cast<qint64>(m_format.sampleRate);
    m_position = frame;
    if (isNear)
        return; // decoding on is as quick as starting anew
    if (m_traits.recovery != CodecTraits::Recovery::fromStart)
        findPackets();
    qint64 from = 0;
    if (m_traits.recovery != CodecTraits::Recovery::fromStart && !m_reader->table()->entries.empty()) {
        const qint64 packet = m_reader->table()->packetAt(frame);
        from = m_traits.recovery == CodecTraits::Recovery::exact ? std::max<qint64>(0, packet - m_traits.preroll)
                                                                 : packet / m_traits.stretch * m_traits.stretch;
    }
    if (!isAhead || from > m_reader->nextPacket())
        decodeFrom(from);
}

qint64 DecodedSource::read(std::span<float* const> channels, qint64 frames)
{
    qint64 done = 0;
    while (done < frames) {
        if (m_slice.end <= m_position) {
            if (!advance())
                break;
            continue;
        }
        const bool isSilence = m_slice.start > m_position || !m_slice.frame;
        const qint64 end = m_slice.start > m_position ? m_slice.start : m_slice.end;
        const qint64 count = std::min(frames - done, end - m_position);
        if (isSilence)
            for (float* channel : channels)
                std::fill_n(channel + done, count, 0.0F);
        else
            toChannels(*m_slice.frame, m_slice.first + m_position - m_slice.start, count, channels, done);
        m_position += count;
        done += count;
    }
    return done;
}

// Makes m_slice the next frames. False at the end.
bool DecodedSource::advance()
{
    while (true) {
        while (m_isSent) {
            if (takeFrame())
                return true;
        }
        if (sendNextPacket())
            continue;
        if (m_isDrained)
            return false;
        m_isDrained = true;
        if (m_place || m_traits.frames != CodecTraits::Frames::unknown) {
            // Damaged packets at the end leave silence up to where they would have reached.
            if (!m_reader->table() || m_reader->nextPacket() < static_cast<qint64>(m_reader->table()->entries.size()))
                return false;
            m_slice = {m_position, m_length, nullptr, 0};
            return m_position < m_length;
        }
        m_isSent = m_decoder->send(nullptr);
    }
}

// Makes m_slice what the decoder gives next of the current packet. False if
// that is nothing to be heard.
bool DecodedSource::takeFrame()
{
    const AVFrame* frame = m_decoder->receive();
    if (!frame) {
        m_isSent = false;
        return false;
    }
    const qint64 frames = frame->nb_samples;
    const AVFrame* heard = frame->sample_rate == static_cast<int>(m_format.sampleRate) ? frame : nullptr;
    if (!m_place) {
        m_slice = {m_counted, m_counted + frames, heard, 0};
        m_counted += frames;
        return frames > 0;
    }
    const qint64 first = std::max<qint64>(m_inPacket, m_place->skipStart);
    const qint64 end = std::min<qint64>(m_inPacket + frames, m_place->frames - m_place->skipEnd);
    const qint64 start = m_place->start + first - m_place->skipStart;
    const qint64 before = std::exchange(m_inPacket, m_inPacket + frames);
    if (first >= end)
        return false;
    m_slice = {start, start + end - first, heard, first - before};
    return true;
}

bool DecodedSource::sendNextPacket()
{
    m_file->requireWanted();
    const bool inStretches = m_traits.recovery == CodecTraits::Recovery::inStretches;
    if (inStretches && m_reader->nextPacket() > 0 && m_reader->nextPacket() % m_traits.stretch == 0)
        beginStretch();
    av_packet_unref(m_packet.get());
    const qint64 number = m_reader->nextPacket();
    if (!m_reader->next(m_packet.get(), m_place))
        return false;
    if (inStretches) {
        m_recent.push_back(ffmpeg::allocated<ffmpeg::Packet>(av_packet_clone(m_packet.get())));
        if (static_cast<int>(m_recent.size()) > m_traits.preroll)
            m_recent.pop_front();
    }
    m_inPacket = 0;
    if (number >= m_firstDecoded)
        m_isSent = m_decoder->send(m_packet.get());
    return true;
}

void DecodedSource::beginStretch()
{
    m_decoder = makeDecoder();
    for (const ffmpeg::Packet& packet : m_recent) {
        m_decoder->send(packet.get());
        while (m_decoder->receive())
            ;
    }
}

} // namespace tonequill
