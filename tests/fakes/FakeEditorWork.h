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
    struct Labelling {
        std::vector<CutCandidate> candidates;
        ProgressPtr progress;
    };
    struct Hearing {
        Range range;
        int top = 0;
        Lane lane = Lane::behind;
        ProgressPtr progress;
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
    std::deque<Asked<Labelling, std::vector<CutCandidate>>> labellings;
    std::deque<Asked<Hearing, std::vector<HeardLabel>>> hearings;
    std::deque<Asked<Render, ScratchFile>> renders;
    std::deque<Asked<QString, std::shared_ptr<AudioPlayer>>> openings;

    QCoro::Task<AudioAnalysis> analyze(QString path, ProgressPtr progress) override
    {
        return analyses.emplace_back(Analysis{path, progress}).task();
    }
    QCoro::Task<std::vector<CutCandidate>> label(std::vector<CutCandidate> candidates, QString, ProgressPtr progress) override
    {
        return labellings.emplace_back(Labelling{std::move(candidates), progress}).task();
    }
    QCoro::Task<std::vector<HeardLabel>> classify(Question question, Lane lane, ProgressPtr progress) override
    {
        return hearings.emplace_back(Hearing{{question.path, question.start, question.end}, question.top, lane, progress}).task();
    }
    QCoro::Task<ScratchFile> render(QString path, double start, double end, EffectSettings effects, ProgressPtr progress) override
    {
        return renders.emplace_back(Render{{path, start, end}, effects, progress}).task();
    }
    QCoro::Task<std::shared_ptr<AudioPlayer>> open(QString path) override { return openings.emplace_back(path).task(); }
};

} // namespace tonequill::test
