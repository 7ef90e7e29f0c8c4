#include "platform/playback/PlaybackVoice.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tonequill {

namespace {

constexpr std::size_t kAheadFrames = 48'000; // one second, 384 kB
constexpr std::size_t kReadyFrames = 2'048;  // what a few slow blocks of the decoder use up

constexpr std::size_t kPowerFrames = 256;    // the grain of the meter: 5 ms
constexpr double kPowerWindowFrames = 4'800; // a tenth of a second

} // namespace

PlaybackVoice::PlaybackVoice(PlaybackStream stream)
    : m_ratio(stream.ratio()),
      m_stream(std::move(stream)),
      m_length(m_stream.length())
{}

void PlaybackVoice::play(double heard)
{
    std::unique_lock lock(m_mutex);
    if (isHeardPlaying(heard))
        return;
    if (m_ring.empty()) {
        lock.unlock();
        std::vector<StereoFrame> memory(kAheadFrames);
        lock.lock();
        m_ring.swap(memory);
    }
    if (m_hasEnded)
        startRun(0);
    m_gain = m_volume;
    m_isPlaying = true;
}

void PlaybackVoice::pause()
{
    const std::lock_guard lock(m_mutex);
    m_isPlaying = false;
    m_wake.notify_all();
}

void PlaybackVoice::stop()
{
    std::vector<StereoFrame> memory;
    const std::lock_guard lock(m_mutex);
    m_isPlaying = false;
    m_wake.notify_all();
    if (m_ring.empty())
        return;
    if (!m_hasEnded)
        startRun(static_cast<qint64>(std::lround(frameInFile(static_cast<double>(m_taken)))));
    m_ring.swap(memory);
}

void PlaybackVoice::seek(qint64 frame, double heard)
{
    const std::lock_guard lock(m_mutex);
    m_isPlaying = isHeardPlaying(heard);
    startRun(std::clamp<qint64>(frame, 0, m_length));
    m_wake.notify_all();
}

void PlaybackVoice::setLoops(int count)
{
    const std::lock_guard lock(m_mutex);
    m_loops = count;
    m_wake.notify_all();
}

void PlaybackVoice::setVolume(float volume)
{
    const std::lock_guard lock(m_mutex);
    m_volume = volume;
}

bool PlaybackVoice::isPlaying(double heard) const
{
    const std::lock_guard lock(m_mutex);
    return isHeardPlaying(heard);
}

double PlaybackVoice::position(double heard) const
{
    const std::lock_guard lock(m_mutex);
    const double frames = told(heard);
    if (m_hasEnded && frames >= static_cast<double>(m_taken))
        return static_cast<double>(m_length);
    return frameInFile(frames);
}

std::array<double, 2> PlaybackVoice::meanSquares(double heard) const
{
    const std::lock_guard lock(m_mutex);
    Power sum;
    for (const Power& power : m_powers) {
        const auto end = static_cast<double>(power.end);
        if (end > heard || end <= heard - kPowerWindowFrames)
            continue;
        sum.frames += power.frames;
        sum.left += power.left;
        sum.right += power.right;
    }
    const double frames = std::max(sum.frames, 1);
    return {sum.left / frames, sum.right / frames};
}

bool PlaybackVoice::isActive() const
{
    const std::lock_guard lock(m_mutex);
    return m_isPlaying && !m_hasEnded;
}

// --- Under the lock ------------------------------------------------------------

bool PlaybackVoice::isHeardPlaying(double heard) const
{
    return m_isPlaying && !(m_hasEnded && heard >= static_cast<double>(m_takenAt));
}

// The frames of the run that have been heard.
double PlaybackVoice::told(double heard) const
{
    const double unheard = std::max(static_cast<double>(m_takenAt) - heard, 0.0);
    m_told = std::max(m_told, static_cast<double>(m_taken) - unheard);
    return m_told;
}

// Where in the file the run is after that many frames.
double PlaybackVoice::frameInFile(double streamFrames) const
{
    const double frame = static_cast<double>(m_start) + streamFrames / m_ratio;
    const auto length = static_cast<double>(m_length);
    if (frame < length || m_length == 0)
        return std::min(frame, length);
    // A file that isn't repeated stays at its end.
    const double repeats = std::min(std::floor(frame / length), static_cast<double>(m_repeats));
    return std::clamp(frame - repeats * length, 0.0, length);
}

// The frames that the device may still take, as it now is with the loops: what
// was read ahead for a repeat isn't played once that is no longer wanted.
double PlaybackVoice::framesLeft() const
{
    if (m_loops < 0 || m_length == 0)
        return std::numeric_limits<double>::max();
    const auto length = static_cast<double>(m_length);
    const auto start = static_cast<double>(m_start);
    const auto taken = static_cast<double>(m_taken);
    // The round of the last frame that was taken.
    const double round = std::max(std::ceil((start + taken / m_ratio) / length) - 1, 0.0);
    const double rounds = std::max<double>(m_loops, std::min<double>(round, m_repeats)) + 1;
    return std::max(std::ceil((rounds * length - start) * m_ratio) - taken, 0.0);
}

