#include "platform/process/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace tonequill {

namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler may do hardly anything: it writes into a pipe that the event loop
// reads.
std::array<int, 2> pipeEnds{-1, -1};

void onSignal(int)
{
    const int before = errno;
    [[maybe_unused]] const auto written = ::write(pipeEnds[1], "", 1);
    errno = before;
}

} // namespace

TerminationSignals::TerminationSignals()
{
    if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return; // the process then ends as the system has it
    auto* const notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (::read(pipeEnds[0], &byte, 1) == 1) {
        }
        Q_EMIT received();
    });
    for (const int number : kSignals)
        std::signal(number, onSignal);
}

TerminationSignals::~TerminationSignals()
{
    for (const int number : kSignals)
        std::signal(number, SIG_DFL);
    for (int& end : pipeEnds) {
        if (end >= 0)
            ::close(std::exchange(end, -1));
    }
}

} // namespace tonequill
