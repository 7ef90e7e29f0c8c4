#pragma once

#include "base/Ticker.h"
#include "editor/EditorWork.h"
#include "library/records/SoundItem.h"
#include "platform/files/ScratchFile.h"

#include <QCoroTask>
#include <QObject>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tonequill {

// The one sound that is open: always the library's selection. Which parts of it
// are proposed and chosen, what they sound like, its effects and its playback.
//
// One thread. Long work runs in the background; a newer load, or a newer question,
// cancels what was at work for the one before, and drops what comes of it all the
// same. All times are seconds.
class EditorModel : public QObject {
    Q_OBJECT

public:
    static constexpr double kMinLength = 0.03; // of a range that is set by hand

    enum class AnalysisState { idle, loading, ready };
    Q_ENUM(AnalysisState)

    // What will become a file.
    struct Part {
        double start = 0;
        double end = 0;
        std::optional<QString> label;
        bool operator==(const Part&) const = default;
    };
    struct SmartSuggestion {
        QString name;
        QStringList tags;
        bool operator==(const SmartSuggestion&) const = default;
    };

    // Both outlive it.
    EditorModel(EditorWork& work, Clock& clock);
    ~EditorModel() override;

    // Ends what is at work for it. Nothing is begun from then on.
    void close();

    // Opens a sound, or none for an empty editor. `path` is its file.
    void load(std::optional<SoundItem> item, const QString& path);
    // The record as it is now, after a change of its name or tags; the sound
    // itself stays open. Ignored for another sound than the open one.
    void refresh(const SoundItem& item);

    const std::optional<SoundItem>& item() const { return m_item; }
    const QString& path() const { return m_path; } // empty for none
    AnalysisState analysisState() const { return m_state; }
    // REQUIRES: analysisState() is ready.
    const AudioAnalysis& analysis() const { return *m_analysis; }
    // Whether nothing is on its way any more: analysis, labels, what is heard.
    bool isSettled() const { return m_state != AnalysisState::loading && !m_labelling && !m_isListening; }
    // How far the analysis has come, 0…1; 0 while none runs.
    double analysisProgress() const;
    // The line that says what could not be done.
    const std::optional<QString>& loadError() const { return m_loadError; }
    // The analysis' if it is ready, else the item's, else 0.
    double duration() const;

    // The proposals, best first, and those of them that are chosen.
    const std::vector<CutCandidate>& candidates() const { return m_candidates; }
    const QSet<QUuid>& marked() const { return m_marked; }
    // The chosen proposals in the order of time; the range if none is chosen.
    std::vector<Part> parts() const;

    // The range.
    double start() const { return m_start; }
    double end() const { return m_end; }

    enum class Extend { no, yes };
    void choose(const CutCandidate& candidate, Extend extend);
    // Each if it is given and finite, held within the sound and kMinLength apart.
    void setRange(std::optional<double> start, std::optional<double> end);
    void selectAll();
    // A handle on its way; nothing is listened to before the drag ends.
    void dragStart(double seconds);
    void dragEnd(double seconds);
    // A stretch that is swept over, from where the sweep began to where it is now.
    void dragRange(double from, double to);
    void endDrag();

    // Finds out what the range sounds like, after a delay in seconds.
    void listen(double delay);
    const std::optional<SoundHeard>& heard() const { return m_heard; }
    bool isListening() const { return m_isListening; }
    // Called with what was heard in a sound.
    void setOnHeard(std::function<void(const SoundItem&, const SoundHeard&)> onHeard) { m_onHeard = std::move(onHeard); }

    const std::optional<SmartSuggestion>& smartSuggestion() const { return m_smartSuggestion; }
    void setSmartSuggestion(std::optional<SmartSuggestion> suggestion);
    bool isThinking() const { return m_isThinking; }
    void setThinking(bool isThinking);

    // Effects belong to one visit of a sound. A change ends playing.
    const EffectSettings& effects() const { return m_effects; }
    void setEffects(const EffectSettings& effects);

    // Whether there is something to play with: soon after load(), long before the analysis.
    bool hasPlayer() const { return m_player != nullptr; }
    // Plays the range, from the cursor if that lies in it.
    void play();
    void stop();
    bool isPlaying() const { return m_isPlaying; } // also while effects are rendered for it
    bool isRendering() const { return m_rendering != nullptr; }
    double renderProgress() const { return m_rendering ? m_rendering->fraction() : 0; }
    bool loop() const { return m_loop; }
    void setLoop(bool loop);
    // Where a click said to start. While it plays, the sound jumps there.
    void seek(double seconds);
    const std::optional<double>& cursor() const { return m_cursor; }
    const std::optional<double>& playhead() const { return m_playhead; }
    // The loudest channel of what is heard, in dBFS.
    double levelDb() const;

Q_SIGNALS:
    void itemChanged();
    void analysisChanged(); // state, duration
    void loadErrorChanged();
    void candidatesChanged(); // and which are marked
    void rangeChanged();
    void heardChanged(); // and whether it listens
    void smartChanged();
    void effectsChanged();
    void playbackChanged(); // hasPlayer, isPlaying, isRendering, loop
    void cursorChanged();
    void playheadChanged();
    void settled();

private:
    QCoro::Task<> openPlayer(QString path, Ticket load);
    QCoro::Task<> analyse(QString path, Ticket load);
    QCoro::Task<> labelCandidates(QString path, Ticket load);
    QCoro::Task<> hear(QString path, SoundItem item, QStringList descriptors, double start, double end, Ticket ticket);
    QCoro::Task<> playWithEffects(double from, Ticket ticket);
    void leave();
    void beginTicking();
    void tick();
    void follow(const CutCandidate& candidate);
    void unmark();
    void assignRange(double start, double end);
    void tellIfSettled();
    void setLoadError(std::optional<QString> error);
    void setPlayhead(std::optional<double> playhead);

    EditorWork& m_work;
    Clock& m_clock;
    std::optional<SoundItem> m_item;
    QString m_path;
    AnalysisState m_state = AnalysisState::idle;
    std::optional<AudioAnalysis> m_analysis;
    std::optional<QString> m_loadError;
    std::vector<CutCandidate> m_candidates;
    QSet<QUuid> m_marked;
    double m_start = 0;
    double m_end = 0;
    std::optional<double> m_cursor;
    std::optional<double> m_playhead;
    bool m_loop = false;
    bool m_isPlaying = false;
    bool m_isListening = false;
    bool m_isThinking = false;
    std::optional<SoundHeard> m_heard;
    std::optional<SmartSuggestion> m_smartSuggestion;
    EffectSettings m_effects;
    std::function<void(const SoundItem&, const SoundHeard&)> m_onHeard;
    std::shared_ptr<AudioPlayer> m_player; // plays the file unchanged
    ScratchFile m_effectFile;
    std::shared_ptr<AudioPlayer> m_effectPlayer; // plays m_effectFile
    ProgressPtr m_analysing;                     // while the analysis runs
    ProgressPtr m_labelling;                     // … and the proposals are listened to
    ProgressPtr m_hearing;                       // … and the range is
    ProgressPtr m_rendering;                     // … and effects are rendered
    Tickets m_loads;
    Tickets m_listens;
    Tickets m_renders;
    Ticker m_ticker;
    FlowGroup m_flows; // last: it ends what works with the others
};

} // namespace tonequill
