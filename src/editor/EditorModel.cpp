#include "editor/EditorModel.h"

#include "base/Background.h"

namespace tonequill {

EditorModel::EditorModel() = default;

EditorModel::~EditorModel()
{
    if (m_progress)
        m_progress->cancel();
}

double EditorModel::duration() const
{
    if (m_analysis)
        return m_analysis->duration;
    return m_item ? m_item->duration : 0;
}

void EditorModel::load(std::optional<SoundItem> item, const QString& path)
{
    if (m_progress)
        m_progress->cancel(); // nobody waits for the earlier sound any more
    m_loads.cancel();
    m_item = std::move(item);
    m_analysis.reset();
    m_loadError.reset();
    m_state = m_item ? AnalysisState::loading : AnalysisState::idle;
    Q_EMIT itemChanged();
    Q_EMIT analysisChanged();
    if (m_item)
        startFlow(analyse(path, m_loads.begin()));
}

void EditorModel::refresh(const SoundItem& item)
{
    if (!m_item || m_item->id != item.id || *m_item == item)
        return;
    m_item = item;
    Q_EMIT itemChanged();
}

QCoro::Task<> EditorModel::analyse(QString path, Ticket load)
{
    const auto progress = m_progress = std::make_shared<Progress>();
    std::optional<AudioAnalysis> analysis;
    std::optional<QString> loadError;
    try {
        const auto work = [path, progress] { return AudioAnalyzer::analyze(path, progress.get()); };
        analysis = co_await background(work);
    } catch (const Cancelled&) {
        co_return;
    } catch (const std::exception& error) {
        loadError = messageOf(error);
    }
    if (!load.isCurrent())
        co_return;
    m_analysis = std::move(analysis);
    m_loadError = std::move(loadError);
    m_state = m_analysis ? AnalysisState::ready : AnalysisState::idle;
    Q_EMIT analysisChanged();
}

} // namespace tonequill
