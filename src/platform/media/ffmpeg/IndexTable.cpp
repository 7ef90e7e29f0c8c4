#include "platform/media/ffmpeg/IndexTable.h"

#include <QtEndian>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace tonequill {

namespace {

// A box of an MPEG-4 file, or a chunk of a CAF file.
struct Box {
    std::array<char, 4> name = {};
    qint64 content = 0; // offset in the file
    qint64 bytes = 0;   // of the content
};

enum class Layout { mpeg4, caf };

// The box at `offset`; none if there is no whole one.
std::optional<Box> boxAt(const RegularFile& file, qint64 offset, Layout layout)
{
    std::array<uint8_t, 16> bytes = {};
    const qint64 got = file.read(bytes.data(), bytes.size(), offset);
    Box box;
    if (layout == Layout::caf) { // name, then the content's size
        constexpr int kHeaderBytes = 12;
        if (got < kHeaderBytes)
            return std::nullopt;
        std::memcpy(box.name.data(), bytes.data(), box.name.size());
        box.content = offset + kHeaderBytes;
        box.bytes = qFromBigEndian<qint64>(bytes.data() + 4);
    } else { // the whole box's size, then the name; 1 stands for a longer size
        constexpr int kHeaderBytes = 8;
        if (got < kHeaderBytes)
            return std::nullopt;
        std::memcpy(box.name.data(), bytes.data() + 4, box.name.size());
        const qint64 size = qFromBigEndian<quint32>(bytes.data());
        const bool isLong = size == 1;
        box.content = offset + (isLong ? 16 : kHeaderBytes);
        box.bytes = (isLong ? qFromBigEndian<qint64>(bytes.data() + 8) : size) - (isLong ? 16 : kHeaderBytes);
    }
    if (box.bytes < 0 || box.content > file.size() || box.bytes > file.size() - box.content)
        return std::nullopt;
    return box;
}

// The first box of that name at the top level.
std::optional<Box> findBox(const RegularFile& file, std::string_view name, Layout layout)
{
    constexpr int kMaxBoxes = 1000;
    constexpr qint64 kCafHeaderBytes = 8;
    qint64 offset = layout == Layout::caf ? kCafHeaderBytes : 0;
    for (int i = 0; i < kMaxBoxes; ++i) {
        const std::optional<Box> box = boxAt(file, offset, layout);
        if (!box || std::string_view(box->name.data(), box->name.size()) == name)
            return box;
        offset = box->content + box->bytes;
    }
    return std::nullopt;
}

// "iTunSMPB": the number of frames without priming and padding, as the fourth of
// its hexadecimal numbers.
qint64 framesByComment(const AVFormatContext& context)
{
    const AVDictionaryEntry* entry = av_dict_get(context.metadata, "iTunSMPB", nullptr, 0);
    if (!entry)
        return 0;
    const char* text = entry->value;
    unsigned long long number = 0;
    for (int i = 0; i < 4; ++i) {
        char* end = nullptr;
        number = std::strtoull(text, &end, 16);
        if (end == text)
            return 0;
        text = end;
    }
    return number <= static_cast<unsigned long long>(std::numeric_limits<qint64>::max()) ? static_cast<qint64>(number) : 0;
}

struct Packet {
    qint64 offset = 0;
    qint64 bytes = 0;
    qint64 time = 0;
    bool isLeftOut = false;
};

struct Track {
    std::vector<Packet> packets;
    qint64 skipStart = 0; // frames
    qint64 skipEnd = 0;
};

// As libavformat lists an MPEG-4 track.
std::vector<Packet> listedPackets(AVStream* stream)
{
    const int count = avformat_index_get_entries_count(stream);
    std::vector<Packet> packets;
    packets.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int i = 0; i < count; ++i) {
        const AVIndexEntry* entry = avformat_index_get_entry(stream, i);
        packets.push_back({entry->pos, entry->size, entry->timestamp, (entry->flags & AVINDEX_DISCARD_FRAME) != 0});
    }
    return packets;
}

// Of a CAF file libavformat lists where packets begin, counted from the data. The
// packet table begins with the numbers of packets and of frames, each in 8 bytes,
// then those of priming and remainder frames in 4.
Track cafTrack(const RegularFile& file, AVStream* stream)
{
    constexpr int kEditCountBytes = 4;
    std::array<uint8_t, 24> bytes = {};
    const std::optional<Box> data = findBox(file, "data", Layout::caf);
    const std::optional<Box> table = findBox(file, "pakt", Layout::caf);
    if (!data || !table || file.read(bytes.data(), bytes.size(), table->content) < static_cast<qint64>(bytes.size()))
        return {};
    Track track = {listedPackets(stream), std::max(0, qFromBigEndian<qint32>(bytes.data() + 16)),
                   std::max(0, qFromBigEndian<qint32>(bytes.data() + 20))};
    qint64 end = data->content + data->bytes;
    for (auto packet = track.packets.rbegin(); packet != track.packets.rend(); ++packet) {
        packet->offset += data->content + kEditCountBytes;
        packet->bytes = end - packet->offset;
        end = packet->offset;
    }
    return track;
}

} // namespace

std::optional<PacketTable> indexTable(const MediaInput& input, const AVStream& stream, PacketFormat format)
{
    const std::string_view container = input.context()->iformat->name;
    const bool isCaf = container == "caf";
    if (!isCaf && (!container.starts_with("mov") || findBox(input.file(), "moof", Layout::mpeg4)))
        return std::nullopt;

    AVStream* indexed = input.context()->streams[stream.index];
    const Track track = isCaf ? cafTrack(input.file(), indexed) : Track{listedPackets(indexed), format.skip, 0};
    const int frames = format.frames;
    PacketTable table;
    table.entries.reserve(track.packets.size());
    qint64 skip = track.skipStart;
    qint64 start = 0;
    for (const Packet& packet : track.packets) {
        constexpr qint64 kMaxPacketBytes = 16 * 1024 * 1024; // a mistake beyond
        if (packet.offset < 0 || packet.bytes <= 0 || packet.bytes > kMaxPacketBytes ||
            packet.offset > input.file().size() - packet.bytes)
            return table.entries.empty() ? std::nullopt : std::optional(table); // the rest of the file is missing
        PacketPlace place = {start, frames, static_cast<qint32>(std::min<qint64>(skip, frames)), 0};
        skip -= place.skipStart;
        if (packet.isLeftOut)
            place.skipStart = frames;
        start = place.end();
        table.entries.push_back({place, static_cast<qint32>(packet.bytes), packet.offset, packet.time});
    }
    if (table.entries.empty())
        return std::nullopt;

    const auto endAt = [&](qint64 end) {
        constexpr int kMaxPaddingPackets = 4; // more than that is no padding but a mistake
        const qint64 padded = table.length() - end;
        if (end > 0 && padded >= 0 && padded <= qint64(kMaxPaddingPackets) * frames)
            table.endAt(end);
    };
    if (isCaf)
        endAt(table.length() - track.skipEnd);
    else if (stream.duration != AV_NOPTS_VALUE)
        endAt(av_rescale_q(stream.duration, stream.time_base, {1, format.sampleRate}));
    endAt(framesByComment(*input.context()));
    return table;
}

} // namespace tonequill
