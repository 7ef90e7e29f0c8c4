#pragma once

#include "audio/AudioAnalyzer.h"
#include "base/Ticket.h"
#include "library/SoundItem.h"

#include <QCoroTask>
#include <QObject>

#include <memory>
#include <optional>

namespace tonequill {

// The one sound that is open: always the library's selection. One thread; the
// analysis runs in the background, and an answer that comes after a newer load
// is dropped.
class EditorModel : public QObject {
    Q_OBJECT

public:
    enum class AnalysisState { idle, loading, ready };
    Q_ENUM(AnalysisState)

    EditorModel();
    ~EditorModel() override;

    const std::optional<SoundItem>& item() const { return m_item; }
    AnalysisState analysisState() const { return m_state; }
    // REQUIRES: analysisState() is ready.
    const AudioAnalysis& analysis() const { return *m_analysis; }
    // The line that says why the sound could not be opened.
    const std::optional<QString>& loadError() const { return m_loadError; }
    // Seconds: the analysis' if it is ready, else the item's, else 0.
    double duration() const;

    // Opens a sound, or none for an empty editor. `path` is its file.
    void load(std::optional<SoundItem> item, const QString& path);

    // The record as it is now, after a change of its name or tags; the sound
    // itself stays open. Ignored for another sound than the open one.
    void refresh(const SoundItem& item);

Q_SIGNALS:
    void itemChanged();
    void analysisChanged();

private:
    QCoro::Task<> analyse(QString path, Ticket load);

    std::optional<SoundItem> m_item;
    AnalysisState m_state = AnalysisState::idle;
    std::optional<AudioAnalysis> m_analysis;
    std::optional<QString> m_loadError;
    Tickets m_loads;
    ProgressPtr m_progress; // of the analysis that runs
};

} // namespace tonequill
