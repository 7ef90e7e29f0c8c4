#pragma once

#include "app/model/AppModel.h"
#include "ui/editor/EffectsView.h"
#include "ui/editor/PartsModel.h"
#include "ui/editor/PlaybackView.h"
#include "ui/wave/WaveItems.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

namespace tonequill {

// What the panel beside the list shows of the open sound. One thread.
class SoundView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the window's model")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed FINAL)
    Q_PROPERTY(QString name READ name NOTIFY changed FINAL)
    Q_PROPERTY(QString durationText READ durationText NOTIFY changed FINAL)
    Q_PROPERTY(QString lengthText READ lengthText NOTIFY changed FINAL)
    Q_PROPERTY(QStringList tags READ tags NOTIFY changed FINAL)
    Q_PROPERTY(QStringList traits READ traits NOTIFY changed FINAL)
    Q_PROPERTY(QString license READ license NOTIFY changed FINAL)
    Q_PROPERTY(QString creditLine READ creditLine NOTIFY changed FINAL)
    Q_PROPERTY(bool needsCredit READ needsCredit NOTIFY changed FINAL)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY changed FINAL)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged FINAL) // of the analysis, 0…1
    Q_PROPERTY(bool isReady READ isReady NOTIFY changed FINAL)
    Q_PROPERTY(QString errorText READ errorText NOTIFY changed FINAL)
    Q_PROPERTY(double duration READ duration NOTIFY changed FINAL)
    Q_PROPERTY(tonequill::Envelope envelope READ envelope NOTIFY envelopeChanged FINAL)
    Q_PROPERTY(QString headline READ headline NOTIFY heardChanged FINAL)
    Q_PROPERTY(QString summary READ summary NOTIFY heardChanged FINAL)
    Q_PROPERTY(bool isThinking READ isThinking NOTIFY smartChanged FINAL)
    Q_PROPERTY(bool hasSuggestion READ hasSuggestion NOTIFY smartChanged FINAL)
    Q_PROPERTY(QString suggestedName READ suggestedName NOTIFY smartChanged FINAL)
    Q_PROPERTY(QString suggestedTags READ suggestedTags NOTIFY smartChanged FINAL)
    Q_PROPERTY(tonequill::PartsModel* parts READ parts CONSTANT FINAL)
    Q_PROPERTY(tonequill::PlaybackView* playback READ playback CONSTANT FINAL)
    Q_PROPERTY(tonequill::EffectsView* effects READ effects CONSTANT FINAL)

public:
    explicit SoundView(AppModel& app);
    ~SoundView() override;

    EditorModel& editor() const { return m_app.editor(); }

    bool isOpen() const { return editor().item().has_value(); }
    QString name() const;
    QString durationText() const; // "6.98 s"
    QString lengthText() const;   // "6.98s", as the chips have it
    QStringList tags() const;     // each once
    QStringList traits() const;   // the descriptors that are no tags
    QString license() const;
    QString creditLine() const; // empty while no credit is due
    bool needsCredit() const;
    bool isLoading() const { return editor().analysisState() == EditorModel::AnalysisState::loading; }
    bool isReady() const { return editor().analysisState() == EditorModel::AnalysisState::ready; }
    double progress() const { return editor().analysisProgress(); }
    QString errorText() const { return editor().loadError().value_or(QString()); }
    double duration() const { return editor().duration(); }
    const Envelope& envelope() const { return m_envelope; }
    QString headline() const; // "Listening…", or what was heard
    QString summary() const;
    bool isThinking() const { return editor().isThinking(); }
    bool hasSuggestion() const { return editor().smartSuggestion().has_value(); }
    QString suggestedName() const; // empty where none was found
    QString suggestedTags() const; // those that the sound doesn't have: "wood, heavy"
    PartsModel* parts() { return &m_parts; }
    PlaybackView* playback() { return &m_playback; }
    EffectsView* effects() { return &m_effects; }

    // Gives the sound a name of the user's own; blanks alone change nothing.
    Q_INVOKABLE void rename(const QString& name);
    // One tag, or several with commas between them. Those that it has already, and
    // blanks, change nothing.
    Q_INVOKABLE void addTags(const QString& tags);
    Q_INVOKABLE void removeTag(const QString& tag);
    // Asks for a name, and takes or forgets what is suggested.
    Q_INVOKABLE void suggestName();
    Q_INVOKABLE void useSuggestion();
    Q_INVOKABLE void dismissSuggestion() { editor().setSmartSuggestion({}); }

Q_SIGNALS:
    void opened(); // another sound than before, or none
    void changed();
    void progressChanged();
    void envelopeChanged();
    void heardChanged();
    void smartChanged();

private:
    void takeItem();
    void takeAnalysis();
    QCoro::Task<> refine(QString path, Ticket ticket);
    void stopRefining();
    void update(const std::function<void(SoundItem&)>& change);

    AppModel& m_app;
    QUuid m_id;
    Envelope m_envelope;
    PartsModel m_parts;
    PlaybackView m_playback;
    EffectsView m_effects;
    QTimer m_look; // while the analysis runs
    Tickets m_refinements;
    ProgressPtr m_refining;
    FlowGroup m_flows; // last
};

} // namespace tonequill
