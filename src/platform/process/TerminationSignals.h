#pragma once

#include <QObject>

namespace tonequill {

// Whoever asks the process to end (SIGTERM, SIGINT, SIGHUP) is told apart from the
// moment: the program ends as when its window is closed. One of it at a time; the
// main thread.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();
};

} // namespace tonequill
