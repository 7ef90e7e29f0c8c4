#pragma once

#include "audio/analysis/AudioAnalyzer.h"
#include "audio/analysis/SmartCutter.h"
#include "audio/effects/EffectSettings.h"
#include "base/Progress.h"
#include "platform/playback/AudioPlayer.h"
#include "understanding/listening/HeardLabel.h"

#include <QCoroTask>

#include <memory>
#include <vector>

namespace tonequill {

class SoundClassifier;

// What the editor has done for it away from its thread: as a port, because tests
// let each piece end, fail or come late by hand. Times are seconds of the file.
class EditorWork {
public:
    virtual ~EditorWork() = default;

    // Throws AnalysisError, AudioFileError, Cancelled.
    virtual QCoro::Task<AudioAnalysis> analyze(QString path, ProgressPtr progress) = 0;

    // The candidates as CandidateLabels::label() gives them back.
    virtual QCoro::Task<std::vector<CutCandidate>> label(std::vector<CutCandidate> candidates, QString path) = 0;

    // What the range sounds like, at most `top` labels, strongest first; nothing
    // where that can't be told.
    virtual QCoro::Task<std::vector<HeardLabel>> classify(QString path, double start, double end, int top) = 0;

    // A temporary file of the range with the effects; the caller removes it.
    // Throws RenderError, AudioFileError, Cancelled.
    virtual QCoro::Task<QString> render(QString path, double start, double end, EffectSettings effects, ProgressPtr progress) = 0;

    // Throws AudioFileError.
    virtual QCoro::Task<std::shared_ptr<AudioPlayer>> open(QString path) = 0;
};

// The real one, on the thread pool. The others outlive it; when it goes, what was
// asked for is cancelled and waited for.
class BackgroundEditorWork final : public EditorWork {
public:
    BackgroundEditorWork(const SoundClassifier& classifier, AudioOutput& output);
    ~BackgroundEditorWork() override;

    QCoro::Task<AudioAnalysis> analyze(QString path, ProgressPtr progress) override;
    QCoro::Task<std::vector<CutCandidate>> label(std::vector<CutCandidate> candidates, QString path) override;
    QCoro::Task<std::vector<HeardLabel>> classify(QString path, double start, double end, int top) override;
    QCoro::Task<QString> render(QString path, double start, double end, EffectSettings effects, ProgressPtr progress) override;
    QCoro::Task<std::shared_ptr<AudioPlayer>> open(QString path) override;

private:
    const SoundClassifier& m_classifier;
    AudioOutput& m_output;
    ProgressPtr m_listening = std::make_shared<Progress>(); // cancelled at the end
};

} // namespace tonequill
