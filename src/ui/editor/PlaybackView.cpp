#include "ui/editor/PlaybackView.h"

#include "base/TimeText.h"

#include <algorithm>

namespace tonequill {

namespace {

constexpr double kMeterFloorDb = -60; // what a meter of a few centimetres can still show
constexpr int kLookMs = 100;

} // namespace

PlaybackView::PlaybackView(EditorModel& editor) : m_editor(editor)
{
    connect(&editor, &EditorModel::rangeChanged, this, &PlaybackView::rangeChanged);
    connect(&editor, &EditorModel::playbackChanged, this, &PlaybackView::follow);
    connect(&editor, &EditorModel::playheadChanged, this, &PlaybackView::measureLevel);
    connect(&editor, &EditorModel::playheadChanged, this, &PlaybackView::placeChanged);
    connect(&editor, &EditorModel::rangeChanged, this, &PlaybackView::placeChanged);
    m_look.setInterval(kLookMs);
    connect(&m_look, &QTimer::timeout, this, &PlaybackView::renderProgressChanged);
}

QString PlaybackView::startText() const
{
    return TimeText::exactPlace(start());
}

QString PlaybackView::endText() const
{
    return TimeText::exactPlace(end());
}

QString PlaybackView::lengthText() const
{
    return TimeText::length(end() - start());
}

QString PlaybackView::placeText() const
{
    return TimeText::exactPlace(m_editor.playhead().value_or(start()));
}

std::optional<double> PlaybackView::here() const
{
    if (m_editor.analysisState() != EditorModel::AnalysisState::ready) // the best part will be the range
        return {};
    return m_editor.playhead() ? m_editor.playhead() : m_editor.cursor();
}

void PlaybackView::setStartHere()
{
    const auto place = here();
    if (!place)
        return;
    const bool isBeyond = *place > end() - EditorModel::kMinLength;
    m_editor.dragRange(*place, isBeyond ? m_editor.duration() : end());
    m_editor.endDrag();
}

void PlaybackView::setEndHere()
{
    const auto place = here();
    if (!place)
        return;
    const bool isBeyond = *place < start() + EditorModel::kMinLength;
    m_editor.dragRange(*place, isBeyond ? 0 : start());
    m_editor.endDrag();
}

void PlaybackView::toggle()
{
    if (m_editor.isPlaying())
        m_editor.stop();
    else
        m_editor.play();
}

double PlaybackView::meterShare(double levelDb)
{
    return std::clamp(1 - levelDb / kMeterFloorDb, 0.0, 1.0);
}

void PlaybackView::follow()
{
    if (isRendering())
        m_look.start();
    else
        m_look.stop();
    Q_EMIT playingChanged();
    Q_EMIT renderProgressChanged();
    measureLevel();
}

void PlaybackView::measureLevel()
{
    const double level = isPlaying() ? meterShare(m_editor.levelDb()) : 0;
    if (level == m_level)
        return;
    m_level = level;
    Q_EMIT levelChanged();
}

} // namespace tonequill
