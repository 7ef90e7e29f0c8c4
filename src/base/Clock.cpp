#include "base/Clock.h"

#include <QTimer>

namespace tonequill {

void SystemClock::after(std::chrono::milliseconds delay, std::function<void()> wake)
{
    QTimer::singleShot(delay, std::move(wake));
}

double SystemClock::secondsSince2001() const
{
    const std::chrono::duration<double> unixSeconds = std::chrono::system_clock::now().time_since_epoch();
    return unixSeconds.count() - kUnixSecondsAt2001;
}

} // namespace tonequill
