#include "platform/playback/PlaybackStream.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tonequill {

namespace {

// Short enough that a seek never waits long for a block that is being read.
constexpr double kBlockSeconds = 0.05;

// What the converter hears before the chosen frame, so that its filter (under
// 10 ms on either side at the lowest rate) has swung in.
constexpr double kLeadInSeconds = 0.1;

} // namespace

PlaybackStream::PlaybackStream(const QString& path)
    : m_file(path),
      m_length(m_file.length()),
      m_block(m_file.format(), static_cast<qint64>(std::ceil(m_file.sampleRate() * kBlockSeconds)))
{
    seek(0);
}

void PlaybackStream::seek(qint64 frame)
{
    m_converter.emplace(m_file.format(), kFormat);
    m_repeats = 0;
    m_hasEnded = false;
    qint64 lead = 0;
    if (m_file.sampleRate() != kFormat.sampleRate) {
        // Only a multiple of `step` frames is a whole number of converted ones.
        const auto from = static_cast<qint64>(std::lround(m_file.sampleRate()));
        const auto to = static_cast<qint64>(kFormat.sampleRate);
        const qint64 step = from / std::gcd(from, to);
        lead = step * static_cast<qint64>(std::ceil(m_file.sampleRate() * kLeadInSeconds / static_cast<double>(step)));
        m_skip = lead * to / from;
    } else {
        m_skip = 0;
    }
    m_leadIn = std::max<qint64>(lead - frame, 0);
    m_file.seek(std::max<qint64>(frame - lead, 0));
}

PlaybackStream::Block PlaybackStream::skipped(const AudioBuffer& converted)
{
    const qint64 drop = std::min(m_skip, converted.frameLength());
    m_skip -= drop;
    return Block{converted.channel(0), converted.channel(1)}.from(static_cast<std::size_t>(drop));
}

PlaybackStream::Block PlaybackStream::read(AtEnd atEnd)
{
    if (m_hasEnded && atEnd == AtEnd::stop)
        return {};
    if (m_hasEnded) {
        const int repeats = m_repeats;
        seek(0);
        m_repeats = repeats + 1;
    }
    for (;;) {
        if (m_leadIn > 0) {
            m_block.setFrameLength(std::min(m_leadIn, m_block.capacityFrames()));
            for (int channel = 0; channel < m_block.channelCount(); ++channel)
                std::ranges::fill(m_block.channel(channel), 0.0F);
            m_leadIn -= m_block.frameLength();
        } else if (m_file.read(m_block) == 0) {
            m_length = std::min(m_length, m_file.framePosition());
            // A file without a single frame cannot be repeated.
            if (atEnd == AtEnd::stop || m_length == 0) {
                m_hasEnded = true;
                return skipped(m_converter->finish());
            }
            m_file.seek(0);
            ++m_repeats;
            continue;
        }
        if (const Block block = skipped(m_converter->convert(m_block)); !block.isEmpty())
            return block;
    }
}

} // namespace tonequill
