#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace tonequill {

// A text that came out of a raw DEFLATE stream (RFC 1951), with room behind it for
// readers that look further than the end.
class InflatedText {
public:
    // Bytes that may be read behind the end; they are 0. As much as simdjson wants.
    static constexpr std::size_t kPadding = 64;

    std::string_view text() const { return {m_bytes.get(), m_size}; }

private:
    friend struct Inflater;
    struct Free {
        void operator()(char* bytes) const { std::free(bytes); }
    };
    std::unique_ptr<char, Free> m_bytes;
    std::size_t m_size = 0;
};

// Pure; any thread.
struct Inflater {
    enum class Outcome : std::uint8_t {
        done,
        notDeflate, // no such stream, or one that was cut off
        tooLarge,   // there is more in it than was allowed
        goesOn,     // bytes follow after its end
        noMemory,
    };

    // The whole of `bytes` is one stream. Memory is taken as it fills: never more
    // than `limit`, nor than so many bytes can hold.
    static Outcome inflate(std::span<const char> bytes, std::size_t limit, InflatedText& text);

    // The stream of a text; the same every time. Empty without memory.
    enum class Effort : std::uint8_t { quick, thorough };
    static std::string deflate(std::string_view text, Effort effort = Effort::thorough);
};

} // namespace tonequill
