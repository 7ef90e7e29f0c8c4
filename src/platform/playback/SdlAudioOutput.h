#pragma once

#include "platform/playback/AudioPlayer.h"

#include <memory>

namespace tonequill {

// The machine's loudspeakers, by way of SDL: whatever sound server there is.
// Make one for the process. All its players are mixed into one device; each
// reads its file ahead by a second, so that a long one takes no more memory
// than a short one. Players may outlive the output.
//
// SDL_AUDIODRIVER=dummy plays to nobody in real time, =disk to a file.
class SdlAudioOutput final : public AudioOutput {
public:
    SdlAudioOutput();
    ~SdlAudioOutput() override;

    std::unique_ptr<AudioPlayer> open(const QString& path) override;

    class Parts; // the device and the decoders

private:
    std::shared_ptr<Parts> m_parts;
};

} // namespace tonequill
