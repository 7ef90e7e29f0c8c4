#pragma once

#include "base/Progress.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace tonequill::cli::terminal {

// One line, or several, to stdout. False when nobody takes them any more.
void print(const QString& text);
void printJson(const QByteArray& document);

// A sentence to stderr.
void complain(const QString& text);

// "3.2 s", or "1:02:03" from a minute on.
QString lengthText(double seconds);

// A text of ours without what a terminal would obey: control characters of a
// hostile name become "�".
QString harmless(const QString& text);

// Shows how far `progress` is on one line of stderr while it lives, if that is a
// terminal and it takes more than a fifth of a second. Any thread's work may be shown.
class ProgressLine {
public:
    ProgressLine(QString label, ProgressPtr progress);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

private:
    struct Ticker;
    std::unique_ptr<Ticker> m_ticker; // none where there is no terminal
};

} // namespace tonequill::cli::terminal
