#pragma once

#include <chrono>
#include <functional>

namespace tonequill {

// Time, as a port: tests turn it by hand.
class Clock {
public:
    virtual ~Clock() = default;

    // Calls `wake` once on this thread when `delay` has passed. There is no
    // cancel: a waker asks by itself whether it is still wanted.
    virtual void after(std::chrono::milliseconds delay, std::function<void()> wake) = 0;

    // Seconds since 2001-01-01 00:00:00 UTC, the date number of the library.
    virtual double secondsSince2001() const = 0;
    double secondsSince1970() const { return secondsSince2001() + kUnixSecondsAt2001; }

protected:
    static constexpr double kUnixSecondsAt2001 = 978307200; // 2001-01-01 00:00:00 UTC
};

// The machine's time, on the event loop of the thread that calls.
class SystemClock final : public Clock {
public:
    void after(std::chrono::milliseconds delay, std::function<void()> wake) override;
    double secondsSince2001() const override;
};

} // namespace tonequill
