#pragma once

#include "audio/analysis/AudioAnalyzer.h"
#include "audio/analysis/SmartCutter.h"
#include "audio/effects/EffectSettings.h"
#include "base/FlowGroup.h"
#include "base/Workers.h"
#include "platform/files/ScratchFile.h"
#include "platform/playback/AudioPlayer.h"
#include "understanding/listening/HeardLabel.h"

#include <QCoroTask>

#include <memory>
#include <vector>

namespace tonequill {

class SoundClassifier;

// What the editor has done for it away from its thread: as a port, because tests
// let each piece end, fail or come late by hand. Times are seconds of the file.
// Each piece with a progress can be cancelled, and then throws Cancelled.
class EditorWork {
public:
    virtual ~EditorWork() = default;

    // Throws AnalysisError, AudioFileError.
    virtual QCoro::Task<AudioAnalysis> analyze(QString path, ProgressPtr progress) = 0;

    // The candidates as CandidateLabels::label() gives them back.
    virtual QCoro::Task<std::vector<CutCandidate>> label(std::vector<CutCandidate> candidates, QString path,
                                                         ProgressPtr progress) = 0;

    // What the range sounds like, at most `top` labels, strongest first; nothing
    // where that can't be told.
    struct Question {
        QString path;
        double start = 0;
        double end = 0;
        int top = 0;
    };
    virtual QCoro::Task<std::vector<HeardLabel>> classify(Question question, Lane lane, ProgressPtr progress) = 0;

    // The range with the effects. Throws RenderError, AudioFileError.
    virtual QCoro::Task<ScratchFile> render(QString path, double start, double end, EffectSettings effects,
                                            ProgressPtr progress) = 0;

    // Throws AudioFileError.
    virtual QCoro::Task<std::shared_ptr<AudioPlayer>> open(QString path) = 0;
};

// The real one, on the workers. The others outlive it; when it goes, what was
// asked for is cancelled and waited for.
class BackgroundEditorWork final : public EditorWork {
public:
    BackgroundEditorWork(const SoundClassifier& classifier, AudioOutput& output, Workers& workers);

    QCoro::Task<AudioAnalysis> analyze(QString path, ProgressPtr progress) override;
    QCoro::Task<std::vector<CutCandidate>> label(std::vector<CutCandidate> candidates, QString path,
                                                 ProgressPtr progress) override;
    QCoro::Task<std::vector<HeardLabel>> classify(Question question, Lane lane, ProgressPtr progress) override;
    QCoro::Task<ScratchFile> render(QString path, double start, double end, EffectSettings effects,
                                    ProgressPtr progress) override;
    QCoro::Task<std::shared_ptr<AudioPlayer>> open(QString path) override;

private:
    const SoundClassifier& m_classifier;
    AudioOutput& m_output;
    Workers& m_workers;
    FlowGroup m_flows;
};

} // namespace tonequill
