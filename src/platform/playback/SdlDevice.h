#pragma once

#include "platform/playback/DeviceClock.h"
#include "platform/playback/PlaybackVoice.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace tonequill {

// The one output device of the process: 48 kHz, two channels, 32-bit floats.
//
// It is opened with the first voice and closed after some seconds without one.
// All that can hang in a sound server happens on a thread of its own, which also
// finds out when the device is lost; its voices are paused then.
class SdlDevice {
public:
    SdlDevice();
    // Closes the device. A sound server that hangs is left alone after a second.
    ~SdlDevice();
    SdlDevice(const SdlDevice&) = delete;
    SdlDevice& operator=(const SdlDevice&) = delete;

    // Plays the voice and has it heard. False if there is no device; a sound
    // server that doesn't answer is waited for no longer than a second.
    bool start(const std::shared_ptr<PlaybackVoice>& voice);
    void remove(const std::shared_ptr<PlaybackVoice>& voice);

    // The frame of the device that is heard now.
    double heardFrame() const;

private:
    class Body;
    std::shared_ptr<Body> m_body;
    std::thread m_keeper;
};

} // namespace tonequill
