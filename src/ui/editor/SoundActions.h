#pragma once

#include "app/model/AppModel.h"

#include <QElapsedTimer>
#include <QtQml/qqmlregistration.h>

class QQuickItem;

namespace tonequill {

// What becomes of the open sound and its marked parts. Where several parts or
// several sounds are marked, the words say which of them are meant. One thread.
class SoundActions : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the window's model")
    Q_PROPERTY(bool isWorking READ isWorking NOTIFY isWorkingChanged FINAL) // a flow of the program
    Q_PROPERTY(bool isAdding READ isAdding NOTIFY isWorkingChanged FINAL)
    Q_PROPERTY(bool canSave READ canSave NOTIFY meantChanged FINAL)
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY meantChanged FINAL)
    Q_PROPERTY(QString saveText READ saveText NOTIFY meantChanged FINAL)
    Q_PROPERTY(QString saveTip READ saveTip NOTIFY meantChanged FINAL) // empty where the text says it all
    Q_PROPERTY(QString addText READ addText NOTIFY meantChanged FINAL)
    Q_PROPERTY(QString addTip READ addTip NOTIFY meantChanged FINAL)
    Q_PROPERTY(bool canSendToFinalCut READ canSendToFinalCut NOTIFY isWorkingChanged FINAL)

public:
    explicit SoundActions(AppModel& app);

    bool isWorking() const { return m_app.isWorking(); }
    bool isAdding() const { return m_app.work().isAtWork(FlowsAtWork::Kind::adding); }
    bool canSendToFinalCut() const;
    bool canSave() const { return canAdd() && !isWorking(); }
    bool canAdd() const { return m_app.editor().analysisState() == EditorModel::AnalysisState::ready; }
    QString saveText() const;
    QString saveTip() const;
    QString addText() const;
    QString addTip() const;

    // Nothing happens while they can't be done. Two presses of a double click are
    // one wish.
    Q_INVOKABLE void addToLibrary();
    Q_INVOKABLE void saveToDesktop();
    Q_INVOKABLE void sendToFinalCut(); // the whole sound
    // Drags the parts out of `from`, rendered.
    Q_INVOKABLE void dragParts(QQuickItem* from);
    // Puts on the clipboard what dragParts() would drag.
    Q_INVOKABLE void copyParts();

Q_SIGNALS:
    void isWorkingChanged();
    void meantChanged();

private:
    // What is meant where it isn't plain: "the 2 marked parts of “Door Slam”".
    QString meant() const;

    AppModel& m_app;
    QElapsedTimer m_sinceAdding;
};

} // namespace tonequill
