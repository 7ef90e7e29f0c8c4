#include "editor/EditorWork.h"

#include "audio/effects/EffectRenderer.h"
#include "base/Background.h"
#include "editor/CandidateLabels.h"
#include "understanding/listening/SoundClassifier.h"

namespace tonequill {

namespace {

// A range that can't be listened to is one that nothing was heard in.
std::vector<HeardLabel> heardIn(const SoundClassifier& classifier, const EditorWork::Question& question,
                                const ProgressPtr& progress)
{
    try {
        return classifier.classify(question.path, question.start, question.end, question.top, progress.get());
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace

BackgroundEditorWork::BackgroundEditorWork(const SoundClassifier& classifier, AudioOutput& output, Workers& workers)
    : m_classifier(classifier),
      m_output(output),
      m_workers(workers)
{}

QCoro::Task<AudioAnalysis> BackgroundEditorWork::analyze(QString path, ProgressPtr progress)
{
    const auto work = [path, progress] { return AudioAnalyzer::analyze(path, progress.get()); };
    return background(m_flows, m_workers.shown(), work, progress);
}

QCoro::Task<std::vector<CutCandidate>> BackgroundEditorWork::label(std::vector<CutCandidate> candidates, QString path,
                                                                   ProgressPtr progress)
{
    const auto work = [&classifier = m_classifier, progress, candidates, path] {
        const auto strongest = [&](double start, double end) -> std::optional<HeardLabel> {
            const auto labels = heardIn(classifier, {path, start, end, 1}, progress);
            return labels.empty() ? std::nullopt : std::optional(labels.front());
        };
        return CandidateLabels::label(candidates, strongest);
    };
    return background(m_flows, m_workers.behind(), work, progress);
}

QCoro::Task<std::vector<HeardLabel>> BackgroundEditorWork::classify(Question question, Lane lane, ProgressPtr progress)
{
    const auto work = [&classifier = m_classifier, question, progress] { return heardIn(classifier, question, progress); };
    return background(m_flows, m_workers.lane(lane), work, progress);
}

QCoro::Task<ScratchFile> BackgroundEditorWork::render(QString path, double start, double end, EffectSettings effects,
                                                      ProgressPtr progress)
{
    const auto work = [path, start, end, effects, progress] {
        return ScratchFile(EffectRenderer::render(path, start, end, effects, progress.get()));
    };
    return background(m_flows, m_workers.shown(), work, progress);
}

QCoro::Task<std::shared_ptr<AudioPlayer>> BackgroundEditorWork::open(QString path)
{
    const auto work = [&output = m_output, path] { return std::shared_ptr<AudioPlayer>(output.open(path)); };
    return background(m_flows, m_workers.shown(), work);
}

} // namespace tonequill
