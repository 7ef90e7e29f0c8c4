#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QFileDialog;
class QWindow;

namespace tonequill {

// The system's panel to choose a folder, in which a new one can be made. It lies
// over its window and doesn't block; a second call brings the open one to the
// front.
class FolderPanel : public QObject {
    Q_OBJECT

public:
    // `button` is what chooses. `chosen` gets the path; it isn't called when the
    // panel is dismissed.
    FolderPanel(QString title, QString button, std::function<void(const QString&)> chosen);
    ~FolderPanel() override;

    // It starts in `folder`.
    void open(QWindow* over, const QString& folder);

private:
    QString m_title;
    QString m_button;
    std::function<void(const QString&)> m_chosen;
    QPointer<QFileDialog> m_dialog;
};

} // namespace tonequill
