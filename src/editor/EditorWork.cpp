#include "editor/EditorWork.h"

#include "audio/effects/EffectRenderer.h"
#include "base/Background.h"
#include "editor/CandidateLabels.h"
#include "understanding/listening/SoundClassifier.h"

#include <QThreadPool>

namespace tonequill {

namespace {

// A range that can't be listened to is one that nothing was heard in.
std::vector<HeardLabel> heardIn(const SoundClassifier& classifier, const QString& path, double start, double end, int top,
                                const ProgressPtr& progress)
{
    try {
        return classifier.classify(path, start, end, top, progress.get());
    } catch (const Cancelled&) {
        return {};
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace

BackgroundEditorWork::BackgroundEditorWork(const SoundClassifier& classifier, AudioOutput& output)
    : m_classifier(classifier),
      m_output(output)
{}

BackgroundEditorWork::~BackgroundEditorWork()
{
    m_listening->cancel();
    QThreadPool::globalInstance()->waitForDone();
}

QCoro::Task<AudioAnalysis> BackgroundEditorWork::analyze(QString path, ProgressPtr progress)
{
    const auto work = [path, progress] { return AudioAnalyzer::analyze(path, progress.get()); };
    return background(work);
}

QCoro::Task<std::vector<CutCandidate>> BackgroundEditorWork::label(std::vector<CutCandidate> candidates, QString path)
{
    const auto work = [&classifier = m_classifier, progress = m_listening, candidates, path] {
        const auto strongest = [&](double start, double end) -> std::optional<HeardLabel> {
            const auto labels = heardIn(classifier, path, start, end, 1, progress);
            return labels.empty() ? std::nullopt : std::optional(labels.front());
        };
        return CandidateLabels::label(candidates, strongest);
    };
    return background(work);
}

QCoro::Task<std::vector<HeardLabel>> BackgroundEditorWork::classify(QString path, double start, double end, int top)
{
    const auto work = [&classifier = m_classifier, progress = m_listening, path, start, end, top] {
        return heardIn(classifier, path, start, end, top, progress);
    };
    return background(work);
}

QCoro::Task<QString> BackgroundEditorWork::render(QString path, double start, double end, EffectSettings effects,
                                                  ProgressPtr progress)
{
    const auto work = [path, start, end, effects, progress] {
        return EffectRenderer::render(path, start, end, effects, progress.get());
    };
    return background(work);
}

QCoro::Task<std::shared_ptr<AudioPlayer>> BackgroundEditorWork::open(QString path)
{
    const auto work = [&output = m_output, path] { return std::shared_ptr<AudioPlayer>(output.open(path)); };
    return background(work);
}

} // namespace tonequill
