#pragma once

#include "library/delivery/AutoFolder.h"
#include "ui/kit/OpenPanel.h"

#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace tonequill {

// The Auto Folder as its panel tells it. One thread.
class AutoFolderView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the window's model")
    Q_PROPERTY(bool isOn READ isOn WRITE setOn NOTIFY changed FINAL)
    Q_PROPERTY(bool hasFolder READ hasFolder NOTIFY changed FINAL)
    Q_PROPERTY(QString folderText READ folderText NOTIFY changed FINAL)
    Q_PROPERTY(QString chooserText READ chooserText NOTIFY changed FINAL)
    // At most one of the three says something: a failure, a run that copies, or how things stand.
    Q_PROPERTY(QString problem READ problem NOTIFY changed FINAL)
    Q_PROPERTY(QString copyingText READ copyingText NOTIFY changed FINAL)
    Q_PROPERTY(QString standText READ standText NOTIFY changed FINAL)
    Q_PROPERTY(double progress READ progress NOTIFY changed FINAL)        // of the run that copies, 0…1
    Q_PROPERTY(QString checkedText READ checkedText NOTIFY changed FINAL) // when the last run ended

public:
    explicit AutoFolderView(AutoFolder& folder);

    bool isOn() const { return m_folder.enabled(); }
    void setOn(bool isOn) { m_folder.setEnabled(isOn); }
    bool hasFolder() const { return m_folder.hasFolder(); }
    QString folderText() const;
    QString chooserText() const;
    QString problem() const;
    QString copyingText() const;
    QString standText() const;
    double progress() const;
    QString checkedText() const; // in the user's format; empty before the first run

    // Asks for a folder with a panel over `window`.
    Q_INVOKABLE void chooseFolder(QQuickWindow* window);

Q_SIGNALS:
    void changed();

private:
    bool isCopying() const { return m_folder.isSyncing() && m_folder.stepCount() > 0; }

    AutoFolder& m_folder;
    OpenPanel m_panel;
};

} // namespace tonequill
