#pragma once

#include "base/Clock.h"

#include <algorithm>
#include <vector>

namespace tonequill::test {

// Time that stands still until a test turns it.
class FakeClock final : public Clock {
public:
    void after(std::chrono::milliseconds delay, std::function<void()> wake) override
    {
        m_sleepers.push_back({m_now + delay, std::move(wake)});
    }

    double secondsSince2001() const override { return 800000000.25 + std::chrono::duration<double>(m_now).count(); }

    // Lets time pass and wakes, in order, everybody whose time has come.
    void advance(std::chrono::milliseconds by)
    {
        const auto target = m_now + by;
        for (;;) {
            const auto next = std::min_element(m_sleepers.begin(), m_sleepers.end(),
                                               [](const Sleeper& a, const Sleeper& b) { return a.due < b.due; });
            if (next == m_sleepers.end() || next->due > target)
                break;
            const Sleeper sleeper = std::move(*next);
            m_sleepers.erase(next);
            m_now = sleeper.due;
            sleeper.wake();
        }
        m_now = target;
    }

    std::size_t sleeperCount() const { return m_sleepers.size(); }

private:
    struct Sleeper {
        std::chrono::milliseconds due;
        std::function<void()> wake;
    };
    std::chrono::milliseconds m_now{0};
    std::vector<Sleeper> m_sleepers;
};

} // namespace tonequill::test
