#pragma once

#include "platform/media/AudioFileSource.h"
#include "platform/media/ffmpeg/CodecTraits.h"
#include "platform/media/ffmpeg/Decoder.h"
#include "platform/media/ffmpeg/MediaInput.h"
#include "platform/media/ffmpeg/PacketReader.h"

#include <deque>
#include <memory>

namespace tonequill {

// A compressed sound track, decoded. Where a frame belongs is known from the
// packets alone (PacketPlace), so that decoding may start anywhere: what is
// damaged becomes silence and moves nothing behind it.
class DecodedSource final : public AudioFile::Source {
public:
    // Throws AudioFileError (unsupported). REQUIRES: input->firstAudio().
    explicit DecodedSource(std::unique_ptr<MediaInput> input);
    ~DecodedSource() override;

    void seek(qint64 frame) override;
    qint64 read(std::span<float* const> channels, qint64 frames) override;

private:
    // Consecutive frames of the sound: those of m_frame from `first` on.
    struct Slice {
        qint64 start = 0;
        qint64 end = 0;
        const AVFrame* frame = nullptr; // null for silence
        qint64 first = 0;
    };

    void learn(MediaInput& input);
    bool readToLearn(MediaInput& input, const AVStream& stream);
    void chooseReader(MediaInput& input);
    std::optional<PacketTable> quickTable(MediaInput& input) const;
    void readByDemuxer(const MediaInput& input);
    qint64 alacEnd();
    qint64 declaredLength(const MediaInput& input) const;
    std::unique_ptr<Decoder> makeDecoder(Decoder::Trimming trimming) const;
    std::unique_ptr<Decoder> makeDecoder() const;
    void findPackets();
    void decodeFrom(qint64 packet);
    bool advance();
    bool takeFrame();
    bool sendNextPacket();
    void beginStretch();

    std::shared_ptr<const RegularFile> m_file;
    ffmpeg::CodecParameters m_track;
    AVRational m_timeBase = {0, 1};
    CodecTraits m_traits;
    int m_firstFrames = 0;     // in the first packet
    qint64 m_firstSkip = 0;    // frames the container wants left out from it on
    qint64 m_firstOffset = -1; // of the first packet in the file
    bool m_isTold = false;     // m_length is the container's word
    std::unique_ptr<PacketReader> m_reader;
    std::unique_ptr<Decoder> m_decoder;
    ffmpeg::Packet m_packet;
    std::optional<PacketPlace> m_place; // of m_packet
    qint64 m_inPacket = 0;              // frames that m_packet has given
    bool m_isSent = false;              // there may be more of them
    bool m_isDrained = false;
    std::deque<ffmpeg::Packet> m_recent; // the packets before the next one, for a new stretch
    qint64 m_firstDecoded = 0;           // packets before it are only remembered
    qint64 m_counted = 0;                // frames given, where only the decoder can tell
    Slice m_slice;
    qint64 m_position = 0; // the frame that the next read starts with
};

} // namespace tonequill
