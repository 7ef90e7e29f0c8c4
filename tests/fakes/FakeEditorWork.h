#pragma once

#include "editor/EditorWork.h"
#include "fakes/Asked.h"

#include <QCoreApplication>

#include <deque>

namespace tonequill::test {

// Background work that a test turns by hand: every question waits in its list.
class FakeEditorWork final : public EditorWork {
public:
    struct Range {
        QString path;
        double start = 0;
        double end = 0;
        bool operator==(const Range&) const = default;
    };
    struct Hearing {
        Range range;
        int top = 0;
    };
    struct Render {
        Range range;
        EffectSettings effects;
        ProgressPtr progress;
    };
    struct Analysis {
        QString path;
        ProgressPtr progress;
    };

    FakeEditorWork() = default;
    ~FakeEditorWork() override
    {
        analyses.clear();
        labellings.clear();
        hearings.clear();
        renders.clear();
        openings.clear();
        QCoreApplication::processEvents(); // so that whoever waited goes
        QCoreApplication::processEvents();
    }

    std::deque<Asked<Analysis, AudioAnalysis>> analyses;
    std::deque<Asked<std::vector<CutCandidate>, std::vector<CutCandidate>>> labellings;
    std::deque<Asked<Hearing, std::vector<HeardLabel>>> hearings;
    std::deque<Asked<Render, QString>> renders;
    std::deque<Asked<QString, std::shared_ptr<AudioPlayer>>> openings;

    QCoro::Task<AudioAnalysis> analyze(QString path, ProgressPtr progress) override
    {
        return analyses.emplace_back(Analysis{path, progress}).task();
    }
    QCoro::Task<std::vector<CutCandidate>> label(std::vector<CutCandidate> candidates, QString) override
    {
        return labellings.emplace_back(std::move(candidates)).task();
    }
    QCoro::Task<std::vector<HeardLabel>> classify(QString path, double start, double end, int top) override
    {
        return hearings.emplace_back(Hearing{{path, start, end}, top}).task();
    }
    QCoro::Task<QString> render(QString path, double start, double end, EffectSettings effects, ProgressPtr progress) override
    {
        return renders.emplace_back(Render{{path, start, end}, effects, progress}).task();
    }
    QCoro::Task<std::shared_ptr<AudioPlayer>> open(QString path) override { return openings.emplace_back(path).task(); }
};

} // namespace tonequill::test
