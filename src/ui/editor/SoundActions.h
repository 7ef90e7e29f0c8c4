#pragma once

#include "app/model/AppModel.h"

#include <QElapsedTimer>
#include <QtQml/qqmlregistration.h>

class QQuickItem;

namespace tonequill {

// What becomes of the open sound and its marked parts. One thread.
class SoundActions : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the window's model")
    Q_PROPERTY(bool isWorking READ isWorking NOTIFY isWorkingChanged FINAL) // a flow of the program
    Q_PROPERTY(bool isAdding READ isAdding NOTIFY isWorkingChanged FINAL)
    Q_PROPERTY(bool canSendToFinalCut READ canSendToFinalCut NOTIFY isWorkingChanged FINAL)

public:
    explicit SoundActions(AppModel& app);

    bool isWorking() const { return m_app.isWorking(); }
    bool isAdding() const { return m_app.work().isAtWork(FlowsAtWork::Kind::adding); }
    bool canSendToFinalCut() const;

    // Two presses of a double click are one wish.
    Q_INVOKABLE void addToLibrary();
    Q_INVOKABLE void saveToDesktop();
    Q_INVOKABLE void sendToFinalCut(); // the whole sound
    // Drags the parts out of `from`, rendered.
    Q_INVOKABLE void dragParts(QQuickItem* from);

Q_SIGNALS:
    void isWorkingChanged();

private:
    AppModel& m_app;
    QElapsedTimer m_sinceAdding;
};

} // namespace tonequill
