#include "ui/editor/SoundView.h"

#include "app/smart/SmartActions.h"
#include "base/Background.h"
#include "base/Text.h"
#include "base/TimeText.h"
#include "library/records/License.h"

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr int kLookMs = 100;

} // namespace

SoundView::SoundView(AppModel& app) : m_app(app), m_parts(app.editor()), m_playback(app.editor()), m_effects(app.editor())
{
    const EditorModel& editor = app.editor();
    connect(&editor, &EditorModel::itemChanged, this, &SoundView::takeItem);
    connect(&editor, &EditorModel::analysisChanged, this, &SoundView::takeAnalysis);
    connect(&editor, &EditorModel::loadErrorChanged, this, &SoundView::changed);
    connect(&editor, &EditorModel::heardChanged, this, &SoundView::heardChanged);
    connect(&editor, &EditorModel::smartChanged, this, &SoundView::smartChanged);
    m_look.setInterval(kLookMs);
    connect(&m_look, &QTimer::timeout, this, &SoundView::progressChanged);
    takeItem();
    takeAnalysis();
}

SoundView::~SoundView()
{
    stopRefining();
}

void SoundView::takeItem()
{
    const QUuid id = editor().item() ? editor().item()->id : QUuid();
    const bool isAnother = id != m_id;
    m_id = id;
    Q_EMIT changed();
    if (isAnother)
        Q_EMIT opened();
}

void SoundView::takeAnalysis()
{
    stopRefining();
    m_envelope = {};
    if (isReady()) {
        const AudioAnalysis& analysis = editor().analysis();
        m_envelope.data = std::make_shared<const Envelope::Data>(
            Envelope::Data{analysis.peak, analysis.rms, std::max(analysis.hopSeconds, 1e-6), {}});
        if (analysis.peak.size() < FinePeaks::kMost) // a longer sound has enough of them
            startFlow(refine(editor().path(), m_refinements.begin()));
    }
    isLoading() ? m_look.start() : m_look.stop();
    Q_EMIT envelopeChanged();
    Q_EMIT progressChanged();
    Q_EMIT changed();
}

QCoro::Task<> SoundView::refine(QString path, Ticket ticket)
{
    const auto progress = m_refining = std::make_shared<Progress>();
    FinePeaks fine;
    try {
        const auto work = [path, progress] { return FinePeaks::read(path, *progress); };
        fine = co_await background(m_flows, m_app.services().workers.shown(), work, progress);
    } catch (const std::exception&) {
        co_return; // the wave stays as it was analysed
    }
    if (!ticket.isCurrent())
        co_return;
    auto data = std::make_shared<Envelope::Data>(*m_envelope.data);
    data->fine = std::move(fine);
    m_envelope.data = std::move(data);
    Q_EMIT envelopeChanged();
}

void SoundView::stopRefining()
{
    m_refinements.cancel();
    if (m_refining)
        m_refining->cancel();
}

QString SoundView::name() const
{
    return editor().item() ? text::shownPart(editor().item()->name) : QString();
}

QString SoundView::durationText() const
{
    return TimeText::duration(editor().duration());
}

QString SoundView::lengthText() const
{
    return TimeText::length(editor().duration());
}

QStringList SoundView::tags() const
{
    QStringList tags;
    if (const auto& item = editor().item())
        tags = item->tags;
    tags.removeDuplicates();
    return tags;
}

QStringList SoundView::traits() const
{
    QStringList traits;
    if (const auto& item = editor().item())
        traits = item->descriptors;
    traits.removeDuplicates();
    traits.removeIf([tags = tags()](const QString& trait) { return tags.contains(trait); });
    return traits;
}

QString SoundView::license() const
{
    return editor().item() ? editor().item()->license.value_or(QString()) : QString();
}

QString SoundView::creditLine() const
{
    return needsCredit() ? text::shownPart(editor().item()->creditLine()) : QString();
}

bool SoundView::needsCredit() const
{
    return editor().item() && License::needsCredit(editor().item()->license);
}

QString SoundView::headline() const
{
    if (editor().isListening())
        return u"Listening…"_s;
    return editor().heard() ? editor().heard()->headline : QString();
}

QString SoundView::summary() const
{
    return editor().heard() && !editor().isListening() ? editor().heard()->summary : QString();
}

QString SoundView::suggestedName() const
{
    return hasSuggestion() ? editor().smartSuggestion()->name : QString();
}

QString SoundView::suggestedTags() const
{
    QStringList fresh = hasSuggestion() ? editor().smartSuggestion()->tags : QStringList();
    fresh.removeIf([tags = tags()](const QString& tag) { return tags.contains(tag); });
    return fresh.join(u", "_s);
}

void SoundView::suggestName()
{
    if (editor().item() && !isThinking())
        startFlow(suggestSmartName(m_app, *editor().item()));
}

void SoundView::useSuggestion()
{
    if (editor().item())
        tonequill::useSmartSuggestion(m_app, SoundItem(*editor().item()));
}

void SoundView::rename(const QString& name)
{
    const QString trimmed = name.trimmed();
    if (const auto& item = editor().item(); item && !trimmed.isEmpty() && trimmed != this->name())
        m_app.library().rename(SoundItem(*item), trimmed, false);
}

void SoundView::addTag(const QString& tag)
{
    const QString trimmed = tag.trimmed();
    if (!trimmed.isEmpty() && !tags().contains(trimmed))
        update([&trimmed](SoundItem& item) { item.tags << trimmed; });
}

void SoundView::removeTag(const QString& tag)
{
    update([&tag](SoundItem& item) { item.tags.removeAll(tag); });
}

void SoundView::update(const std::function<void(SoundItem&)>& change)
{
    if (const auto& item = editor().item())
        m_app.library().update(SoundItem(*item), change); // a copy: the editor's own changes meanwhile
}

} // namespace tonequill
