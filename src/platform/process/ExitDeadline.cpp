#include "platform/process/ExitDeadline.h"

#include "platform/files/ScratchFile.h"

#include <unistd.h>

namespace tonequill {

ExitDeadline::ExitDeadline(std::chrono::milliseconds time, std::function<void()> leave)
    : m_thread([this, time, leave = std::move(leave)] {
          std::unique_lock lock(m_mutex);
          if (!m_changed.wait_for(lock, time, [this] { return m_isOver; }))
              leave();
      })
{}

ExitDeadline::~ExitDeadline()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_isOver = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void ExitDeadline::leaveAtOnce()
{
    ScratchFile::removeAll();
    ::_exit(0);
}

} // namespace tonequill
