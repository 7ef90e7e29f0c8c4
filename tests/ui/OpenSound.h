#pragma once

#include "support/LibraryFolder.h"
#include "support/Program.h"
#include "ui/editor/SoundView.h"

#include <QTest>

namespace tonequill::test {

// A program whose one sound is open, with background work that is turned by hand.
class OpenSound : public Machine {
public:
    OpenSound()
    {
        SoundItem& item = folder.add(QStringLiteral("Door Slam"));
        item.duration = 10;
        item.tags = {QStringLiteral("door"), QStringLiteral("slam")};
        item.descriptors = {QStringLiteral("medium"), QStringLiteral("door")};
        folder.write();
        app = program(folder.path());
        view = std::make_unique<SoundView>(*app);
        app->setSelection(app->library().items().first().id);
    }

    // Ends the analysis with ten seconds of a steady sound, and the labelling
    // with these parts; the best of them is then chosen.
    void finish(std::vector<CutCandidate> parts)
    {
        AudioAnalysis analysis;
        analysis.duration = 10;
        analysis.sampleRate = 48000;
        analysis.hopSeconds = 0.01;
        analysis.peak.assign(1000, 0.5f);
        analysis.rms.assign(1000, 0.25f);
        work.analyses.back().answer(analysis);
        wait([this] { return !work.labellings.empty(); });
        work.labellings.back().answer(std::move(parts));
        wait([this] { return app->editor().candidates().front().label || app->editor().candidates().size() > 1; });
    }

    static CutCandidate part(double start, double end, const QString& label = {})
    {
        CutCandidate part;
        part.id = QUuid::createUuid();
        part.start = start;
        part.end = end;
        if (!label.isEmpty())
            part.label = label;
        return part;
    }

    // Three parts: "Slam" is the best, the last stands for the whole.
    void finishWithThree()
    {
        std::vector<CutCandidate> parts = {part(3, 4, QStringLiteral("Slam")), part(6, 7.5), part(0.5, 9.5)};
        parts[0].isBest = true;
        parts[2].isWhole = true;
        finish(std::move(parts));
    }

    static bool wait(const std::function<bool()>& isThere) { return QTest::qWaitFor(isThere, 20000); }

    EditorModel& editor() { return app->editor(); }
    const SoundItem& item() { return app->library().items().first(); }

    LibraryFolder folder;
    std::unique_ptr<AppModel> app;
    std::unique_ptr<SoundView> view;
};

} // namespace tonequill::test
