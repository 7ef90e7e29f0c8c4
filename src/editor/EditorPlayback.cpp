// How the editor plays its range, with and without effects.

#include "editor/EditorModel.h"

#include "base/Background.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr double kShortestPlayed = 0.01;
constexpr double kCursorFromEnd = 0.02; // a cursor nearer to the end starts from the front
constexpr double kSlowestSpeed = 0.25;  // what the engine can render

} // namespace

void EditorModel::setEffects(const EffectSettings& effects)
{
    if (effects == m_effects)
        return;
    m_effects = effects;
    Q_EMIT effectsChanged();
    if (m_isPlaying)
        stop();
}

void EditorModel::setLoop(bool loop)
{
    if (loop == m_loop)
        return;
    m_loop = loop;
    if (m_effectPlayer)
        m_effectPlayer->setNumberOfLoops(loop ? AudioPlayer::kEndless : 0);
    Q_EMIT playbackChanged();
}

void EditorModel::seek(double seconds)
{
    m_cursor = std::clamp(seconds, 0.0, duration());
    Q_EMIT cursorChanged();
    if (m_isPlaying) {
        stop();
        play();
    }
}

void EditorModel::play()
{
    if (!(m_end - m_start > kShortestPlayed))
        return;
    const bool fromCursor = m_cursor && *m_cursor >= m_start && *m_cursor < m_end - kCursorFromEnd;
    const double from = fromCursor ? *m_cursor : m_start;
    if (!m_effects.isNeutral()) {
        if (m_path.isEmpty())
            return;
        m_renders.cancel();
        m_isPlaying = true;
        startFlow(playWithEffects(from, m_renders.begin()));
        return;
    }
    if (!m_player)
        return;
    m_player->setCurrentTime(from);
    if (m_player->play())
        beginTicking();
}

QCoro::Task<> EditorModel::playWithEffects(double from, Ticket ticket)
{
    const double start = m_start;
    const EffectSettings effects = m_effects;
    if (m_rendering)
        m_rendering->cancel();
    const auto progress = m_rendering = std::make_shared<Progress>();
    Q_EMIT playbackChanged();

    ScratchFile file;
    std::shared_ptr<AudioPlayer> player;
    try {
        file = co_await m_flows.until(m_work.render(m_path, start, m_end, effects, progress));
        if (ticket.isCurrent())
            player = co_await m_flows.until(m_work.open(file.path()));
    } catch (const std::exception&) {
        // What can't be rendered can't be heard: it is said below.
    }
    if (!ticket.isCurrent())
        co_return;
    m_rendering.reset();
    if (player) {
        if (from > start && !effects.reverse) {
            const double position = (from - start) / std::max(effects.speed, kSlowestSpeed);
            player->setCurrentTime(std::min(position, player->duration() - 0.01));
        }
        player->setNumberOfLoops(m_loop ? AudioPlayer::kEndless : 0);
    }
    if (!player || !player->play()) {
        m_isPlaying = false;
        setLoadError(u"Couldn't play this with the effects."_s);
        Q_EMIT playbackChanged();
        co_return;
    }
    m_effectFile = std::move(file);
    m_effectPlayer = std::move(player);
    beginTicking();
}

void EditorModel::beginTicking()
{
    m_isPlaying = true;
    Q_EMIT playbackChanged();
    m_ticker.start();
}

void EditorModel::tick()
{
    if (m_effectPlayer) {
        if (!m_effectPlayer->isPlaying())
            return stop();
        // The rendered file runs at another speed than the source, whose time this is.
        const double factor = m_effects.reverse ? 1 : m_effects.speed;
        setPlayhead(std::min(m_start + m_effectPlayer->currentTime() * factor, m_end));
    } else if (m_player && m_isPlaying) {
        const double time = m_player->currentTime();
        if (time < m_end && m_player->isPlaying())
            return setPlayhead(time);
        if (!m_loop)
            return stop();
        m_player->setCurrentTime(m_start);
        if (!m_player->play())
            stop();
    }
}

void EditorModel::stop()
{
    m_renders.cancel();
    m_ticker.stop();
    if (m_rendering)
        m_rendering->cancel();
    m_rendering.reset();
    if (m_player)
        m_player->stop();
    if (m_effectPlayer)
        m_effectPlayer->stop();
    m_effectPlayer.reset();
    m_effectFile = {};
    setPlayhead({});
    if (!m_isPlaying)
        return;
    m_isPlaying = false;
    Q_EMIT playbackChanged();
}

void EditorModel::setPlayhead(std::optional<double> playhead)
{
    if (playhead == m_playhead)
        return;
    m_playhead = playhead;
    Q_EMIT playheadChanged();
}

double EditorModel::levelDb() const
{
    const AudioPlayer* player = m_effectPlayer ? m_effectPlayer.get() : m_player.get();
    double level = AudioPlayer::kSilenceDb;
    if (player && m_isPlaying) {
        for (const double channel : player->averagePower())
            level = std::max(level, channel);
    }
    return level;
}

} // namespace tonequill
