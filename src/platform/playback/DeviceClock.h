#pragma once

#include <QtGlobal>

#include <algorithm>
#include <chrono>

namespace tonequill {

// Tells which of the frames that a device took is heard at a moment. The device
// takes them block by block, at times that tremble; between them, and smoothly
// through the trembling, time goes on by the steady clock. One thread at a time.
class DeviceClock {
public:
    using Time = std::chrono::steady_clock::time_point;

    explicit DeviceClock(double framesPerSecond) : m_rate(framesPerSecond) {}

    // The device takes `frames` now, which begin to be heard when those are
    // through that it took before: one such block.
    void take(qint64 frames, Time now)
    {
        const double start = seconds(now) + static_cast<double>(frames - m_taken) / m_rate;
        const double change = start - m_start;
        constexpr double kJumpSeconds = 0.05; // a device that was opened anew or stood still
        constexpr double kSmoothing = 1.0 / 16;
        m_start += change > kJumpSeconds || change < -kJumpSeconds ? change : change * kSmoothing;
        m_taken += frames;
    }

    qint64 takenFrames() const { return m_taken; }

    // Never beyond what was taken, and never backwards.
    double heardFrame(Time now)
    {
        const double heard = std::min((seconds(now) - m_start) * m_rate, static_cast<double>(m_taken));
        m_heard = std::max(m_heard, heard);
        return m_heard;
    }

private:
    static double seconds(Time time) { return std::chrono::duration<double>(time.time_since_epoch()).count(); }

    double m_rate;
    double m_start = 0; // when frame 0 would have been heard
    qint64 m_taken = 0;
    double m_heard = 0;
};

} // namespace tonequill