void PlaybackVoice::startRun(qint64 frame)
{
    ++m_run;
    m_start = frame;
    m_repeats = 0;
    m_taken = 0;
    m_told = 0;
    m_isReadToEnd = false;
    m_isExhausted = false;
    m_isReady = false;
    m_hasEnded = false;
    m_first = 0;
    m_count = 0;
}

// --- Reading ahead -------------------------------------------------------------

bool PlaybackVoice::wantsReading() const
{
    return m_isPlaying && !m_hasEnded && !m_isExhausted && (!m_isReadToEnd || mayRepeat(m_repeats));
}

bool PlaybackVoice::hasRoom() const
{
    return m_ring.size() - m_count >= m_ring.size() / 4;
}

bool PlaybackVoice::claimDecoding()
{
    const std::lock_guard lock(m_mutex);
    if (m_isDecoding || !wantsReading())
        return false;
    m_isDecoding = true;
    return true;
}

void PlaybackVoice::decode()
{
    std::unique_lock lock(m_mutex);
    while (wantsReading()) {
        const unsigned run = m_run;
        const bool isNewRun = run != m_decodedRun;
        if (!isNewRun && !hasRoom()) {
            m_wake.wait(lock);
            continue;
        }
        if (!isNewRun && !m_rest.isEmpty()) {
            store(m_rest);
            continue;
        }
        const qint64 start = m_start;
        const bool isRepeating = mayRepeat(isNewRun ? 0 : m_repeats);
        lock.unlock();
        bool isReadable = true;
        m_rest = {};
        try {
            if (isNewRun)
                m_stream.seek(std::min(start, m_stream.length()));
            m_rest = m_stream.read(isRepeating ? PlaybackStream::AtEnd::repeat : PlaybackStream::AtEnd::stop);
        } catch (const std::exception&) {
            isReadable = false; // the sound ends here
        }
        lock.lock();
        m_decodedRun = isReadable ? run : 0;
        if (run != m_run)
            continue;
        m_length = m_stream.length();
        m_repeats = m_stream.repeats();
        m_isReadToEnd = m_rest.isEmpty();
        m_isExhausted = m_rest.isEmpty() && (isRepeating || !isReadable);
        store(m_rest);
    }
    m_isDecoding = false;
}

void PlaybackVoice::store(PlaybackStream::Block& block)
{
    const std::size_t frames = std::min(m_ring.size() - m_count, block.left.size());
    for (std::size_t i = 0; i < frames; ++i)
        m_ring[(m_first + m_count + i) % m_ring.size()] = {block.left[i], block.right[i]};
    m_count += frames;
    block = block.from(frames);
}

// --- The device ----------------------------------------------------------------

void PlaybackVoice::mixInto(std::span<StereoFrame> block, qint64 deviceFrame)
{
    const std::lock_guard lock(m_mutex);
    if (!m_isPlaying || m_hasEnded)
        return;
    const bool isAllRead = m_isReadToEnd && (m_isExhausted || !mayRepeat(m_repeats));
    m_isReady = m_isReady || isAllRead || m_count >= kReadyFrames;
    if (!m_isReady)
        return;
    const double left = framesLeft();
    const std::size_t frames = std::min({block.size(), m_count, static_cast<std::size_t>(std::min(left, 1e9))});
    add(block.first(frames), deviceFrame);
    if (frames < block.size()) {
        m_hasEnded = isAllRead || static_cast<double>(frames) == left;
        m_isReady = false;
    }
    if (m_hasEnded || hasRoom())
        m_wake.notify_all();
}

void PlaybackVoice::add(std::span<StereoFrame> block, qint64 deviceFrame)
{
    const float step = block.empty() ? 0 : (m_volume - m_gain) / static_cast<float>(block.size());
    for (std::size_t start = 0; start < block.size(); start += kPowerFrames) {
        const auto part = block.subspan(start, std::min(kPowerFrames, block.size() - start));
        Power power;
        for (StereoFrame& frame : part) {
            m_gain += step;
            const StereoFrame& source = m_ring[m_first];
            const float left = source.left * m_gain;
            const float right = source.right * m_gain;
            m_first = m_first + 1 == m_ring.size() ? 0 : m_first + 1;
            frame.left += left;
            frame.right += right;
            power.left += static_cast<double>(left) * static_cast<double>(left);
            power.right += static_cast<double>(right) * static_cast<double>(right);
        }
        power.end = deviceFrame + static_cast<qint64>(start + part.size());
        power.frames = static_cast<int>(part.size());
        m_powers[m_nextPower++ % m_powers.size()] = power;
    }
    if (block.empty())
        return;
    m_gain = m_volume;
    m_count -= block.size();
    m_taken += static_cast<qint64>(block.size());
    m_takenAt = deviceFrame + static_cast<qint64>(block.size());
}

} // namespace tonequill
