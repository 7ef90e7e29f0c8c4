#include "base/Ticker.h"

namespace tonequill {

namespace {

constexpr std::chrono::milliseconds kTick(16); // 60 times a second

} // namespace

void Ticker::wait(const Ticket& run)
{
    m_clock.after(kTick, [this, run] {
        if (!run.isCurrent())
            return;
        m_tick();
        if (run.isCurrent())
            wait(run);
    });
}

} // namespace tonequill
