#include "platform/Clock.h"

#include <QTimer>

namespace tonequill {

void SystemClock::after(std::chrono::milliseconds delay, std::function<void()> wake)
{
    QTimer::singleShot(delay, std::move(wake));
}

double SystemClock::secondsSince2001() const
{
    constexpr double kUnixSecondsAt2001 = 978307200; // 2001-01-01 00:00:00 UTC
    const std::chrono::duration<double> unixSeconds = std::chrono::system_clock::now().time_since_epoch();
    return unixSeconds.count() - kUnixSecondsAt2001;
}

} // namespace tonequill
