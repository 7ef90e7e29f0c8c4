#pragma once

#include "editor/EditorModel.h"
#include "ui/WaveItems.h"

#include <QObject>
#include <QStringList>

namespace tonequill {

// What the panel beside the list shows of the open sound. One thread.
class SoundView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the window's model")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed FINAL)
    Q_PROPERTY(QString name READ name NOTIFY changed FINAL)
    Q_PROPERTY(QString durationText READ durationText NOTIFY changed FINAL)
    Q_PROPERTY(QStringList words READ words NOTIFY changed FINAL)
    Q_PROPERTY(QString license READ license NOTIFY changed FINAL)
    Q_PROPERTY(QString creditLine READ creditLine NOTIFY changed FINAL)
    Q_PROPERTY(bool needsCredit READ needsCredit NOTIFY changed FINAL)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY changed FINAL)
    Q_PROPERTY(QString errorText READ errorText NOTIFY changed FINAL)
    Q_PROPERTY(double duration READ duration NOTIFY changed FINAL)
    Q_PROPERTY(tonequill::Envelope envelope READ envelope NOTIFY envelopeChanged FINAL)

public:
    explicit SoundView(const EditorModel& editor);

    bool isOpen() const { return m_editor.item().has_value(); }
    QString name() const;
    QString durationText() const; // "6.98 s"
    QStringList words() const;    // tags, then descriptors, each once
    QString license() const;
    QString creditLine() const; // empty while no credit is due
    bool needsCredit() const;
    bool isLoading() const { return m_editor.analysisState() == EditorModel::AnalysisState::loading; }
    QString errorText() const { return m_editor.loadError().value_or(QString()); }
    double duration() const { return m_editor.duration(); }
    const Envelope& envelope() const { return m_envelope; }

Q_SIGNALS:
    void changed();
    void envelopeChanged();

private:
    void takeAnalysis();

    const EditorModel& m_editor;
    Envelope m_envelope;
};

} // namespace tonequill
