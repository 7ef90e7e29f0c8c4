#pragma once

#include "editor/EditorModel.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace tonequill {

// The range of the open sound and how it plays. Times are seconds. One thread.
class PlaybackView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the open sound")
    Q_PROPERTY(double start READ start NOTIFY rangeChanged FINAL)
    Q_PROPERTY(double end READ end NOTIFY rangeChanged FINAL)
    Q_PROPERTY(QString startText READ startText NOTIFY rangeChanged FINAL)
    Q_PROPERTY(QString endText READ endText NOTIFY rangeChanged FINAL)
    Q_PROPERTY(QString lengthText READ lengthText NOTIFY rangeChanged FINAL)
    // Where it plays, else where the range starts; as wide as the others.
    Q_PROPERTY(QString placeText READ placeText NOTIFY placeChanged FINAL)
    Q_PROPERTY(bool canPlay READ canPlay NOTIFY playingChanged FINAL)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY playingChanged FINAL)
    Q_PROPERTY(bool isRendering READ isRendering NOTIFY playingChanged FINAL)
    Q_PROPERTY(double renderProgress READ renderProgress NOTIFY renderProgressChanged FINAL)
    Q_PROPERTY(bool loop READ loop WRITE setLoop NOTIFY playingChanged FINAL)
    Q_PROPERTY(double level READ level NOTIFY levelChanged FINAL) // 0…1 of the meter

public:
    explicit PlaybackView(EditorModel& editor);

    double start() const { return m_editor.start(); }
    double end() const { return m_editor.end(); }
    QString startText() const; // "0:03.610"
    QString endText() const;
    QString lengthText() const; // "1.38s"
    QString placeText() const;
    bool canPlay() const { return m_editor.hasPlayer(); }
    bool isPlaying() const { return m_editor.isPlaying(); }
    bool isRendering() const { return m_editor.isRendering(); }
    double renderProgress() const { return m_editor.renderProgress(); }
    bool loop() const { return m_editor.loop(); }
    void setLoop(bool loop) { m_editor.setLoop(loop); }
    double level() const { return m_level; }

    // Plays, or stops what plays.
    Q_INVOKABLE void toggle();
    Q_INVOKABLE void selectAll() { m_editor.selectAll(); }
    // Moves an edge of the range by some seconds, as the keys do.
    Q_INVOKABLE void moveStart(double by) { m_editor.setRange(start() + by, std::nullopt); }
    Q_INVOKABLE void moveEnd(double by) { m_editor.setRange(std::nullopt, end() + by); }

    // Puts an edge to the playhead, or to the cursor while nothing plays. Beyond the
    // other edge, the range goes on from there to the sound's end, or from its start.
    Q_INVOKABLE void setStartHere();
    Q_INVOKABLE void setEndHere();

    // How far the meter's bar reaches at a level in dBFS.
    static double meterShare(double levelDb);

Q_SIGNALS:
    void rangeChanged();
    void placeChanged();
    void playingChanged();
    void renderProgressChanged();
    void levelChanged();

private:
    void follow();
    void measureLevel();
    // The edges can be put somewhere, and here.
    std::optional<double> here() const;

    EditorModel& m_editor;
    QTimer m_look; // while effects are rendered
    double m_level = 0;
};

} // namespace tonequill
