#pragma once

#include <QtGlobal>

#include <algorithm>
#include <vector>

namespace tonequill {

// Where the frames of one packet belong. A packet decodes to `frames` frames, of
// which the first `skipStart` and the last `skipEnd` are not part of the sound
// (the encoder's delay and padding); the others start at frame `start` of it.
struct PacketPlace {
    qint64 start = 0;
    qint32 frames = 0;
    qint32 skipStart = 0;
    qint32 skipEnd = 0;

    qint64 end() const { return start + frames - skipStart - skipEnd; }
};

// All packets of a sound track in their order.
struct PacketTable {
    struct Entry {
        PacketPlace place;
        qint32 bytes = 0;
        qint64 offset = -1; // in the file
        qint64 time = 0;    // the container's, in units of the track
        quint64 print = 0;  // of the data, to know the packet again; 0 if not needed
    };
    std::vector<Entry> entries;

    qint64 length() const { return entries.empty() ? 0 : entries.back().place.end(); }

    // The packet that holds `frame`, or the last one. REQUIRES: entries is not empty.
    qint64 packetAt(qint64 frame) const
    {
        const auto after = std::partition_point(entries.begin(), entries.end(),
                                                [frame](const Entry& entry) { return entry.place.end() <= frame; });
        return std::min<qint64>(after - entries.begin(), static_cast<qint64>(entries.size()) - 1);
    }

    // Ends the sound at `frame`, where it is longer.
    void endAt(qint64 frame)
    {
        for (Entry& entry : entries)
            if (entry.place.end() > frame) {
                const auto beyond = static_cast<qint32>(std::min<qint64>(
                    entry.place.end() - frame, entry.place.frames - entry.place.skipStart - entry.place.skipEnd));
                entry.place.skipEnd += beyond;
                entry.place.start = std::min(entry.place.start, frame);
            }
    }
};

} // namespace tonequill
