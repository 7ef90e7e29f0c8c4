#include "platform/media/ffmpeg/FrameTable.h"

namespace tonequill {

namespace {

constexpr qint64 kHeaderBytes = 8; // the longest that is read here
constexpr uint8_t kSync = 0xFF;    // all of them begin with it

// Only a guess, since what follows the frames may be anything.
constexpr qint64 kMaxReserved = 100'000;

class Hop {
public:
    Hop(ByteWindow& window, ReadHeader readHeader) : m_window(window), m_readHeader(readHeader) {}

    // The frame at `offset`, if all of it is there.
    std::optional<FrameHeader> frameAt(qint64 offset)
    {
        if (offset >= m_window.fileBytes())
            return std::nullopt;
        const auto header = m_readHeader(m_window.at(offset, kHeaderBytes));
        return header && offset + header->bytes <= m_window.fileBytes() ? header : std::nullopt;
    }

    // Whether a frame like it follows, or nothing at all.
    bool isFollowed(qint64 offset, const FrameHeader& frame)
    {
        const qint64 end = offset + frame.bytes;
        const auto next = frameAt(end);
        return end == m_window.fileBytes() || (next && next->fixed == frame.fixed);
    }

    // Where the frames of this kind go on behind `offset`.
    std::optional<qint64> findNext(qint64 offset, quint32 fixed)
    {
        while (const auto sync = m_window.find(kSync, offset, m_window.fileBytes())) {
            const auto frame = frameAt(*sync);
            if (frame && frame->fixed == fixed && isFollowed(*sync, *frame))
                return sync;
            offset = *sync + 1;
        }
        return std::nullopt;
    }

private:
    ByteWindow& m_window;
    ReadHeader m_readHeader;
};

} // namespace

std::optional<PacketTable> frameTable(ByteWindow& window, qint64 firstFrame, ReadHeader readHeader)
{
    Hop hop(window, readHeader);
    const auto first = hop.frameAt(firstFrame);
    if (!first)
        return std::nullopt;
    PacketTable table;
    table.entries.reserve(static_cast<std::size_t>(std::min((window.fileBytes() - firstFrame) / first->bytes + 1, kMaxReserved)));
    qint64 offset = firstFrame;
    qint64 start = 0;
    while (true) {
        const auto frame = hop.frameAt(offset);
        if (frame && frame->fixed == first->fixed) {
            table.entries.push_back({{start, frame->frames, 0, 0}, frame->bytes, offset, 0});
            start += frame->frames;
            offset += frame->bytes;
        } else if (frame && hop.isFollowed(offset, *frame)) {
            return std::nullopt;
        } else if (const auto next = hop.findNext(offset + 1, first->fixed)) {
            offset = *next;
        } else {
            return table;
        }
    }
}

} // namespace tonequill
