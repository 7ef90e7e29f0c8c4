#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QFileDialog;
class QWindow;

namespace tonequill {

// The system's panel to choose sounds and videos, several at once. It lies over
// its window and doesn't block; a second call brings the open one to the front.
class FilePanel : public QObject {
    Q_OBJECT

public:
    // `chosen` gets the paths; it isn't called when the panel is dismissed.
    explicit FilePanel(std::function<void(const QStringList&)> chosen);
    ~FilePanel() override;

    void open(QWindow* over);

private:
    std::function<void(const QStringList&)> m_chosen;
    QPointer<QFileDialog> m_dialog;
    QString m_folder; // of the last choice; at first the user's home
};

} // namespace tonequill
