#include "platform/media/ffmpeg/CodecTraits.h"

#include "platform/media/ffmpeg/FlacFrames.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <span>

extern "C" {
#include <libavcodec/vorbis_parser.h>
}

namespace tonequill {

namespace {

constexpr int kAacFrames = 1024; // twice as many come from a decoder that found spectral band replication

bool isPlain(AVCodecID codec)
{
    return av_get_exact_bits_per_sample(codec) > 0 && codec >= AV_CODEC_ID_FIRST_AUDIO && codec < AV_CODEC_ID_ADPCM_IMA_QT;
}

// Frames of an Opus packet at 48 kHz (RFC 6716, section 3.1).
int opusFrames(std::span<const uint8_t> packet)
{
    if (packet.empty())
        return 0;
    const int configuration = packet[0] >> 3;
    constexpr std::array<int, 4> kSilk = {480, 960, 1920, 2880};
    constexpr std::array<int, 2> kHybrid = {480, 960};
    constexpr std::array<int, 4> kCelt = {120, 240, 480, 960};
    int frames = 0;
    if (configuration < 12)
        frames = kSilk[static_cast<std::size_t>(configuration % 4)];
    else if (configuration < 16)
        frames = kHybrid[static_cast<std::size_t>(configuration % 2)];
    else
        frames = kCelt[static_cast<std::size_t>(configuration % 4)];
    switch (packet[0] & 3) {
    case 0:
        return frames;
    case 3:
        return packet.size() > 1 ? frames * (packet[1] & 0x3F) : 0;
    default:
        return 2 * frames;
    }
}

} // namespace

CodecTraits codecTraits(AVCodecID codec, int profile, const AVFrame& firstFrame)
{
    using Recovery = CodecTraits::Recovery;
    using Frames = CodecTraits::Frames;
    if (isPlain(codec))
        return {Recovery::exact, 0, 0, Frames::plain};
    switch (codec) {
    case AV_CODEC_ID_MP3:
        // A frame may take its data from 511 bytes before it, which at the lowest
        // bit rate (24 bytes a frame, 13 of them header) is 47 frames; then the
        // overlap and the filter bank need two more.
        return {Recovery::exact, 50, 0, Frames::constant};
    case AV_CODEC_ID_MP1:
    case AV_CODEC_ID_MP2:
        return {Recovery::exact, 2, 0, Frames::constant};
    case AV_CODEC_ID_AAC:
        // The noise of perceptual noise substitution comes from a generator that
        // is never reset. Of the other profiles' state nothing can be said.
        if (profile == FF_PROFILE_AAC_LOW && firstFrame.nb_samples <= kAacFrames)
            return {Recovery::inStretches, 3, 2048, Frames::constant};
        return {Recovery::fromStart, 0, 0, Frames::constant};
    case AV_CODEC_ID_AC3:
        return {Recovery::inStretches, 3, 1024, Frames::constant}; // dithered
    case AV_CODEC_ID_ALAC:
        return {Recovery::exact, 0, 0, Frames::constant};
    case AV_CODEC_ID_FLAC:
        return {Recovery::exact, 0, 0, Frames::flac};
    case AV_CODEC_ID_VORBIS:
        return {Recovery::exact, 2, 0, Frames::vorbis};
    case AV_CODEC_ID_OPUS:
        // RFC 7845, section 4.6, asks for 80 ms; recursive filters and the
        // prediction of energies take longer to forget. Packets have 2.5…120 ms.
        return {Recovery::inStretches, 48, 1024, Frames::opus};
    default:
        return {};
    }
}

void PacketFrames::VorbisDeleter::operator()(AVVorbisParseContext* context) const
{
    av_vorbis_parse_free(&context);
}

PacketFrames::PacketFrames(CodecTraits::Frames rule, const AVCodecParameters& track, int firstFrames)
    : m_rule(rule),
      m_constant(firstFrames)
{
    if (rule == CodecTraits::Frames::vorbis)
        m_vorbis.reset(av_vorbis_parse_init(track.extradata, track.extradata_size));
    if (rule == CodecTraits::Frames::plain)
        m_packetUnit = track.ch_layout.nb_channels * av_get_exact_bits_per_sample(track.codec_id) / 8;
    constexpr int kOpusHeaderBytes = 19; // RFC 7845, section 5.1
    if (rule == CodecTraits::Frames::opus && track.extradata_size >= kOpusHeaderBytes)
        m_headerSkip = qFromLittleEndian<quint16>(track.extradata + 10);
}

PacketFrames::~PacketFrames() = default;
PacketFrames::PacketFrames(PacketFrames&&) noexcept = default;
PacketFrames& PacketFrames::operator=(PacketFrames&&) noexcept = default;

int PacketFrames::count(const AVPacket& packet)
{
    const std::span<const uint8_t> bytes(packet.data, static_cast<std::size_t>(std::max(packet.size, 0)));
    const bool isFirst = std::exchange(m_isFirst, false);
    switch (m_rule) {
    case CodecTraits::Frames::constant:
        return m_constant;
    case CodecTraits::Frames::plain:
        return m_packetUnit > 0 ? packet.size / m_packetUnit : 0;
    case CodecTraits::Frames::opus:
        return opusFrames(bytes);
    case CodecTraits::Frames::flac: {
        const auto header = flacHeader(bytes);
        return header ? header->frames : 0;
    }
    case CodecTraits::Frames::vorbis: {
        const int frames = m_vorbis ? av_vorbis_parse_frame(m_vorbis.get(), packet.data, packet.size) : 0;
        return isFirst ? 0 : std::max(frames, 0); // the first block has nothing to overlap with
    }
    case CodecTraits::Frames::unknown:
        break;
    }
    Q_UNREACHABLE();
}

} // namespace tonequill
