#pragma once

#include "platform/media/ffmpeg/CodecTraits.h"
#include "platform/media/ffmpeg/MediaInput.h"
#include "platform/media/ffmpeg/PacketReader.h"

namespace tonequill {

// Packets as libavformat's demuxer gives them. What it says about times is not
// relied on, since after a seek some demuxers guess: a packet's place is found by
// counting from the first one, and after a seek the packets are known again by
// their data.
class ContainerPackets final : public PacketReader {
public:
    // `firstFrames` is the number of frames that the first packet gave.
    // REQUIRES: input->firstAudio().
    ContainerPackets(std::unique_ptr<MediaInput> input, CodecTraits::Frames rule, int firstFrames);

    bool next(AVPacket* packet, std::optional<PacketPlace>& place) override;
    const PacketTable* table() const override { return m_table ? &*m_table : nullptr; }
    void goTo(qint64 packet) override;

    // Reads the whole file once.
    void findAll() override;

    // Where no rule tells the frames of a packet: how many there are by what the
    // demuxer says of each packet, which for a bare stream it reads in the packet.
    qint64 framesByDurations(int sampleRate);

private:
    bool nextOfTrack(AVPacket* packet);
    template <typename Take>
    void takeAll(const Take& take);
    std::optional<PacketPlace> place(const AVPacket& packet);
    void restart();
    bool jump(qint64 packet);
    void readUpTo(qint64 packet);

    std::shared_ptr<const RegularFile> m_file;
    std::unique_ptr<MediaInput> m_input;
    CodecTraits::Frames m_rule;
    int m_firstFrames;
    int m_track = 0;
    PacketFrames m_frames;
    qint64 m_start = 0;     // of the next packet, while there is no table
    qint64 m_skip = 0;      // frames still to be left out
    ffmpeg::Packet m_found; // read ahead by jump()
    std::optional<PacketTable> m_table;
};

} // namespace tonequill
