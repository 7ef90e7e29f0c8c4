#pragma once

#include "fakes/FakeAudioPlayer.h"

namespace tonequill::test {

// Gives players whose time a test moves.
class FakeAudioOutput final : public AudioOutput {
public:
    std::unique_ptr<AudioPlayer> open(const QString&) override { return std::make_unique<FakeAudioPlayer>(10); }
};

} // namespace tonequill::test
