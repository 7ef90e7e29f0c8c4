#pragma once

namespace tonequill {

// Where the flow that keeps the Auto Folder up to date stands.
struct AutoFolderWatch {
    enum class State { off, resting, waking, running };

    State state = State::off;
    bool changedDuringRun = false;
};

} // namespace tonequill
