#include "discovery/catalogue/Inflater.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace tonequill {

namespace {

// No byte of a stream gives more: 258 bytes for two bits.
constexpr std::size_t kMostRatio = 1032;
// Of 12 levels. Those above 9 take several times as long for a percent.
constexpr int kQuick = 1;
constexpr int kThorough = 9;

struct Free {
    void operator()(libdeflate_decompressor* one) const { libdeflate_free_decompressor(one); }
    void operator()(libdeflate_compressor* one) const { libdeflate_free_compressor(one); }
};

Inflater::Outcome outcomeOf(libdeflate_result result, bool isLimited)
{
    switch (result) {
    case LIBDEFLATE_SUCCESS:
        return Inflater::Outcome::done;
    case LIBDEFLATE_INSUFFICIENT_SPACE:
        return isLimited ? Inflater::Outcome::tooLarge : Inflater::Outcome::notDeflate;
    case LIBDEFLATE_BAD_DATA:
    case LIBDEFLATE_SHORT_OUTPUT:
        return Inflater::Outcome::notDeflate;
    }
    return Inflater::Outcome::notDeflate;
}

} // namespace

Inflater::Outcome Inflater::inflate(std::span<const char> bytes, std::size_t limit, InflatedText& text)
{
    // Nothing says how much is in the stream. The pages of a large block are taken
    // when they are first written, so one block of the largest size costs no more than
    // what comes out, and no second try.
    const bool isLimited = bytes.size() > limit / kMostRatio;
    const std::size_t room = isLimited ? limit : bytes.size() * kMostRatio;
    const std::unique_ptr<libdeflate_decompressor, Free> decompressor(libdeflate_alloc_decompressor());
    InflatedText inflated;
    inflated.m_bytes.reset(static_cast<char*>(std::malloc(room + InflatedText::kPadding)));
    if (!decompressor || !inflated.m_bytes)
        return Outcome::noMemory;
    std::size_t taken = 0;
    const Outcome outcome = outcomeOf(libdeflate_deflate_decompress_ex(decompressor.get(), bytes.data(), bytes.size(),
                                                                       inflated.m_bytes.get(), room, &taken, &inflated.m_size),
                                      isLimited);
    if (outcome != Outcome::done)
        return outcome;
    if (taken != bytes.size())
        return Outcome::goesOn;
    std::memset(inflated.m_bytes.get() + inflated.m_size, 0, InflatedText::kPadding);
    text = std::move(inflated);
    return Outcome::done;
}

std::string Inflater::deflate(std::string_view text, Effort effort)
{
    const int level = effort == Effort::quick ? kQuick : kThorough;
    const std::unique_ptr<libdeflate_compressor, Free> compressor(libdeflate_alloc_compressor(level));
    if (!compressor)
        return {};
    std::string stream(libdeflate_deflate_compress_bound(compressor.get(), text.size()), '\0');
    stream.resize(libdeflate_deflate_compress(compressor.get(), text.data(), text.size(), stream.data(), stream.size()));
    return stream;
}

} // namespace tonequill
