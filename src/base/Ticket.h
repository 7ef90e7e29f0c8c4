#pragma once

#include <cstdint>
#include <memory>

namespace tonequill {

// Tells, after a wait, whether an answer is still wanted.
//
//     Tickets m_loads;
//     …
//     const Ticket ticket = m_loads.begin();   // every earlier ticket is stale now
//     const auto answer = co_await background(…);
//     if (!ticket.isCurrent())
//         co_return;
//
// A ticket may outlive its Tickets; it is stale from then on. One thread.
class Ticket {
public:
    bool isCurrent() const
    {
        const auto newest = m_newest.lock();
        return newest && *newest == m_number;
    }

private:
    friend class Tickets;
    Ticket(const std::shared_ptr<std::uint64_t>& newest, std::uint64_t number) : m_newest(newest), m_number(number) {}

    std::weak_ptr<std::uint64_t> m_newest;
    std::uint64_t m_number;
};

class Tickets {
public:
    Tickets() = default;
    Tickets(const Tickets&) = delete;
    Tickets& operator=(const Tickets&) = delete;

    // Hands out the one current ticket and makes all earlier ones stale.
    Ticket begin() { return Ticket(m_newest, ++*m_newest); }

    // A further copy of the current ticket.
    Ticket current() const { return Ticket(m_newest, *m_newest); }

    // Makes every ticket stale.
    void cancel() { ++*m_newest; }

private:
    std::shared_ptr<std::uint64_t> m_newest = std::make_shared<std::uint64_t>(0);
};

} // namespace tonequill
