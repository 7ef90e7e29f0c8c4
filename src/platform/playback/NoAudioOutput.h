#pragma once

#include "platform/media/AudioFile.h"
#include "platform/playback/AudioPlayer.h"

namespace tonequill {

// Where nothing is ever heard: no file can be opened on it.
class NoAudioOutput final : public AudioOutput {
public:
    std::unique_ptr<AudioPlayer> open(const QString& path) override { throw AudioFileError(AudioFileError::Kind::open, path); }
};

} // namespace tonequill
