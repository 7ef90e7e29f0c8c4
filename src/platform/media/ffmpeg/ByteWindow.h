#pragma once

#include "platform/media/RegularFile.h"

#include <QtGlobal>

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace tonequill {

// The bytes of a file, read front to back a block at a time. Its memory is a
// block and what keepFrom() holds. A file that isn't wanted any more throws Cancelled.
class ByteWindow {
public:
    // REQUIRES: `file` outlives the window.
    explicit ByteWindow(const RegularFile& file) : m_file(&file) {}

    qint64 fileBytes() const { return m_file->size(); }

    // The bytes at `offset`; fewer than asked for only at the end of the file.
    // Valid until the next call.
    std::span<const uint8_t> at(qint64 offset, qint64 bytes)
    {
        const qint64 known = m_offset + static_cast<qint64>(m_block.size());
        if (offset < m_offset || offset + bytes > known)
            load(offset, bytes);
        const auto rest = std::span<const uint8_t>(m_block).subspan(static_cast<std::size_t>(offset - m_offset));
        return rest.first(std::min(rest.size(), static_cast<std::size_t>(bytes)));
    }

    // What the window has from `offset` on, at most up to `end`: the quick way to
    // look at all bytes. Empty only at the end of the file.
    // REQUIRES: offset < end.
    std::span<const uint8_t> upTo(qint64 offset, qint64 end)
    {
        at(offset, 1);
        const qint64 known = m_offset + static_cast<qint64>(m_block.size());
        return at(offset, std::clamp<qint64>(known - offset, 0, end - offset));
    }

    // The first `byte` from `offset` on, before `end`.
    std::optional<qint64> find(uint8_t byte, qint64 offset, qint64 end)
    {
        while (offset < end) {
            const auto bytes = upTo(offset, end);
            if (bytes.empty())
                return std::nullopt;
            if (const void* found = std::memchr(bytes.data(), byte, bytes.size()))
                return offset + (static_cast<const uint8_t*>(found) - bytes.data());
            offset += static_cast<qint64>(bytes.size());
        }
        return std::nullopt;
    }

    // Going back as far as `offset` shall cost no second read.
    void keepFrom(qint64 offset) { m_kept = offset; }

private:
    void load(qint64 offset, qint64 bytes)
    {
        constexpr qint64 kBlockBytes = 256 * 1024;
        constexpr qint64 kMostKept = 4 * 1024 * 1024;
        m_file->requireWanted();
        const qint64 start = m_kept <= offset && offset - m_kept <= kMostKept ? m_kept : offset;
        m_block.resize(static_cast<std::size_t>(offset - start + std::max(bytes, kBlockBytes)));
        const qint64 got = m_file->read(m_block.data(), static_cast<qint64>(m_block.size()), start);
        m_offset = start;
        m_block.resize(static_cast<std::size_t>(std::max(got, offset - start)));
    }

    const RegularFile* m_file;
    qint64 m_offset = 0;
    qint64 m_kept = std::numeric_limits<qint64>::max();
    std::vector<uint8_t> m_block;
};

} // namespace tonequill
