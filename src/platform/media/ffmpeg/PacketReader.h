#pragma once

#include "platform/media/ffmpeg/Ffmpeg.h"
#include "platform/media/ffmpeg/PacketTable.h"

#include <optional>

namespace tonequill {

// The packets of one sound track, in their order.
class PacketReader {
public:
    virtual ~PacketReader() = default;

    // Reads the next packet and where its frames belong; no place if only its
    // decoder can tell. False at the end or where the file cannot be read.
    virtual bool next(AVPacket* packet, std::optional<PacketPlace>& place) = 0;

    // The number of the packet that next() reads.
    qint64 nextPacket() const { return m_next; }

    // All packets; null if they are not known.
    virtual const PacketTable* table() const = 0;

    // Reads as far as it takes to know them all, so that table() is there. Nothing
    // where no rule tells their lengths.
    // The next packet is the first one then.
    virtual void findAll() {}

    // The next packet is number `packet`. Throws AudioFileError (seek).
    // REQUIRES: packet == 0, or table() and packet <= its size.
    virtual void goTo(qint64 packet) = 0;

protected:
    qint64 m_next = 0;
};

} // namespace tonequill
