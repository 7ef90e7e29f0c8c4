#pragma once

#include "editor/EditorModel.h"
#include "fakes/FakeAudioPlayer.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeEditorWork.h"
#include "support/Printing.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <stdexcept>

namespace tonequill::test {

// An editor whose clock and background work are turned by hand.
class EditorFixture : public testing::Test {
protected:
    static SoundItem item(const QString& name, double duration = 10)
    {
        SoundItem sound;
        sound.id = QUuid::createUuid();
        sound.name = name;
        sound.duration = duration;
        sound.descriptors = {QStringLiteral("of the record")};
        return sound;
    }

    // Ten seconds of a quiet room with bursts, as loud as told, of half a second.
    static AudioAnalysis analysis(const std::vector<std::pair<double, float>>& bursts)
    {
        AudioAnalysis sound;
        sound.duration = 10;
        sound.sampleRate = 48000;
        sound.hopSeconds = 0.01;
        sound.rms.assign(1000, 0.001F);
        sound.peak.assign(1000, 0.002F);
        for (const auto& [start, level] : bursts) {
            for (int hop = int(start * 100); hop < int(start * 100) + 50; ++hop) {
                sound.rms[std::size_t(hop)] = level * 0.5F;
                sound.peak[std::size_t(hop)] = level;
            }
        }
        sound.descriptors = {QStringLiteral("of the analysis")};
        return sound;
    }

    // What was finished by hand is carried on by the event loop.
    static void settle()
    {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }

    void open(const SoundItem& sound)
    {
        editor.load(sound, QStringLiteral("/sounds/%1.wav").arg(sound.name));
        player = std::make_shared<FakeAudioPlayer>(10);
        work.openings.back().answer(player);
        settle();
    }
    // Opened and analysed, three events proposed, the loudest at 5 seconds.
    void openWithEvents()
    {
        open(item(QStringLiteral("Door")));
        work.analyses.back().answer(analysis({{1, 0.2F}, {5, 0.9F}, {8, 0.4F}}));
        settle();
    }
    const CutCandidate& candidateAt(double seconds) const
    {
        for (const CutCandidate& candidate : editor.candidates()) {
            if (!candidate.isWhole && candidate.start <= seconds && candidate.end >= seconds)
                return candidate;
        }
        throw std::runtime_error("no such candidate");
    }

    FakeEditorWork work;
    FakeClock clock;
    EditorModel editor{work, clock};
    std::shared_ptr<FakeAudioPlayer> player;
};

} // namespace tonequill::test
