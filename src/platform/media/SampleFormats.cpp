#include "platform/media/SampleFormats.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

// This file is compiled with -O3: its loops are written to be vectorised, with
// the stride a constant where it is 1 or 2 (see bench/Analysis.cpp).

namespace tonequill {

namespace {

static_assert(std::endian::native == std::endian::little, "the conversions read little-endian words");

template <typename T>
T load(const std::byte* from)
{
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

inline float finite(float value)
{
    return std::abs(value) <= std::numeric_limits<float>::max() ? value : 0.0F;
}

struct U8 {
    static constexpr int kBytes = 1;
    static float read(const std::byte* p) { return static_cast<float>(int(load<std::uint8_t>(p)) - 128) * 0x1p-7F; }
};
struct S8 {
    static constexpr int kBytes = 1;
    static float read(const std::byte* p) { return static_cast<float>(load<std::int8_t>(p)) * 0x1p-7F; }
};
struct S16le {
    static constexpr int kBytes = 2;
    static float read(const std::byte* p) { return static_cast<float>(load<std::int16_t>(p)) * 0x1p-15F; }
};
struct S16be {
    static constexpr int kBytes = 2;
    static float read(const std::byte* p)
    {
        const auto word = load<std::uint16_t>(p);
        const auto swapped = static_cast<std::uint16_t>((word >> 8) | (word << 8));
        return static_cast<float>(static_cast<std::int16_t>(swapped)) * 0x1p-15F;
    }
};
struct S24le {
    static constexpr int kBytes = 3;
    static float read(const std::byte* p)
    {
        const std::uint32_t word = (std::uint32_t(p[0]) << 8) | (std::uint32_t(p[1]) << 16) | (std::uint32_t(p[2]) << 24);
        return static_cast<float>(static_cast<std::int32_t>(word)) * 0x1p-31F; // exact: 24 significant bits
    }
};
struct S24be {
    static constexpr int kBytes = 3;
    static float read(const std::byte* p)
    {
        const std::uint32_t word = (std::uint32_t(p[2]) << 8) | (std::uint32_t(p[1]) << 16) | (std::uint32_t(p[0]) << 24);
        return static_cast<float>(static_cast<std::int32_t>(word)) * 0x1p-31F;
    }
};
struct S32le {
    static constexpr int kBytes = 4;
    static float read(const std::byte* p) { return static_cast<float>(load<std::int32_t>(p)) * 0x1p-31F; }
};
struct S32be {
    static constexpr int kBytes = 4;
    static float read(const std::byte* p)
    {
        return static_cast<float>(static_cast<std::int32_t>(__builtin_bswap32(load<std::uint32_t>(p)))) * 0x1p-31F;
    }
};
struct F32le {
    static constexpr int kBytes = 4;
    static float read(const std::byte* p) { return finite(load<float>(p)); }
};
struct F32be {
    static constexpr int kBytes = 4;
    static float read(const std::byte* p) { return finite(std::bit_cast<float>(__builtin_bswap32(load<std::uint32_t>(p)))); }
};
struct F64le {
    static constexpr int kBytes = 8;
    static float read(const std::byte* p) { return finite(static_cast<float>(load<double>(p))); }
};
struct F64be {
    static constexpr int kBytes = 8;
    static float read(const std::byte* p)
    {
        return finite(static_cast<float>(std::bit_cast<double>(__builtin_bswap64(load<std::uint64_t>(p)))));
    }
};

// The two logarithmic codes of ITU-T G.711, as its tables 1 and 2 decode them.
constexpr float fromMulaw(unsigned code)
{
    code = ~code & 0xFF;
    const int magnitude = ((static_cast<int>(code & 0x0F) << 3) + 0x84) << ((code & 0x70) >> 4);
    const int value = magnitude - 0x84;
    return static_cast<float>((code & 0x80) != 0 ? -value : value) * 0x1p-15F;
}

constexpr float fromAlaw(unsigned code)
{
    code ^= 0x55;
    const int segment = static_cast<int>((code & 0x70) >> 4);
    int value = (static_cast<int>(code & 0x0F) << 4) + 8;
    if (segment > 0)
        value = (value + 0x100) << (segment - 1);
    return static_cast<float>((code & 0x80) != 0 ? value : -value) * 0x1p-15F;
}

template <float (*Decode)(unsigned)>
constexpr std::array<float, 256> makeTable()
{
    std::array<float, 256> table = {};
    for (unsigned code = 0; code < table.size(); ++code)
        table[code] = Decode(code);
    return table;
}

struct Alaw {
    static constexpr int kBytes = 1;
    static constexpr std::array<float, 256> kTable = makeTable<fromAlaw>();
    static float read(const std::byte* p) { return kTable[std::to_integer<std::size_t>(*p)]; }
};
struct Mulaw {
    static constexpr int kBytes = 1;
    static constexpr std::array<float, 256> kTable = makeTable<fromMulaw>();
    static float read(const std::byte* p) { return kTable[std::to_integer<std::size_t>(*p)]; }
};

template <typename Format, int Stride>
void convertStrided(const std::byte* from, float* __restrict into, qint64 frames)
{
    for (qint64 i = 0; i < frames; ++i)
        into[i] = Format::read(from + i * (Format::kBytes * Stride));
}

template <typename Format>
void convert(const std::byte* from, int stride, float* __restrict into, qint64 frames)
{
    if (stride == 1)
        return convertStrided<Format, 1>(from, into, frames);
    if (stride == 2)
        return convertStrided<Format, 2>(from, into, frames);
    const qint64 step = qint64(Format::kBytes) * stride;
    for (qint64 i = 0; i < frames; ++i)
        into[i] = Format::read(from + i * step);
}

// Calls visit.template operator()<Format>() for the type that reads `format`.
template <typename Visit>
auto visitFormat(SampleFormat format, Visit visit)
{
    switch (format) {
    case SampleFormat::u8:
        return visit.template operator()<U8>();
    case SampleFormat::s8:
        return visit.template operator()<S8>();
    case SampleFormat::s16le:
        return visit.template operator()<S16le>();
    case SampleFormat::s16be:
        return visit.template operator()<S16be>();
    case SampleFormat::s24le:
        return visit.template operator()<S24le>();
    case SampleFormat::s24be:
        return visit.template operator()<S24be>();
    case SampleFormat::s32le:
        return visit.template operator()<S32le>();
    case SampleFormat::s32be:
        return visit.template operator()<S32be>();
    case SampleFormat::f32le:
        return visit.template operator()<F32le>();
    case SampleFormat::f32be:
        return visit.template operator()<F32be>();
    case SampleFormat::f64le:
        return visit.template operator()<F64le>();
    case SampleFormat::f64be:
        return visit.template operator()<F64be>();
    case SampleFormat::alaw:
        return visit.template operator()<Alaw>();
    case SampleFormat::mulaw:
        return visit.template operator()<Mulaw>();
    }
    Q_UNREACHABLE();
}

} // namespace

int bytesOf(SampleFormat format)
{
    return visitFormat(format, []<typename Format>() { return Format::kBytes; });
}

void toFloat(SampleFormat format, const std::byte* from, int stride, float* into, qint64 frames)
{
    visitFormat(format, [&]<typename Format>() { convert<Format>(from, stride, into, frames); });
}

} // namespace tonequill
