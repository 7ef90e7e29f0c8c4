#pragma once

#include "platform/media/ffmpeg/Ffmpeg.h"

#include <QtEndian>

#include <optional>

namespace tonequill {

// Frames that a container wants left out at the start and at the end of what a
// packet decodes to; those at the start may reach into the packets after it.
struct PacketTrim {
    qint64 start = 0;
    qint64 end = 0;
};

inline std::optional<PacketTrim> trimOf(const AVPacket& packet)
{
    constexpr std::size_t kBytes = 10; // two counts and two reasons
    std::size_t size = 0;
    const uint8_t* data = av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
    if (!data || size < kBytes)
        return std::nullopt;
    return PacketTrim{qFromLittleEndian<quint32>(data), qFromLittleEndian<quint32>(data + 4)};
}

} // namespace tonequill
