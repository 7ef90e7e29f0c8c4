#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QFileDialog;
class QWindow;

namespace tonequill {

// The system's panel to choose what is on disk. It lies over its window and
// doesn't block; a second call brings the open one to the front.
class OpenPanel : public QObject {
    Q_OBJECT

public:
    enum class Wanted {
        sounds, // and videos, several at once
        folder, // one, which can be made there
    };

    // `button` is what chooses. `chosen` gets the paths; it isn't called when the
    // panel is dismissed.
    OpenPanel(Wanted wanted, QString title, QString button, std::function<void(const QStringList&)> chosen);
    ~OpenPanel() override;

    // It starts in `folder`, or without one where the last choice was made; at
    // first the user's home.
    void open(QWindow* over, const QString& folder = {});

private:
    Wanted m_wanted;
    QString m_title;
    QString m_button;
    std::function<void(const QStringList&)> m_chosen;
    QPointer<QFileDialog> m_dialog;
    QString m_lastFolder;
};

} // namespace tonequill
