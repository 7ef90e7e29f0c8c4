#pragma once

#include "base/Clock.h"
#include "base/Ticket.h"

#include <functional>

namespace tonequill {

// Calls a function 60 times a second while something plays. One thread. The clock
// outlives it.
class Ticker {
public:
    Ticker(Clock& clock, std::function<void()> tick) : m_clock(clock), m_tick(std::move(tick)) {}

    // From its beginning where it runs already.
    void start() { wait(m_runs.begin()); }
    // May be called by the function.
    void stop() { m_runs.cancel(); }

private:
    void wait(const Ticket& run);

    Clock& m_clock;
    std::function<void()> m_tick;
    Tickets m_runs;
};

} // namespace tonequill
