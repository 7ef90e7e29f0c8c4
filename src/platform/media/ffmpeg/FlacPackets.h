#pragma once

#include "platform/media/ffmpeg/DirectPackets.h"
#include "platform/media/ffmpeg/FlacFrames.h"
#include "platform/media/ffmpeg/PacketReader.h"

namespace tonequill {

// The frames of a FLAC file, found on the way.
class FlacPackets final : public PacketReader {
public:
    // REQUIRES: the frames begin at `offset` or later.
    FlacPackets(std::shared_ptr<const RegularFile> file, FlacStream stream, qint64 offset);

    bool next(AVPacket* packet, std::optional<PacketPlace>& place) override;
    const PacketTable* table() const override { return m_direct ? m_direct->table() : nullptr; }
    void goTo(qint64 packet) override;
    void findAll() override;

    // The end of the sound, if it can be known without findAll().
    std::optional<qint64> toldEnd() const { return FlacFrames(*m_file, m_stream, m_offset).toldEnd(); }

private:
    std::shared_ptr<const RegularFile> m_file;
    FlacStream m_stream;
    qint64 m_offset;
    FlacFrames m_frames;
    std::optional<DirectPackets> m_direct; // once all are found
};

} // namespace tonequill
