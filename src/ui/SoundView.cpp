#include "ui/SoundView.h"

#include "ui/LibraryListModel.h"

namespace tonequill {

SoundView::SoundView(const EditorModel& editor) : m_editor(editor)
{
    connect(&editor, &EditorModel::itemChanged, this, &SoundView::changed);
    connect(&editor, &EditorModel::analysisChanged, this, &SoundView::takeAnalysis);
    connect(&editor, &EditorModel::loadErrorChanged, this, &SoundView::changed);
    takeAnalysis();
}

void SoundView::takeAnalysis()
{
    m_envelope = {};
    if (m_editor.analysisState() == EditorModel::AnalysisState::ready) {
        const AudioAnalysis& analysis = m_editor.analysis();
        m_envelope.data = std::make_shared<const Envelope::Data>(
            Envelope::Data{analysis.peak, analysis.rms, std::max(analysis.hopSeconds, 1e-6)});
    }
    Q_EMIT envelopeChanged();
    Q_EMIT changed();
}

QString SoundView::name() const
{
    return m_editor.item() ? m_editor.item()->name : QString();
}

QString SoundView::durationText() const
{
    return QString::asprintf("%.2f s", m_editor.duration());
}

QStringList SoundView::words() const
{
    QStringList words;
    if (const auto& item = m_editor.item())
        words = item->tags + item->descriptors;
    words.removeDuplicates();
    return words;
}

QString SoundView::license() const
{
    return m_editor.item() ? m_editor.item()->license.value_or(QString()) : QString();
}

QString SoundView::creditLine() const
{
    return needsCredit() ? m_editor.item()->creditLine() : QString();
}

bool SoundView::needsCredit() const
{
    return m_editor.item() && LibraryRow::needsCredit(*m_editor.item());
}

} // namespace tonequill
