#include "editor/EditorModel.h"

#include "base/Background.h"
#include "platform/media/AudioFile.h"
#include "understanding/naming/SoundNamer.h"

#include <algorithm>
#include <cmath>

namespace tonequill {

namespace {

constexpr int kMostEvents = 6;
constexpr int kLabelsToTell = 6;
constexpr double kUntouched = 0.001; // seconds; a range this near to a proposal is still the proposal
constexpr double kDragDelay = 0.4;   // so that moving a handle doesn't start a classification for each step

std::chrono::milliseconds inMilliseconds(double seconds)
{
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

// Cancels the work and forgets it.
void abandon(ProgressPtr& work)
{
    if (const ProgressPtr progress = std::exchange(work, nullptr))
        progress->cancel();
}

} // namespace

EditorModel::EditorModel(EditorWork& work, Clock& clock) : m_work(work), m_clock(clock), m_ticker(clock, [this] { tick(); })
{}

EditorModel::~EditorModel()
{
    close();
}

void EditorModel::close()
{
    leave();
    m_flows.end();
}

double EditorModel::analysisProgress() const
{
    return m_analysing ? m_analysing->fraction() : 0;
}

double EditorModel::duration() const
{
    if (m_analysis)
        return m_analysis->duration;
    return m_item ? m_item->duration : 0;
}

std::vector<EditorModel::Part> EditorModel::parts() const
{
    std::vector<Part> parts;
    for (const CutCandidate& candidate : m_candidates) {
        if (m_marked.contains(candidate.id))
            parts.push_back({candidate.start, candidate.end, candidate.label});
    }
    std::ranges::stable_sort(parts, {}, &Part::start);
    if (parts.empty())
        parts.push_back({m_start, m_end, {}});
    return parts;
}

// Loading

void EditorModel::load(std::optional<SoundItem> item, const QString& path)
{
    stop();
    leave();
    m_effects = {};
    m_item = std::move(item);
    m_path = path;
    const bool hasSound = m_item && !m_path.isEmpty();
    m_state = hasSound ? AnalysisState::loading : AnalysisState::idle;
    m_analysis.reset();
    m_player.reset();
    m_candidates.clear();
    m_marked.clear();
    m_cursor.reset();
    m_smartSuggestion.reset();
    m_heard.reset();
    m_loadError.reset();
    m_isThinking = false;
    m_isListening = false;
    m_start = 0;
    m_end = duration();
    for (const auto signal : {&EditorModel::itemChanged, &EditorModel::analysisChanged, &EditorModel::loadErrorChanged,
                              &EditorModel::candidatesChanged, &EditorModel::rangeChanged, &EditorModel::heardChanged,
                              &EditorModel::smartChanged, &EditorModel::effectsChanged, &EditorModel::cursorChanged})
        Q_EMIT(this->*signal)();
    if (!hasSound)
        return;
    const Ticket load = m_loads.begin();
    startFlow(openPlayer(m_path, load));
    startFlow(analyse(m_path, load));
}

// Nobody waits for the sound any more.
void EditorModel::leave()
{
    m_loads.cancel();
    m_listens.cancel();
    m_renders.cancel();
    for (ProgressPtr* work : {&m_analysing, &m_labelling, &m_hearing, &m_rendering})
        abandon(*work);
}

void EditorModel::refresh(const SoundItem& item)
{
    if (!m_item || m_item->id != item.id || *m_item == item)
        return;
    m_item = item;
    Q_EMIT itemChanged();
}

QCoro::Task<> EditorModel::openPlayer(QString path, Ticket load)
{
    std::shared_ptr<AudioPlayer> player;
    try {
        player = co_await m_flows.until(m_work.open(path));
    } catch (const std::exception&) {
        // Without a player there is nothing to hear; the analysis tells what is wrong with the file.
    }
    if (load.isCurrent())
        m_player = std::move(player);
}

QCoro::Task<> EditorModel::analyse(QString path, Ticket load)
{
    m_analysing = std::make_shared<Progress>();
    std::optional<AudioAnalysis> analysis;
    std::optional<QString> loadError;
    try {
        analysis = co_await m_flows.until(m_work.analyze(path, m_analysing));
    } catch (const AudioFileError& error) { // of a file whose name no user knows
        loadError = error.named(load.isCurrent() ? m_item->name : QString()).message();
    } catch (const std::exception& error) {
        loadError = messageOf(error);
    }
    if (!load.isCurrent())
        co_return;
    m_analysing.reset();
    m_state = analysis ? AnalysisState::ready : AnalysisState::idle;
    m_analysis = std::move(analysis);
    Q_EMIT analysisChanged();
    if (loadError) {
        setLoadError(loadError);
        tellIfSettled();
        co_return;
    }
    m_candidates = SmartCutter::candidates(*m_analysis, kMostEvents);
    Q_EMIT candidatesChanged();
    if (!m_candidates.empty())
        follow(m_candidates.front());
    startFlow(labelCandidates(path, load));
}

QCoro::Task<> EditorModel::labelCandidates(QString path, Ticket load)
{
    m_labelling = std::make_shared<Progress>();
    std::vector<CutCandidate> labelled = co_await m_flows.until(m_work.label(m_candidates, path, m_labelling));
    if (!load.isCurrent())
        co_return;
    m_labelling.reset();
    const auto oldBest = m_candidates.empty() ? std::nullopt : std::optional(m_candidates.front());
    m_candidates = std::move(labelled);
    Q_EMIT candidatesChanged();
    const bool isUntouched =
        oldBest && std::abs(m_start - oldBest->start) < kUntouched && std::abs(m_end - oldBest->end) < kUntouched;
    if (isUntouched && !m_candidates.empty() && m_candidates.front().id != oldBest->id)
        follow(m_candidates.front());
    tellIfSettled();
}

// The range and the proposals

void EditorModel::follow(const CutCandidate& candidate)
{
    m_marked = {candidate.id};
    Q_EMIT candidatesChanged();
    assignRange(candidate.start, candidate.end);
    listen(0);
}

void EditorModel::choose(const CutCandidate& candidate, Extend extend)
{
    if (extend == Extend::no)
        m_marked = {candidate.id};
    else if (m_marked.contains(candidate.id) && m_marked.size() > 1)
        m_marked.remove(candidate.id); // the last one can't be unmarked
    else
        m_marked.insert(candidate.id);
    Q_EMIT candidatesChanged();
    assignRange(candidate.start, candidate.end);
    listen(0);
}

void EditorModel::setRange(std::optional<double> start, std::optional<double> end)
{
    if (!(duration() > 0))
        return;
    unmark();
    double newStart = m_start;
    double newEnd = m_end;
    if (start && std::isfinite(*start))
        newStart = std::min(std::max(*start, 0.0), newEnd - kMinLength);
    if (end && std::isfinite(*end))
        newEnd = std::max(std::min(*end, duration()), newStart + kMinLength);
    assignRange(newStart, newEnd);
    listen(kDragDelay);
}

void EditorModel::selectAll()
{
    unmark();
    assignRange(0, duration());
    listen(0);
}

void EditorModel::dragStart(double seconds)
{
    unmark();
    assignRange(std::min(std::clamp(seconds, 0.0, duration()), m_end - kMinLength), m_end);
}

void EditorModel::dragEnd(double seconds)
{
    unmark();
    assignRange(m_start, std::max(std::clamp(seconds, 0.0, duration()), m_start + kMinLength));
}

void EditorModel::endDrag()
{
    listen(kDragDelay);
}

void EditorModel::unmark()
{
    if (m_marked.isEmpty())
        return;
    m_marked.clear();
    Q_EMIT candidatesChanged();
}

void EditorModel::assignRange(double start, double end)
{
    if (start == m_start && end == m_end)
        return;
    m_start = start;
    m_end = end;
    Q_EMIT rangeChanged();
}

// Listening

void EditorModel::listen(double delay)
{
    m_listens.cancel();
    abandon(m_hearing);
    if (!m_item || m_path.isEmpty() || !(m_start < m_end))
        return;
    m_isListening = true;
    Q_EMIT heardChanged();
    const Ticket ticket = m_listens.begin();
    const auto start = [this, ticket, path = m_path, item = *m_item,
                        descriptors = m_analysis ? m_analysis->descriptors : m_item->descriptors, from = m_start, to = m_end] {
        if (ticket.isCurrent())
            startFlow(hear(path, item, descriptors, from, to, ticket));
    };
    if (delay > 0)
        m_clock.after(inMilliseconds(delay), start);
    else
        start();
}

QCoro::Task<> EditorModel::hear(QString path, SoundItem item, QStringList descriptors, double start, double end, Ticket ticket)
{
    m_hearing = std::make_shared<Progress>();
    const EditorWork::Question question{path, start, end, kLabelsToTell};
    const std::vector<HeardLabel> labels = co_await m_flows.until(m_work.classify(question, Lane::behind, m_hearing));
    if (!ticket.isCurrent())
        co_return;
    m_hearing.reset();
    m_heard = SoundNamer::ruleBased(labels, descriptors, end - start);
    m_isListening = false;
    Q_EMIT heardChanged();
    if (m_onHeard)
        m_onHeard(item, SoundHeard(*m_heard)); // a copy: what is called may load another sound
    tellIfSettled();
}

void EditorModel::setSmartSuggestion(std::optional<SmartSuggestion> suggestion)
{
    m_smartSuggestion = std::move(suggestion);
    Q_EMIT smartChanged();
}

void EditorModel::setThinking(bool isThinking)
{
    m_isThinking = isThinking;
    Q_EMIT smartChanged();
}

void EditorModel::tellIfSettled()
{
    if (isSettled())
        Q_EMIT settled();
}

void EditorModel::setLoadError(std::optional<QString> error)
{
    m_loadError = std::move(error);
    Q_EMIT loadErrorChanged();
}

} // namespace tonequill
