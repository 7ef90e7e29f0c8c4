#pragma once

#include "base/JobQueue.h"

#include <cstdint>
#include <functional>

namespace tonequill {

// What somebody waits for, and what is done behind.
enum class Lane : std::uint8_t { shown, behind };

// The program's own threads, in two lanes: one for what somebody waits for, one
// for what is done behind. A thread belongs to one lane for life, so that neither
// stands before the other, and each lane has two threads even on one core, so that
// one long job never owns it. Qt's global pool isn't used: Qt's painter waits for a
// place in it.
class Workers {
public:
    // What a machine of so many cores gets.
    explicit Workers(int cores = coreCount());

    // Analysing, opening, rendering, exporting.
    JobQueue& shown() { return m_shown; }
    // Listening, naming, keeping folders up to date; with little claim on the cores.
    JobQueue& behind() { return m_behind; }
    JobQueue& lane(Lane lane) { return lane == Lane::shown ? m_shown : m_behind; }

    // Somebody begins to wait for what is done behind: if it waits for a thread, it
    // is the next of the lane in front.
    void moveUp(const ProgressPtr& progress);

    // Calls work(0) … work(count - 1) on this thread and on those of the lane in
    // front that are free, and returns when all are done. What the first of them in
    // number threw is thrown here, and no further one is begun after a failure. The
    // calling thread may be a worker's.
    void parallel(int count, const std::function<void(int)>& work);

    static int coreCount();

private:
    JobQueue m_shown;
    JobQueue m_behind;
};

// Jobs one after another on a thread of its own, in the order in which they are
// given: what is saved is saved in the order of its changes, and waits for no
// listening. When it goes, what was given is done first.
class Sequence : public JobQueue {
public:
    explicit Sequence(const char* name) : JobQueue(name, 1) {}

    // Work that nobody waits for, and that throws nothing.
    void run(std::function<void()> work);
    // Until all that was given is done. Blocks.
    void finish();
};

} // namespace tonequill
